#pragma once

#include <QtGlobal>

namespace nimbarrow {

/// What every port is: owned in one place, never copied. Ports are used on the main thread alone, unless one
/// of them says otherwise.
class Port {
public:
    virtual ~Port() = default;
    Q_DISABLE_COPY_MOVE(Port)

protected:
    Port() = default;
};

} // namespace nimbarrow
