#pragma once

#include "clipboard/ClipboardListModel.h"

#include <QAbstractItemModelTester>

namespace nimbarrow {

/// A view knows the rows only by the signals: it keeps a copy by them.
class SeenRows {
public:
    explicit SeenRows(ClipboardListModel& model)
        : m_model(model)
        , m_tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest)
        , m_rows(rows())
    {
        const auto* const view = &m_tester;
        QObject::connect(
            &model, &ClipboardListModel::rowsInserted, view, [this](const QModelIndex&, int first, int last) {
                for (auto row = first; row <= last; ++row)
                    m_rows.insert(row, text(row));
            });
        QObject::connect(&model, &ClipboardListModel::rowsRemoved, view,
            [this](const QModelIndex&, int first, int last) { m_rows.remove(first, last - first + 1); });
        QObject::connect(&model, &ClipboardListModel::rowsMoved, view,
            [this](const QModelIndex&, int from, int, const QModelIndex&, int to) {
                m_rows.move(from, to > from ? to - 1 : to);
            });
        QObject::connect(&model, &ClipboardListModel::dataChanged, view,
            [this](const QModelIndex& index) { m_rows[index.row()] = text(index.row()); });
    }

    [[nodiscard]] bool areCurrent() const { return m_rows == rows(); }

private:
    [[nodiscard]] QString text(int row) const
    {
        return m_model.index(row).data(ClipboardListModel::SummaryRole).toString();
    }

    [[nodiscard]] QStringList rows() const
    {
        QStringList rows;
        for (auto row = 0; row < m_model.rowCount(); ++row)
            rows << text(row);
        return rows;
    }

    ClipboardListModel& m_model;
    QAbstractItemModelTester m_tester;
    QStringList m_rows;
};

} // namespace nimbarrow
