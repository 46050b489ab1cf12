#include "macos/applications/MacOpener.h"

#include <QPointer>

#include <AppKit/AppKit.h>

namespace nimbarrow {

void MacOpener::open(const QUrl& url)
{
    auto* const target = url.toNSURL();
    if (!target)
        return;
    const QPointer<MacOpener> self(this);
    // The plain call waits until the program has started.
    [NSWorkspace.sharedWorkspace openURL:target
                           configuration:[NSWorkspaceOpenConfiguration configuration]
                       completionHandler:^(NSRunningApplication* program, NSError* error) {
                           Q_UNUSED(program);
                           if (!error)
                               return;
                           [NSOperationQueue.mainQueue addOperationWithBlock:^{
                               if (self)
                                   Q_EMIT self->failed(url);
                           }];
                       }];
}

void MacOpener::reveal(const QList<QUrl>& files)
{
    auto* const targets = [NSMutableArray<NSURL*> array];
    for (const auto& file : files) {
        if (auto* const target = file.toNSURL())
            [targets addObject:target];
    }
    [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:targets];
}

} // namespace nimbarrow
