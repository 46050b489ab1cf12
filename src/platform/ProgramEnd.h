#pragma once

#include <QObject>

namespace nimbarrow {

/// Port: how the program learns that it is to end. Everything is told on the main thread.
class ProgramEnd : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

Q_SIGNALS:
    /// The session is about to end, perhaps: nothing is to be lost if it does. The program goes on.
    void sessionMayEnd();

    /// The program is to end.
    void requested();

    /// The display is gone. The process ends as soon as this has been handled; the main loop does not turn
    /// again.
    void displayLost();
};

} // namespace nimbarrow
