#pragma once

#include "calendar/TimelineLayout.h"

#include <QAbstractListModel>
#include <qqmlintegration.h>

namespace nimbarrow {

/// The events that the timeline draws, each a `Placement` as "modelData". On a crowded day only those in
/// sight are here; which they are changes row by row.
class BlockModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the timeline")

public:
    using QAbstractListModel::QAbstractListModel;

    void setPlacements(const QList<timelinelayout::Placement>& placements);
    /// What part of the day can be seen, in points from midnight. More on either side is there already.
    void setSight(double x, double width);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    [[nodiscard]] QList<qsizetype> inSight() const;

    QList<timelinelayout::Placement> m_placements;
    /// Of those above, in their order.
    QList<qsizetype> m_shown;
    double m_sightStart = 0;
    double m_sightEnd = 0;
};

} // namespace nimbarrow
