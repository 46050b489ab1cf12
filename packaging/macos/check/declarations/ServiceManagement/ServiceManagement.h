#pragma once
#include <Foundation/Foundation.h>
#pragma clang assume_nonnull begin
typedef ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusEnabled SINCE(13.0) = 1,
};
SINCE(13.0) @interface SMAppService : NSObject
@property(class, readonly) SMAppService* mainAppService SINCE(13.0);
@property(readonly) SMAppServiceStatus status SINCE(13.0);
- (BOOL)registerAndReturnError:(NSError* _Nullable* _Nullable)error SINCE(13.0);
- (BOOL)unregisterAndReturnError:(NSError* _Nullable* _Nullable)error SINCE(13.0);
@end
#pragma clang assume_nonnull end
