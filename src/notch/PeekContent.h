#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <QVariant>
#include <qqmlintegration.h>

namespace nimbarrow {

struct ClipboardItem;
struct NowPlayingTrack;

/// One short notice.
class PeekContent {
    Q_GADGET
    QML_VALUE_TYPE(peekContent)
    Q_PROPERTY(QUuid id MEMBER id)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString line MEMBER line)
    Q_PROPERTY(QVariant image READ imageValue)
    Q_PROPERTY(QUrl imageUrl MEMBER imageUrl)

public:
    /// Fresh for every notice, so that two equal ones in a row still count as two.
    QUuid id;
    /// Name of the drawing at the left.
    QString symbol;
    QString line;
    /// Shown instead of the symbol when there is one.
    QImage image;
    /// An image file to show in small instead of the symbol.
    QUrl imageUrl;

    /// With a fresh identifier.
    [[nodiscard]] static PeekContent make(const QString& symbol, const QString& line);
    [[nodiscard]] static PeekContent forItem(const ClipboardItem& item);
    /// `artwork` may be null.
    [[nodiscard]] static PeekContent forTrack(const NowPlayingTrack& track, const QImage& artwork);

    [[nodiscard]] QVariant imageValue() const { return image; }

    friend bool operator==(const PeekContent&, const PeekContent&) = default;
};

} // namespace nimbarrow
