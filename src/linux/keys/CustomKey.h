#pragma once

#include "platform/HotKeys.h"
#include "platform/Questions.h"

#include <QObject>

#include <memory>

namespace nimbarrow {

class UserDefaults;
class WorkQueue;
class WorkQueues;

/// The hot key as one of the custom keys in GNOME's settings, for a GNOME that has no portal for hot keys.
/// Such a key starts a command, which has to reach the running program. The user is asked once before it is
/// added; no other key is touched, and it goes when the hot key is switched off, not when the program ends.
class CustomKey final : public HotKeys {
public:
    /// `command` is for a shell. `bound` runs on the main loop, with whether there is a hot key now. The
    /// ports live longer.
    CustomKey(QString command, Questions& questions, UserDefaults& defaults, WorkQueues& queues,
        std::function<void(bool isBound)> bound);
    ~CustomKey() override;

    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key key, KeyModifiers modifiers, std::function<void()> pressed) override;

private:
    class Registered;

    void ask(const QString& binding);
    void add(const QString& binding);
    void remove();

    QString m_command;
    Questions& m_questions;
    UserDefaults& m_defaults;
    std::function<void(bool)> m_bound;
    std::unique_ptr<WorkQueue> m_settings;
    std::unique_ptr<Questions::Standing> m_question;
    bool m_isWanted = false;
    bool m_isEnding = false;
    /// Owns what is on its way. Goes first, and nothing is answered any more.
    QObject m_context;
};

} // namespace nimbarrow
