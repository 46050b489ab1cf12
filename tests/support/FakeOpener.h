#pragma once

#include "platform/Opener.h"

#include <QList>

namespace nimbarrow {

class FakeOpener final : public Opener {
public:
    void open(const QUrl& url) override { opened << url; }
    void reveal(const QList<QUrl>& files) override { revealed << files; }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

} // namespace nimbarrow
