#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace nimbarrow {

/// What the running copy says of itself, for who asks on the bus.
class BusReport final : public QObject {
    Q_OBJECT

public:
    // NOLINTNEXTLINE(readability-identifier-naming): as the bus has it.
    Q_SCRIPTABLE QString Report() const { return text ? text() : QString(); }

    std::function<QString()> text;
};

} // namespace nimbarrow
