#pragma once
#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>
#pragma clang assume_nonnull begin
@class NSColorSpace;
@class NSEvent;
@class NSImage;
@class NSPasteboard;
@class NSPasteboardItem;
@class NSRunningApplication;
@class NSScreen;
@class NSSharingService;
@class NSSharingServicePicker;
@class NSTrackingArea;
@class NSView;
@class NSWindow;
typedef NSString* NSPasteboardType;
typedef NSString* NSPasteboardReadingOptionKey;
typedef NSInteger NSWindowLevel;

SINCE(10.0) @interface NSResponder : NSObject
- (void)mouseMoved:(NSEvent*)event SINCE(10.0);
- (void)mouseEntered:(NSEvent*)event SINCE(10.0);
- (void)mouseExited:(NSEvent*)event SINCE(10.0);
@end

SINCE(10.0) @interface NSApplication : NSResponder
@property(readonly, getter=isActive) BOOL active SINCE(10.0);
@property(nullable, readonly, strong) NSEvent* currentEvent SINCE(10.0);
@end
API NSApplication* NSApp SINCE(10.0);
API const NSNotificationName NSApplicationDidChangeScreenParametersNotification SINCE(10.0);

OPTIONS(NSUInteger, NSApplicationActivationOptions) {};
SINCE(10.6) @interface NSRunningApplication : NSObject
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier SINCE(10.6);
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid SINCE(10.6);
@property(class, readonly, strong) NSRunningApplication* currentApplication SINCE(10.6);
@property(readonly) pid_t processIdentifier SINCE(10.6);
@property(nullable, readonly, copy) NSString* bundleIdentifier SINCE(10.6);
@property(nullable, readonly, copy) NSString* localizedName SINCE(10.6);
@property(nullable, readonly, strong) NSImage* icon SINCE(10.6);
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options SINCE(10.6);
@end

SINCE(10.15) @interface NSWorkspaceOpenConfiguration : NSObject
+ (instancetype)configuration SINCE(10.15);
@end
SINCE(10.0) @interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace SINCE(10.0);
@property(readonly, strong) NSNotificationCenter* notificationCenter SINCE(10.0);
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication SINCE(10.7);
@property(readonly) BOOL accessibilityDisplayShouldReduceMotion SINCE(10.12);
- (void)openURL:(NSURL*)url configuration:(NSWorkspaceOpenConfiguration*)configuration completionHandler:(void (^_Nullable)(NSRunningApplication* _Nullable, NSError* _Nullable))handler SINCE(10.15);
- (void)activateFileViewerSelectingURLs:(NSArray<NSURL*>*)urls SINCE(10.6);
@end
API NSString* const NSWorkspaceApplicationKey SINCE(10.6);
API const NSNotificationName NSWorkspaceWillPowerOffNotification SINCE(10.0);
API const NSNotificationName NSWorkspaceDidTerminateApplicationNotification SINCE(10.0);
API const NSNotificationName NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification SINCE(10.10);

SINCE(10.0) @interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens SINCE(10.0);
@property(readonly) NSRect frame SINCE(10.0);
@property(readonly, copy) NSString* localizedName SINCE(10.15);
@property(readonly) NSEdgeInsets safeAreaInsets SINCE(12.0);
@property(readonly) NSRect auxiliaryTopLeftArea SINCE(12.0);
@property(readonly) NSRect auxiliaryTopRightArea SINCE(12.0);
@end

SINCE(10.0) @interface NSColorSpace : NSObject
@property(class, readonly, strong) NSColorSpace* sRGBColorSpace SINCE(10.5);
@end
SINCE(10.0) @interface NSColor : NSObject
@property(class, readonly, strong) NSColor* clearColor SINCE(10.0);
- (nullable NSColor*)colorUsingColorSpace:(NSColorSpace*)space SINCE(10.4);
@property(readonly) CGFloat redComponent SINCE(10.0);
@property(readonly) CGFloat greenComponent SINCE(10.0);
@property(readonly) CGFloat blueComponent SINCE(10.0);
@end
SINCE(10.0) @interface NSImage : NSObject
- (nullable CGImageRef)CGImageForProposedRect:(nullable NSRect*)place context:(nullable id)context hints:(nullable NSDictionary*)hints SINCE(10.6) __attribute__((cf_returns_not_retained));
@end

