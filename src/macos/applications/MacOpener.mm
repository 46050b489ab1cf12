#include "macos/applications/MacOpener.h"

#include <AppKit/AppKit.h>

namespace nimbarrow {

void MacOpener::open(const QUrl& url)
{
    auto* const target = url.toNSURL();
    if (!target)
        return;
    // The plain call waits until the program has started.
    [NSWorkspace.sharedWorkspace openURL:target
                           configuration:[NSWorkspaceOpenConfiguration configuration]
                       completionHandler:nil];
}

void MacOpener::reveal(const QUrl& file)
{
    if (auto* const target = file.toNSURL())
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ target ]];
}

} // namespace nimbarrow
