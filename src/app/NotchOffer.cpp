#include "app/NotchOffer.h"

#include "notch/NotchGeometry.h"
#include "platform/Screens.h"
#include "platform/UserDefaults.h"
#include "preferences/L10n.h"

#include <cstdio>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

constexpr QSize offeredNotch(200, 32); // points
constexpr QStringView answeredKey = u"notchOffered";

} // namespace

NotchOffer::NotchOffer(Screens& screens, Questions& questions, UserDefaults& defaults, QObject* parent)
    : QObject(parent)
    , m_screens(screens)
    , m_questions(questions)
    , m_defaults(defaults)
{
    connect(&screens, &Screens::changed, this, [this] {
        if (hasNotch())
            m_question.reset();
    });
}

bool NotchOffer::hasNotch() const
{
    return NotchGeometry::find(m_screens.screens()).has_value();
}

void NotchOffer::makeOnce()
{
    if (!m_defaults.boolean(answeredKey))
        make();
    else if (!hasNotch())
        printHint();
}

void NotchOffer::make()
{
    const auto screen = m_screens.screenToDeclare();
    if (m_question || hasNotch())
        return;
    if (screen.isEmpty()) {
        printHint();
        return;
    }
    m_question = m_questions.ask(
        { L10n::text(L10n::Key::NoNotchTitle), L10n::text(L10n::Key::NoNotchText).arg(screen),
            L10n::text(L10n::Key::NoNotchShow), L10n::text(L10n::Key::NoNotchRefuse) },
        [this, screen](Questions::Answer given) { answer(screen, given); });
}

void NotchOffer::answer(const QString& screen, Questions::Answer answer)
{
    // Held until the end of this function, which it has called.
    const auto question = std::move(m_question);
    if (answer == Questions::Answer::None) {
        printHint();
        return;
    }
    if (answer == Questions::Answer::Yes) {
        if (const auto declared = m_screens.declareNotch(screen, offeredNotch); declared.place.isEmpty()) {
            std::fprintf(stderr, "Nimbarrow: %s\n", qUtf8Printable(declared.failure));
            return;
        }
    }
    m_defaults.set(answeredKey, true);
}

void NotchOffer::printHint() const
{
    std::fprintf(stderr, "Nimbarrow: no display has a notch, so the panel stays hidden.\n");
    if (const auto screen = m_screens.screenToDeclare(); !screen.isEmpty())
        std::fprintf(stderr, "To show it at the top of the screen %1$s: nimbarrow --notch %2$dx%3$d@%1$s\n",
            qUtf8Printable(screen), offeredNotch.width(), offeredNotch.height());
}

} // namespace nimbarrow
