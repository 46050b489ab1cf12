#pragma once

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>

#include <optional>

namespace nimbarrow {

/// A display panel as its description file gives it: the native resolution and the boxes around its cut-outs,
/// in native pixels from the top left.
struct DisplayPanel {
    QString name;
    QSize resolution;
    QList<QRectF> cutouts;

    /// Reads a description in gmobile's JSON format. None when it is no description; a cut-out that is no
    /// path, or lies outside the panel, is left out.
    [[nodiscard]] static std::optional<DisplayPanel> fromJson(const QByteArray& json);

    /// A description that fromJson() reads, with this cut-out, or none for an empty one.
    [[nodiscard]] static QByteArray json(const QString& name, QSize resolution, const QRect& cutout);

    /// The box of the cut-out at the top edge in the pixels of a screen mode of the panel. None when there is
    /// no such cut-out, or when the mode does not show the rows beside it. `hiddenRows` is how many rows the
    /// system says it can hide; 0 where it does not say.
    [[nodiscard]] std::optional<QRectF> topCutout(QSize mode, int hiddenRows) const;
};

} // namespace nimbarrow
