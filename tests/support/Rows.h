#pragma once

#include <QTest>

#include <tuple>

namespace nimbarrow {

/// The rows of a test that runs once for each: its _data() makes one of these and calls it for every row, and
/// the test takes current() apart.
template <typename... Values>
class Rows {
    using Row = std::tuple<Values...>;

public:
    Rows() { QTest::addColumn<Row>("row"); }

    void operator()(const char* name, const Values&... values) const
    {
        QTest::newRow(name) << Row(values...);
    }

    [[nodiscard]] static Row current()
    {
        QFETCH(const Row, row);
        return row;
    }
};

} // namespace nimbarrow