OPTIONS(NSUInteger, NSWindowStyleMask) {
    NSWindowStyleMaskNonactivatingPanel SINCE(10.12) = 1 << 7,
};
OPTIONS(NSUInteger, NSWindowCollectionBehavior) {
    NSWindowCollectionBehaviorCanJoinAllSpaces SINCE(10.5) = 1 << 0,
    NSWindowCollectionBehaviorStationary SINCE(10.6) = 1 << 4,
    NSWindowCollectionBehaviorIgnoresCycle SINCE(10.6) = 1 << 6,
    NSWindowCollectionBehaviorFullScreenAuxiliary SINCE(10.7) = 1 << 8,
};
typedef ENUM(NSUInteger, NSBackingStoreType) {
    NSBackingStoreBuffered SINCE(10.0) = 2,
};
typedef ENUM(NSInteger, NSWindowAnimationBehavior) {
    NSWindowAnimationBehaviorNone SINCE(10.7) = 2,
};
SINCE(10.0) @interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)place styleMask:(NSWindowStyleMask)style backing:(NSBackingStoreType)backing defer:(BOOL)defer SINCE(10.0);
@property(getter=isOpaque) BOOL opaque SINCE(10.0);
@property(null_resettable, copy) NSColor* backgroundColor SINCE(10.0);
@property BOOL hasShadow SINCE(10.0);
@property NSWindowCollectionBehavior collectionBehavior SINCE(10.5);
@property NSWindowLevel level SINCE(10.0);
@property BOOL hidesOnDeactivate SINCE(10.0);
@property(getter=isMovable) BOOL movable SINCE(10.6);
@property(getter=isMovableByWindowBackground) BOOL movableByWindowBackground SINCE(10.2);
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed SINCE(10.0);
@property NSWindowAnimationBehavior animationBehavior SINCE(10.7);
@property(readonly) BOOL canBecomeKeyWindow SINCE(10.0);
@property(readonly) BOOL canBecomeMainWindow SINCE(10.0);
@property(readonly, getter=isKeyWindow) BOOL keyWindow SINCE(10.0);
@property(readonly, getter=isVisible) BOOL visible SINCE(10.0);
@property(readonly) NSRect frame SINCE(10.0);
@property(nullable, strong) __kindof NSView* contentView SINCE(10.0);
- (NSRect)constrainFrameRect:(NSRect)frame toScreen:(nullable NSScreen*)screen SINCE(10.0);
- (void)setFrame:(NSRect)frame display:(BOOL)display SINCE(10.0);
- (void)orderFrontRegardless SINCE(10.0);
- (void)orderOut:(nullable id)sender SINCE(10.0);
- (void)makeKeyWindow SINCE(10.0);
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder SINCE(10.0);
- (void)close SINCE(10.0);
@end
API const NSNotificationName NSWindowDidResignKeyNotification SINCE(10.0);
SINCE(10.0) @interface NSPanel : NSWindow
@property(getter=isFloatingPanel) BOOL floatingPanel SINCE(10.0);
@end

OPTIONS(NSUInteger, NSTrackingAreaOptions) {
    NSTrackingMouseEnteredAndExited SINCE(10.5) = 0x01,
    NSTrackingMouseMoved SINCE(10.5) = 0x02,
    NSTrackingActiveAlways SINCE(10.5) = 0x80,
    NSTrackingInVisibleRect SINCE(10.5) = 0x200,
};
SINCE(10.5) @interface NSTrackingArea : NSObject
- (instancetype)initWithRect:(NSRect)place options:(NSTrackingAreaOptions)options owner:(nullable id)owner userInfo:(nullable NSDictionary*)info SINCE(10.5);
@end
typedef ENUM(NSUInteger, NSRectEdge) {
    NSRectEdgeMinY SINCE(10.0) = 1,
};
SINCE(10.0) @interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame SINCE(10.0);
@property(readonly, getter=isFlipped) BOOL flipped SINCE(10.0);
- (void)addSubview:(NSView*)view SINCE(10.0);
- (void)removeFromSuperview SINCE(10.0);
- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event SINCE(10.0);
- (NSPoint)convertPoint:(NSPoint)point fromView:(nullable NSView*)view SINCE(10.0);
- (void)addTrackingArea:(NSTrackingArea*)area SINCE(10.5);
- (void)removeTrackingArea:(NSTrackingArea*)area SINCE(10.5);
- (void)updateTrackingAreas SINCE(10.5);
@end

