#pragma once
#include <AppKit/AppKit.h>
#pragma clang assume_nonnull begin
@class EKCalendar;
@class EKEvent;
@class EKEventStore;
typedef ENUM(NSUInteger, EKEntityType) {
    EKEntityTypeEvent SINCE(10.8) = 0,
};
typedef ENUM(NSInteger, EKAuthorizationStatus) {};
typedef ENUM(NSInteger, EKSpan) {
    EKSpanThisEvent SINCE(10.8) = 0,
};
typedef ENUM(NSInteger, EKEventStatus) {};
typedef ENUM(NSInteger, EKParticipantStatus) {};
API NSString* const EKEventStoreChangedNotification SINCE(10.8);
SINCE(10.8) @interface EKObject : NSObject
@end
SINCE(10.8) @interface EKCalendar : EKObject
@property(null_unspecified, copy) NSColor* color SINCE(10.8);
@end
SINCE(10.8) @interface EKParticipant : EKObject
@property(readonly, getter=isCurrentUser) BOOL currentUser SINCE(10.9);
@property(readonly) EKParticipantStatus participantStatus SINCE(10.8);
@end
SINCE(10.8) @interface EKCalendarItem : EKObject
@property(null_unspecified, copy) NSString* title SINCE(10.8);
@property(null_unspecified, strong) EKCalendar* calendar SINCE(10.8);
@property(nullable, copy) NSString* location SINCE(10.8);
@property(nullable, copy) NSString* notes SINCE(10.8);
@property(nullable, copy) NSURL* URL SINCE(10.8);
@property(readonly) BOOL hasRecurrenceRules SINCE(10.8);
@property(nullable, readonly) NSArray<EKParticipant*>* attendees SINCE(10.8);
@end
SINCE(10.8) @interface EKEvent : EKCalendarItem
+ (EKEvent*)eventWithEventStore:(EKEventStore*)store SINCE(10.8);
@property(null_unspecified, readonly) NSString* eventIdentifier SINCE(10.8);
@property(null_unspecified, copy) NSDate* startDate SINCE(10.8);
@property(null_unspecified, copy) NSDate* endDate SINCE(10.8);
@property(getter=isAllDay) BOOL allDay SINCE(10.8);
@property(readonly) BOOL isDetached SINCE(10.8);
@property(readonly) EKEventStatus status SINCE(10.8);
@end
SINCE(10.8) @interface EKEventStore : NSObject
+ (EKAuthorizationStatus)authorizationStatusForEntityType:(EKEntityType)type SINCE(10.9);
- (void)requestFullAccessToEventsWithCompletion:(void (^)(BOOL granted, NSError* _Nullable error))completion SINCE(14.0);
- (NSPredicate*)predicateForEventsWithStartDate:(NSDate*)start endDate:(NSDate*)end calendars:(nullable NSArray<EKCalendar*>*)calendars SINCE(10.8);
- (NSArray<EKEvent*>*)eventsMatchingPredicate:(NSPredicate*)predicate SINCE(10.8);
@property(nullable, readonly) EKCalendar* defaultCalendarForNewEvents SINCE(10.8);
- (BOOL)saveEvent:(EKEvent*)event span:(EKSpan)span commit:(BOOL)commit error:(NSError* _Nullable* _Nullable)error SINCE(10.8);
@end
#pragma clang assume_nonnull end
