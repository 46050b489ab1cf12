#pragma once
#include <CoreFoundation/CoreFoundation.h>
#pragma clang assume_nonnull begin
@class NSArray<__covariant T>;
@class NSBundle;
@class NSData;
@class NSDate;
@class NSDictionary<__covariant K, __covariant V>;
@class NSError;
@class NSMutableArray<T>;
@class NSMutableDictionary<K, V>;
@class NSNumber;
@class NSOperationQueue;
@class NSPredicate;
@class NSString;
@class NSURL;
typedef NSString* NSNotificationName;
typedef struct { unsigned long state; id __unsafe_unretained _Nullable* _Nullable itemsPtr; unsigned long* _Nullable mutationsPtr; unsigned long extra[5]; } NSFastEnumerationState;

@protocol NSObject
- (BOOL)isKindOfClass:(Class)kind SINCE(10.0);
@end
@protocol NSCopying
@end
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state objects:(id __unsafe_unretained _Nullable[_Nonnull])objects count:(NSUInteger)count SINCE(10.5);
@end
SINCE(10.0) __attribute__((objc_root_class)) @interface NSObject <NSObject>
+ (instancetype)alloc SINCE(10.0);
- (instancetype)init SINCE(10.0);
+ (Class)class SINCE(10.0);
@end

SINCE(10.0) @interface NSString : NSObject <NSCopying>
@end
SINCE(10.0) @interface NSSimpleCString : NSString
@end
SINCE(10.0) @interface NSConstantString : NSSimpleCString
@end
SINCE(10.0) @interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value SINCE(10.0);
+ (NSNumber*)numberWithLongLong:(long long)value SINCE(10.0);
@property(readonly) BOOL boolValue SINCE(10.0);
@property(readonly) long long longLongValue SINCE(10.0);
@end
SINCE(10.0) @interface NSData : NSObject <NSCopying>
@end
SINCE(10.0) @interface NSDate : NSObject <NSCopying>
@end
SINCE(10.4) @interface NSPredicate : NSObject
@end
SINCE(10.0) @interface NSArray<__covariant T> : NSObject <NSCopying, NSFastEnumeration>
+ (instancetype)array SINCE(10.0);
+ (instancetype)arrayWithObjects:(const T _Nonnull[_Nullable])objects count:(NSUInteger)count SINCE(10.0);
@property(readonly) NSUInteger count SINCE(10.0);
@property(readonly, nullable) T firstObject SINCE(10.6);
@end
SINCE(10.0) @interface NSMutableArray<T> : NSArray<T>
- (void)addObject:(T)object SINCE(10.0);
@end
SINCE(10.0) @interface NSDictionary<__covariant K, __covariant V> : NSObject <NSCopying>
+ (instancetype)dictionary SINCE(10.0);
+ (instancetype)dictionaryWithObjects:(const V _Nonnull[_Nullable])objects forKeys:(const K<NSCopying> _Nonnull[_Nullable])keys count:(NSUInteger)count SINCE(10.0);
- (nullable V)objectForKeyedSubscript:(K)key SINCE(10.8);
@end
SINCE(10.0) @interface NSMutableDictionary<K, V> : NSDictionary<K, V>
- (void)setObject:(V)object forKey:(K<NSCopying>)key SINCE(10.0);
@end
SINCE(10.0) @interface NSURL : NSObject <NSCopying>
+ (NSURL*)fileURLWithPath:(NSString*)path SINCE(10.0);
@property(readonly, getter=isFileURL) BOOL fileURL SINCE(10.0);
@property(readonly, copy, nullable) NSURL* filePathURL SINCE(10.6);
@end
SINCE(10.0) @interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription SINCE(10.0);
@end
SINCE(10.0) @interface NSThread : NSObject
@property(class, readonly) BOOL isMainThread SINCE(10.5);
@end
SINCE(10.5) @interface NSOperationQueue : NSObject
@property(class, readonly, strong) NSOperationQueue* mainQueue SINCE(10.6);
- (void)addOperationWithBlock:(void (^)(void))block SINCE(10.6);
@end
SINCE(10.0) @interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle SINCE(10.0);
@property(readonly, copy) NSString* bundlePath SINCE(10.0);
@property(readonly, copy, nullable) NSString* bundleIdentifier SINCE(10.0);
@end
SINCE(10.4) @interface NSLocale : NSObject
@property(class, readonly, copy) NSArray<NSString*>* preferredLanguages SINCE(10.5);
@end
SINCE(10.0) @interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults SINCE(10.0);
- (void)registerDefaults:(NSDictionary<NSString*, id>*)defaults SINCE(10.0);
- (nullable NSString*)stringForKey:(NSString*)key SINCE(10.0);
- (BOOL)boolForKey:(NSString*)key SINCE(10.0);
- (NSInteger)integerForKey:(NSString*)key SINCE(10.0);
- (void)setObject:(nullable id)value forKey:(NSString*)key SINCE(10.0);
@end

SINCE(10.0) @interface NSNotification : NSObject
@property(nullable, readonly, copy) NSDictionary* userInfo SINCE(10.0);
@end
SINCE(10.0) @interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter SINCE(10.0);
- (void)addObserver:(id)observer selector:(SEL)selector name:(nullable NSNotificationName)name object:(nullable id)object SINCE(10.0);
- (void)removeObserver:(id)observer SINCE(10.0);
@end
typedef ENUM(NSUInteger, NSNotificationSuspensionBehavior) {
    NSNotificationSuspensionBehaviorDeliverImmediately SINCE(10.0) = 4,
};
SINCE(10.0) @interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter SINCE(10.0);
- (void)addObserver:(id)observer selector:(SEL)selector name:(nullable NSNotificationName)name object:(nullable NSString*)object suspensionBehavior:(NSNotificationSuspensionBehavior)behavior SINCE(10.0);
- (void)postNotificationName:(NSNotificationName)name object:(nullable NSString*)object userInfo:(nullable NSDictionary*)userInfo deliverImmediately:(BOOL)deliverImmediately SINCE(10.0);
@end
API const NSNotificationName NSCalendarDayChangedNotification SINCE(10.9);
API const NSNotificationName NSSystemTimeZoneDidChangeNotification SINCE(10.5);
API const NSNotificationName NSSystemClockDidChangeNotification SINCE(10.6);

SINCE(10.0) @interface NSAppleEventDescriptor : NSObject
@property(readonly) UInt32 descriptorType SINCE(10.0);
@property(readonly, copy) NSData* data SINCE(10.0);
@property(readonly) Boolean booleanValue SINCE(10.0);
@property(readonly) SInt32 int32Value SINCE(10.0);
@property(readonly) double doubleValue SINCE(10.11);
@property(nullable, readonly, copy) NSString* stringValue SINCE(10.0);
@property(readonly) NSInteger numberOfItems SINCE(10.0);
- (nullable NSAppleEventDescriptor*)descriptorAtIndex:(NSInteger)place SINCE(10.0);
@end
SINCE(10.2) @interface NSAppleScript : NSObject
- (nullable instancetype)initWithSource:(NSString*)source SINCE(10.2);
- (BOOL)compileAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)error SINCE(10.2);
- (nullable NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)error SINCE(10.2);
@end
API NSString* const NSAppleScriptErrorMessage SINCE(10.2);
API NSString* const NSAppleScriptErrorNumber SINCE(10.2);
#pragma clang assume_nonnull end
