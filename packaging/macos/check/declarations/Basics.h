// What the declarations beside this file are written with. They are written by hand, from what the system's
// documentation and other open bindings of it tell, for the check alone: no build of the program sees them.
// Each says since which version of the system it is there. One declaration stands on one line, which is how
// the check reads them.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#define SINCE(version) __attribute__((availability(macos, introduced = version)))
#define ENUM(type, name) enum name : type name; enum __attribute__((enum_extensibility(open))) name : type
#define OPTIONS(type, name) typedef type name; enum : name
#define API extern "C"

#if defined(__arm64__)
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef struct objc_class* Class;
typedef struct objc_object* id;
typedef struct objc_selector* SEL;

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double CGFloat;
typedef double NSTimeInterval;
typedef unsigned char Boolean;
typedef unsigned int UInt32;
typedef int SInt32;
typedef int OSStatus;
typedef unsigned int OSType;

struct CGPoint { CGFloat x; CGFloat y; };
struct CGSize { CGFloat width; CGFloat height; };
struct CGRect { CGPoint origin; CGSize size; };
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
struct NSEdgeInsets { CGFloat top; CGFloat left; CGFloat bottom; CGFloat right; };
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat w, CGFloat h) { return NSRect { { x, y }, { w, h } }; }
