#pragma once

#include "platform/Opener.h"

#include <QList>

namespace nimbarrow {

class FakeOpener final : public Opener {
public:
    void open(const QUrl& url) override { opened << url; }
    void reveal(const QUrl& file) override { revealed << file; }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

} // namespace nimbarrow
