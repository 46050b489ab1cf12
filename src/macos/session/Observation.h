#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace nimbarrow {

/// Listens to one of the system's notifications until it is dropped.
class Observation final {
public:
    enum class Centre {
        /// The program's own.
        Application,
        /// Of programs, displays and sleep.
        Workspace,
        /// Between programs.
        Distributed
    };

    /// Runs on the main thread.
    using Told = std::function<void()>;
    /// `program` is the bundle identifier of the program that the notification is about; else empty.
    using ToldOfProgram = std::function<void(const QString& program)>;

    Observation(Centre centre, const QString& name, const Told& told);
    Observation(Centre centre, const QString& name, ToldOfProgram told);
    ~Observation();
    Q_DISABLE_COPY_MOVE(Observation)

private:
    struct Registration;

    std::unique_ptr<Registration> m_registration;
};

} // namespace nimbarrow
