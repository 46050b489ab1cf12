#include "macos/session/Observation.h"

#include <AppKit/AppKit.h>

/// The target of a registration: observing by selector is the one way that asks the distributed centre not to
/// hold a notification back while the program is in the background.
@interface NimbarrowObserver : NSObject {
@public
    nimbarrow::Observation::ToldOfProgram _told;
}
- (void)receiveNotification:(NSNotification*)notification;
@end

@implementation NimbarrowObserver

- (void)receiveNotification:(NSNotification*)notification
{
    id program = notification.userInfo[NSWorkspaceApplicationKey];
    QString identifier;
    if ([program isKindOfClass:NSRunningApplication.class])
        identifier = QString::fromNSString(((NSRunningApplication*)program).bundleIdentifier);
    // Not every centre posts on the main thread.
    auto* const queue = NSOperationQueue.mainQueue;
    if (NSThread.isMainThread) {
        [self tell:identifier];
        return;
    }
    [queue addOperationWithBlock:^{ [self tell:identifier]; }];
}

- (void)tell:(const QString&)identifier
{
    // Being told may end the observation.
    const auto call = _told;
    if (call)
        call(identifier);
}

@end

namespace nimbarrow {

struct Observation::Registration {
    NSNotificationCenter* centre;
    NimbarrowObserver* observer;
};

Observation::Observation(Centre centre, const QString& name, const Told& told)
    : Observation(centre, name, [told](const QString&) { told(); })
{
}

Observation::Observation(Centre centre, const QString& name, ToldOfProgram told)
    : m_registration(std::make_unique<Registration>())
{
    auto* const observer = [[NimbarrowObserver alloc] init];
    observer->_told = std::move(told);
    m_registration->observer = observer;
    auto* const wanted = name.toNSString();
    if (centre == Centre::Distributed) {
        auto* const distributed = [NSDistributedNotificationCenter defaultCenter];
        [distributed addObserver:observer
                        selector:@selector(receiveNotification:)
                            name:wanted
                          object:nil
              suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
        m_registration->centre = distributed;
        return;
    }
    m_registration->centre = centre == Centre::Workspace ? NSWorkspace.sharedWorkspace.notificationCenter
                                                         : NSNotificationCenter.defaultCenter;
    [m_registration->centre addObserver:observer
                               selector:@selector(receiveNotification:)
                                   name:wanted
                                 object:nil];
}

Observation::~Observation()
{
    [m_registration->centre removeObserver:m_registration->observer];
    m_registration->observer->_told = nullptr;
}

} // namespace nimbarrow
