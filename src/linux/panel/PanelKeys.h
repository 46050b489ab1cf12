#pragma once

#include "platform/KeyEvent.h"

#include <QSet>

#include <functional>
#include <optional>

class QKeyEvent;
class QQuickWindow;

namespace nimbarrow {

/// What the key events of the panel's window mean to the program.
class PanelKeys {
public:
    /// The letter whose place on the keyboard has this code; Key::Other where none has.
    using LetterAt = std::function<Key(quint32 code)>;

    /// The window outlives it.
    PanelKeys(QQuickWindow& window, LetterAt letterAt);

    /// Whatever is down now counts as not pressed yet.
    void forget() { m_down.clear(); }

    /// None for a press that the control which the Tab key has reached, or what it stands in, has used.
    [[nodiscard]] std::optional<KeyEvent> follow(QKeyEvent& event);

private:
    [[nodiscard]] bool isTakenByControl(QKeyEvent& event) const;
    [[nodiscard]] Key keyOf(const QKeyEvent& event) const;

    QQuickWindow& m_window;
    LetterAt m_letterAt;
    /// The codes of the keys that have gone down and not up again.
    QSet<quint32> m_down;
};

} // namespace nimbarrow
