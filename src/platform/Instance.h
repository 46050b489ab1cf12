#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace nimbarrow {

/// Port: the one running copy of the program in a session, and what other programs ask of it. Making it takes
/// nothing and announces nothing.
class Instance : public QObject {
    Q_OBJECT

public:
    enum class Request {
        /// The surface is to open, and to stay open where it is already.
        Open,
        /// As the hot key does.
        ToggleKeyboard,
        Quit
    };
    Q_ENUM(Request)

    using QObject::QObject;

    /// True when another copy runs; otherwise this one is the running copy until it ends.
    [[nodiscard]] virtual bool anotherIsRunning() = 0;

    /// For a program that is not the running copy: asks the one that is, and waits 10 s at most.
    /// Needs no display. False when none has answered.
    [[nodiscard]] virtual bool ask(Request request) = 0;

    /// For a program that is not the running copy: what the one that is says of itself, as `ask()` asks it;
    /// none when none has answered.
    [[nodiscard]] virtual std::optional<QString> askForReport() { return {}; }

    /// What this copy says of itself when it is asked for it.
    virtual void setReport(std::function<QString()> report) { Q_UNUSED(report) }

    Q_SIGNALS :
        /// Somebody asks this copy.
        void asked(nimbarrow::Instance::Request request);
};

} // namespace nimbarrow