OPTIONS(unsigned long long, NSEventMask) {
    NSEventMaskKeyDown SINCE(10.12) = 1ULL << 10,
    NSEventMaskKeyUp SINCE(10.12) = 1ULL << 11,
};
OPTIONS(NSUInteger, NSEventModifierFlags) {};
typedef ENUM(NSUInteger, NSEventType) {
    NSEventTypeKeyDown SINCE(10.12) = 10,
};
SINCE(10.0) @interface NSEvent : NSObject
+ (nullable id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* _Nullable (^)(NSEvent*))handler SINCE(10.6);
+ (void)removeMonitor:(id)monitor SINCE(10.6);
@property(class, readonly) NSPoint mouseLocation SINCE(10.0);
@property(class, readonly) NSUInteger pressedMouseButtons SINCE(10.6);
@property(readonly) NSEventType type SINCE(10.0);
@property(readonly) NSEventModifierFlags modifierFlags SINCE(10.0);
@property(readonly) unsigned short keyCode SINCE(10.0);
@property(readonly, getter=isARepeat) BOOL ARepeat SINCE(10.0);
@property(nullable, readonly, weak) NSWindow* window SINCE(10.0);
@property(readonly) NSPoint locationInWindow SINCE(10.0);
@end

API const NSPasteboardType NSPasteboardTypeString SINCE(10.6);
API const NSPasteboardType NSPasteboardTypePNG SINCE(10.6);
API const NSPasteboardType NSPasteboardTypeFileURL SINCE(10.13);
API const NSPasteboardType NSPasteboardTypeURL SINCE(10.13);
@protocol NSPasteboardWriting <NSObject>
@end
@protocol NSPasteboardItemDataProvider <NSObject>
- (void)pasteboard:(nullable NSPasteboard*)pasteboard item:(NSPasteboardItem*)item provideDataForType:(NSPasteboardType)type SINCE(10.6);
@end
SINCE(10.6) @interface NSPasteboardItem : NSObject <NSPasteboardWriting>
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type SINCE(10.6);
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type SINCE(10.6);
- (BOOL)setDataProvider:(id<NSPasteboardItemDataProvider>)provider forTypes:(NSArray<NSPasteboardType>*)types SINCE(10.6);
@end
typedef ENUM(NSInteger, NSPasteboardAccessBehavior) {};
SINCE(10.0) @interface NSPasteboard : NSObject
@property(readonly) NSPasteboardAccessBehavior accessBehavior SINCE(15.4);
@property(class, readonly, strong) NSPasteboard* generalPasteboard SINCE(10.0);
@property(readonly) NSInteger changeCount SINCE(10.0);
@property(nullable, readonly, copy) NSArray<NSPasteboardType>* types SINCE(10.0);
- (NSInteger)clearContents SINCE(10.6);
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>>*)objects SINCE(10.6);
- (nullable NSArray*)readObjectsForClasses:(NSArray<Class>*)classes options:(nullable NSDictionary<NSPasteboardReadingOptionKey, id>*)options SINCE(10.6);
- (nullable NSData*)dataForType:(NSPasteboardType)type SINCE(10.0);
- (nullable NSString*)stringForType:(NSPasteboardType)type SINCE(10.0);
@end

@protocol NSSharingServicePickerDelegate <NSObject>
@optional
- (void)sharingServicePicker:(NSSharingServicePicker*)picker didChooseSharingService:(nullable NSSharingService*)service SINCE(10.8);
@end
SINCE(10.8) @interface NSSharingServicePicker : NSObject
- (instancetype)initWithItems:(NSArray*)items SINCE(10.8);
@property(nullable, weak) id<NSSharingServicePickerDelegate> delegate SINCE(10.8);
- (void)showRelativeToRect:(NSRect)place ofView:(NSView*)view preferredEdge:(NSRectEdge)edge SINCE(10.8);
@end
#pragma clang assume_nonnull end
