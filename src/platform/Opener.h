#pragma once

#include "platform/Port.h"

#include <QList>
#include <QObject>
#include <QUrl>

namespace nimbarrow {

/// Port: hands a link or a file to the program that the desktop chose for it.
class Opener : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Fire and forget: nobody waits for the program. The links that a calendar event, the system's privacy
    /// settings and the like have elsewhere are given as they are; the adapter finds this desktop's own way.
    virtual void open(const QUrl& url) = 0;

    /// Whether the link to the system's privacy settings opens anything here.
    [[nodiscard]] virtual bool hasSettings() const { return true; }

    /// Shows files in their folders, in the desktop's file manager, together where it can. Fire and forget.
    virtual void reveal(const QList<QUrl>& files) = 0;

Q_SIGNALS:
    /// There is no program that opens this, as far as the desktop told within a few seconds.
    void failed(const QUrl& url);
};

} // namespace nimbarrow
