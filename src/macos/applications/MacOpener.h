#pragma once

#include "platform/Opener.h"

namespace nimbarrow {

/// Opens by the workspace, which understands the system's own links as well.
class MacOpener final : public Opener {
public:
    void open(const QUrl& url) override;
    void reveal(const QList<QUrl>& files) override;
};

} // namespace nimbarrow
