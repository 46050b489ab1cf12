#pragma once

#include "platform/Questions.h"

#include <QObject>

#include <memory>

namespace nimbarrow {

class Screens;
class UserDefaults;

/// For somebody whose screens have no notch: asks once whether the panel is to stand at the top of one all
/// the same, and says on the terminal how it can.
class NotchOffer final : public QObject {
    Q_OBJECT

public:
    /// All outlive the offer.
    NotchOffer(Screens& screens, Questions& questions, UserDefaults& defaults, QObject* parent = nullptr);

    /// At the start: asks whoever has never answered.
    void makeOnce();
    /// Somebody wants the panel that cannot be shown: asks again. Nothing where there is a notch.
    void make();

private:
    [[nodiscard]] bool hasNotch() const;
    void answer(const QString& screen, Questions::Answer answer);
    void printHint() const;

    Screens& m_screens;
    Questions& m_questions;
    UserDefaults& m_defaults;
    std::unique_ptr<Questions::Standing> m_question;
};

} // namespace nimbarrow
