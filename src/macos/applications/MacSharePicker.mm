#include "macos/applications/MacSharePicker.h"

#include <QCoreApplication>

#include <AppKit/AppKit.h>

/// Hears what became of one picker.
@interface NimbarrowShareDelegate : NSObject <NSSharingServicePickerDelegate> {
@public
    std::function<void()> _done;
}
@end

@implementation NimbarrowShareDelegate

- (void)sharingServicePicker:(NSSharingServicePicker*)picker
     didChooseSharingService:(nullable NSSharingService*)service
{
    Q_UNUSED(picker);
    Q_UNUSED(service);
    // Later: it ends the picker that is still speaking.
    if (const auto call = std::exchange(_done, {}))
        QMetaObject::invokeMethod(QCoreApplication::instance(), call, Qt::QueuedConnection);
}

@end

namespace nimbarrow {

namespace {

id nativeOf(const ShareItem& item)
{
    if (const auto* const text = std::get_if<QString>(&item))
        return text->toNSString();
    return std::get<QUrl>(item).toNSURL();
}

NSArray* nativeOf(const QList<ShareItem>& items)
{
    auto* const all = [NSMutableArray array];
    for (const auto& item : items) {
        if (id object = nativeOf(item))
            [all addObject:object];
    }
    return all;
}

} // namespace

struct MacSharePicker::Shown {
    NSSharingServicePicker* picker;
    /// The picker does not keep it.
    NimbarrowShareDelegate* delegate;
};

MacSharePicker::MacSharePicker() = default;
MacSharePicker::~MacSharePicker() = default;

bool MacSharePicker::present(const QList<ShareItem>& items, std::function<void()> done)
{
    auto* const event = NSApp.currentEvent;
    auto* const view = event.window.contentView;
    auto* const objects = nativeOf(items);
    if (!view || objects.count == 0)
        return false;
    const auto place = [view convertPoint:event.locationInWindow fromView:nil];
    auto* const delegate = [[NimbarrowShareDelegate alloc] init];
    delegate->_done = std::move(done);
    auto* const picker = [[NSSharingServicePicker alloc] initWithItems:objects];
    picker.delegate = delegate;
    m_shown = std::make_unique<Shown>(Shown { picker, delegate });
    [picker showRelativeToRect:NSMakeRect(place.x, place.y, 1, 1) ofView:view preferredEdge:NSRectEdgeMinY];
    return true;
}

} // namespace nimbarrow
