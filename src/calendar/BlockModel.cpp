#include "calendar/BlockModel.h"

#include <algorithm>

namespace nimbarrow {

namespace {

/// Up to this many, all are here for assistive programs, too, wherever the day is scrolled to.
constexpr qsizetype mostBlocks = 200;
constexpr double margin = timelinelayout::hourWidth;

} // namespace

void BlockModel::setPlacements(const QList<timelinelayout::Placement>& placements)
{
    beginResetModel();
    m_placements = placements;
    m_shown = inSight();
    endResetModel();
}

void BlockModel::setSight(double x, double width)
{
    m_sightStart = x - margin;
    m_sightEnd = x + width + margin;
    const auto wanted = inSight();
    for (auto row = m_shown.size() - 1; row >= 0; --row) {
        if (std::ranges::binary_search(wanted, m_shown[row]))
            continue;
        beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
        m_shown.removeAt(row);
        endRemoveRows();
    }
    for (qsizetype row = 0; row < wanted.size(); ++row) {
        if (row < m_shown.size() && m_shown[row] == wanted[row])
            continue;
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(row));
        m_shown.insert(row, wanted[row]);
        endInsertRows();
    }
}

QList<qsizetype> BlockModel::inSight() const
{
    const bool isCrowded = m_placements.size() > mostBlocks;
    QList<qsizetype> shown;
    for (qsizetype index = 0; index < m_placements.size(); ++index) {
        const auto& placement = m_placements[index];
        if (!isCrowded || (placement.x <= m_sightEnd && placement.x + placement.width >= m_sightStart))
            shown << index;
    }
    return shown;
}

int BlockModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

QVariant BlockModel::data(const QModelIndex& index, int /*role*/) const
{
    return index.isValid() ? QVariant::fromValue(m_placements[m_shown[index.row()]]) : QVariant();
}

QHash<int, QByteArray> BlockModel::roleNames() const
{
    return { { Qt::UserRole, "modelData" } };
}

} // namespace nimbarrow
