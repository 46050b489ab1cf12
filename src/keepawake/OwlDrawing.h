#pragma once

#include "keepawake/OwlPose.h"

#include <QRectF>

class QPainter;

namespace nimbarrow {

/// How much higher than wide the owl's place is, for a hop and the z's above it.
constexpr double owlHeadroom = 1.125;

/// Draws the owl, in vectors, as wide as `rect` and standing near its lower edge.
void drawOwl(QPainter& painter, const QRectF& rect, const OwlPose& pose);

} // namespace nimbarrow
