#include "linux/keys/CustomKey.h"

#include "linux/session/GSettings.h"
#include "platform/UserDefaults.h"
#include "platform/WorkQueue.h"

#include <QCoreApplication>
#include <QLocale>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

Q_LOGGING_CATEGORY(customKeys, "ua.tessak.Nimbarrow.hotkey")

constexpr QStringView askedKey = u"customKeyOffered";

const QString schema = u"org.gnome.settings-daemon.plugins.media-keys"_s;
const QString ownPlace = u"/org/gnome/settings-daemon/plugins/media-keys/custom-keybindings/nimbarrow/"_s;
const QString ownSchema = schema + ".custom-keybinding:"_L1 + ownPlace;

/// As the tool has texts.
QString quoted(QString text)
{
    return u'\'' + text.replace(u'\\', R"(\\)"_L1).replace(u'\'', R"(\')"_L1) + u'\'';
}

/// Where the custom keys are described, as paths.
std::optional<QStringList> readPlaces()
{
    const auto printed = gsettings({ u"get"_s, schema, u"custom-keybindings"_s });
    if (!printed)
        return {};
    static const QRegularExpression place(u"'([^']*)'"_s);
    QStringList places;
    for (auto found = place.globalMatch(*printed); found.hasNext();)
        places << found.next().captured(1);
    return places;
}

bool writePlaces(QStringList places)
{
    for (auto& place : places)
        place = quoted(place);
    return gsettings({ u"set"_s, schema, u"custom-keybindings"_s, u'[' + places.join(", "_L1) + u']' })
        .has_value();
}

/// In the words of GNOME: "<Shift><Super>v".
QString bindingOf(Key letter, KeyModifiers modifiers)
{
    QString binding;
    for (const auto& [modifier, name] :
        { std::pair(KeyModifier::Control, "<Control>"_L1), std::pair(KeyModifier::Option, "<Alt>"_L1),
            std::pair(KeyModifier::Shift, "<Shift>"_L1), std::pair(KeyModifier::Command, "<Super>"_L1) }) {
        if (modifiers.testFlag(modifier))
            binding += name;
    }
    return binding + (letter == Key::C ? u'c' : u'v');
}

Questions::Question question()
{
    // In the language of the system's settings, where it stands.
    if (QLocale::system().language() == QLocale::Ukrainian)
        return { u"Відкривати історію клавішами Super+Shift+V?"_s,
            u"Nimbarrow додасть їх до комбінацій клавіш GNOME."_s, u"Додати"_s, u"Не додавати"_s };
    return { u"Open the history with Super+Shift+V?"_s, u"Nimbarrow will add it to the shortcuts of GNOME."_s,
        u"Add"_s, u"Do not add"_s };
}

} // namespace

class CustomKey::Registered final : public Registration {
public:
    explicit Registered(CustomKey& keys)
        : m_keys(keys)
    {
    }
    ~Registered() override { m_keys.remove(); }
    Q_DISABLE_COPY_MOVE(Registered)

private:
    CustomKey& m_keys;
};

CustomKey::CustomKey(QString command, Questions& questions, UserDefaults& defaults, WorkQueues& queues,
    std::function<void(bool)> bound)
    : m_command(std::move(command))
    , m_questions(questions)
    , m_defaults(defaults)
    , m_bound(std::move(bound))
    , m_settings(queues.serial(u"ua.tessak.Nimbarrow.custom-key"_s))
{
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, &m_context,
        [this] { m_isEnding = true; });
}

CustomKey::~CustomKey() = default;

// Who presses it starts the command, which asks the program by itself.
std::unique_ptr<HotKeys::Registration> CustomKey::registerKey(
    Key key, KeyModifiers modifiers, std::function<void()> /*pressed*/)
{
    m_isWanted = true;
    const auto places = std::make_shared<std::optional<QStringList>>();
    m_settings->run([places] { *places = readPlaces(); }, &m_context,
        [this, places, binding = bindingOf(key, modifiers)] {
            if (!m_isWanted)
                return;
            const bool isThere = *places && (*places)->contains(ownPlace);
            // Who has said no, or has taken it away in GNOME's settings, is not asked again.
            if (*places && !isThere && !m_defaults.boolean(askedKey))
                ask(binding);
            else
                m_bound(isThere);
        });
    return std::make_unique<Registered>(*this);
}

void CustomKey::ask(const QString& binding)
{
    m_question = m_questions.ask(question(), [this, binding](Questions::Answer answer) {
        // Held until the end of this function, which it has called.
        const auto asked = std::move(m_question);
        if (answer != Questions::Answer::None)
            m_defaults.set(askedKey, true);
        if (answer == Questions::Answer::Yes)
            add(binding);
        else
            m_bound(false);
    });
}

void CustomKey::add(const QString& binding)
{
    const auto isAdded = std::make_shared<bool>(false);
    m_settings->run(
        [isAdded, binding, command = m_command] {
            const auto places = readPlaces();
            const auto set = [](const QString& key, const QString& value) {
                return gsettings({ u"set"_s, ownSchema, key, quoted(value) }).has_value();
            };
            *isAdded = places && set(u"name"_s, u"Nimbarrow"_s) && set(u"command"_s, command)
                && set(u"binding"_s, binding) && writePlaces(*places + QStringList { ownPlace });
        },
        &m_context,
        [this, isAdded] {
            if (!*isAdded)
                qCWarning(customKeys, "GNOME's settings took no custom key");
            m_bound(*isAdded);
        });
}

void CustomKey::remove()
{
    if (m_isEnding)
        return;
    m_isWanted = false;
    m_question.reset();
    // Who switches it on again wants to be asked again.
    m_defaults.set(askedKey, false);
    m_settings->run([] {
        auto places = readPlaces();
        if (places && places->removeAll(ownPlace) > 0 && writePlaces(*places))
            gsettings({ u"reset-recursively"_s, ownSchema });
    });
}

} // namespace nimbarrow
