#pragma once

#include "support/PrivateDisplay.h"

#include <QTemporaryDir>

namespace nimbarrow {

/// A Wayland compositor for one test.
class PrivateCompositor final : public PrivateDisplay {
public:
    enum class Kind { Sway, KWin };

    explicit PrivateCompositor(Kind kind = Kind::Sway);
    ~PrivateCompositor() override { kill(); }
    Q_DISABLE_COPY_MOVE(PrivateCompositor)

private:
    void startSway();
    void startKWin();

    QTemporaryDir m_folder;
};

} // namespace nimbarrow
