#include "linux/calendar/LinuxCalendarStore.h"

#include "linux/calendar/DayWatch.h"
#include "linux/calendar/FolderTreeWatch.h"
#include "linux/session/BusCalls.h"
#include "platform/UserDefaults.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QFileInfo>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

using State = CalendarSource::State;

constexpr QStringView askedKey = u"calendarAccessRequested";

const QString sourcesService = u"org.gnome.evolution.dataserver.Sources5"_s;

/// The server may have to be started for its answer.
constexpr int serverPatience = 10'000; // ms
/// How long the one that has answered waits for the other, and how long both are waited for.
constexpr auto patienceForTheOther = std::chrono::seconds(1);
constexpr auto patience = std::chrono::seconds(30);
constexpr std::chrono::milliseconds folderRest { 200 };

/// The server is not there for us, whatever its files say.
bool meansAbsent(const QDBusError& error)
{
    return error.type() == QDBusError::ServiceUnknown || error.name().contains(".Spawn."_L1);
}

State stateOfFolder(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return State::Absent;
    if (!info.isDir() || !info.isReadable() || !info.isExecutable())
        return State::Refused;
    return QDir(path).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot) ? State::Absent : State::Present;
}

} // namespace

LinuxCalendarStore::LinuxCalendarStore(UserDefaults& defaults, std::optional<QDBusConnection> session,
    Stores stores, std::unique_ptr<DayWatch> dayWatch)
    : m_defaults(defaults)
    , m_session(std::move(session))
    , m_stores(std::move(stores))
    , m_dayWatch(std::move(dayWatch))
    , m_server(u"calendar-server"_s)
    , m_folder(u"calendar-folder"_s)
{
    connect(m_dayWatch.get(), &DayWatch::dayChanged, this, &CalendarStore::dayChanged);
    // Who waits for an answer then must not keep the program from ending.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &LinuxCalendarStore::close);
}

LinuxCalendarStore::~LinuxCalendarStore()
{
    close();
}

void LinuxCalendarStore::close()
{
    const std::lock_guard lock(m_mutex);
    m_isClosed = true;
    m_answered.notify_all();
}

bool LinuxCalendarStore::is(State state) const
{
    return m_server.state == state || m_folder.state == state;
}

CalendarStore::Authorization LinuxCalendarStore::authorization()
{
    if (!m_defaults.boolean(askedKey))
        return Authorization::NotDetermined;
    if (is(State::Refused))
        QMetaObject::invokeMethod(this, &LinuxCalendarStore::findOut, Qt::QueuedConnection);
    return is(State::Present) || is(State::Unknown) || !is(State::Refused) ? Authorization::FullAccess
                                                                           : Authorization::Denied;
}

void LinuxCalendarStore::requestFullAccess(std::function<void(bool)> answered)
{
    m_defaults.set(askedKey, true);
    m_requests.push_back(std::move(answered));
    findOut();
    // Later, as every answer.
    QMetaObject::invokeMethod(this, &LinuxCalendarStore::answerRequests, Qt::QueuedConnection);
}

void LinuxCalendarStore::answerRequests()
{
    const bool isKnown = !m_isFindingServer && !m_isFindingFolder && !is(State::Unknown);
    if (!is(State::Present) && !isKnown)
        return;
    const bool granted = is(State::Present) || !is(State::Refused);
    for (const auto& answered : std::exchange(m_requests, {}))
        answered(granted);
}

std::optional<QList<CalendarEvent>> LinuxCalendarStore::events(const QDateTime& start, const QDateTime& end)
{
    std::unique_lock lock(m_mutex);
    const auto question = m_question = { m_question.number + 1, start, end };
    QMetaObject::invokeMethod(this, qOverload<>(&LinuxCalendarStore::ask), Qt::QueuedConnection);

    const auto isOver
        = [&] { return m_isClosed || (m_server.isOver(question) && m_folder.isOver(question)); };
    const auto hasAnyTold = [&] { return m_server.hasTold(question) || m_folder.hasTold(question); };
    if (!m_answered.wait_for(lock, patienceForTheOther, isOver))
        m_answered.wait_for(lock, patience, [&] { return isOver() || hasAnyTold(); });
    for (auto* const source : { &m_server, &m_folder }) {
        if (!source->isOver(question))
            source->giveUp(question);
    }
    const bool isNothingThere = m_server.state == State::Absent && m_folder.state == State::Absent;
    if (m_isClosed || (!hasAnyTold() && !isNothingThere))
        return {};
    return m_server.lastTold(question) + m_folder.lastTold(question);
}

void LinuxCalendarStore::ask()
{
    findOut();
    ask(m_server);
    ask(m_folder);
}

void LinuxCalendarStore::ask(CalendarSource& source)
{
    if (source.state != State::Present)
        return;
    {
        const std::lock_guard lock(m_mutex);
        const bool isAsked = std::exchange(source.asked, m_question.number) == m_question.number;
        if (isAsked || std::exchange(source.isWaiting, true))
            return;
    }
    struct Outcome {
        bool isNews = false;
        bool hasFailed = false;
    };
    auto outcome = std::make_shared<Outcome>();
    source.asking.run(
        [this, &source, outcome] {
            CalendarSource::Question question;
            {
                const std::lock_guard lock(m_mutex);
                source.isWaiting = false;
                question = m_question;
            }
            auto events = source.store->events(question.start, question.end);
            outcome->hasFailed = !events;
            const std::lock_guard lock(m_mutex);
            outcome->isNews = source.accept(question, std::move(events));
            m_answered.notify_all();
        },
        this,
        [this, &source, outcome] {
            if (outcome->hasFailed && &source == &m_folder)
                lookIntoFolder();
            if (outcome->isNews)
                Q_EMIT changed();
        });
}

void LinuxCalendarStore::create(const QString& title, const QDateTime& start, const QDateTime& end,
    std::function<void(const Created&)> done)
{
    m_waiting.emplace_back([this, title, start, end, done = std::move(done)] {
        if (m_server.state != State::Present) {
            createInFolder(title, start, end, done);
            return;
        }
        m_server.store->create(title, start, end, [this, title, start, end, done](const Created& created) {
            if (created.error == CreateError::NoDefaultCalendar)
                createInFolder(title, start, end, done);
            else
                done(created);
        });
    });
    findOut();
    // Later, as every answer.
    QMetaObject::invokeMethod(this, &LinuxCalendarStore::createWaiting, Qt::QueuedConnection);
}

void LinuxCalendarStore::createWaiting()
{
    if (m_isFindingServer || m_server.state == State::Unknown)
        return;
    for (const auto& task : std::exchange(m_waiting, {}))
        task();
}

void LinuxCalendarStore::createInFolder(const QString& title, const QDateTime& start, const QDateTime& end,
    const std::function<void(const Created&)>& done)
{
    if (useFolder())
        m_folder.store->create(title, start, end, done);
    else
        done({ CreateError::Failed, u"The calendars may not be used"_s, {} });
}

void LinuxCalendarStore::findOut()
{
    findServer();
    findFolder();
}

void LinuxCalendarStore::findServer()
{
    const bool isKnown = m_server.state == State::Present || m_server.state == State::Absent;
    if (isKnown || std::exchange(m_isFindingServer, true))
        return;
    if (!m_session) {
        setState(m_server, State::Absent);
        return;
    }
    callBus(*m_session, questionToBus(u"ListActivatableNames"_s), this, [this](const QDBusMessage& answer) {
        const QDBusReply<QStringList> names = answer;
        if (names.value().contains(sourcesService))
            askServer();
        else
            setState(m_server, State::Absent);
    });
}

void LinuxCalendarStore::askServer()
{
    const auto question
        = QDBusMessage::createMethodCall(sourcesService, u"/"_s, u"org.freedesktop.DBus.Peer"_s, u"Ping"_s);
    const auto answered = [this](const QDBusMessage& answer) {
        if (const QDBusError error(answer); error.type() == QDBusError::AccessDenied)
            setState(m_server, State::Refused);
        else if (meansAbsent(error))
            setState(m_server, State::Absent);
        else
            // Also without an answer: what is down now may come.
            useServer();
    };
    callBus(*m_session, question, this, answered, serverPatience);
}

void LinuxCalendarStore::useServer()
{
    m_server.store = m_stores.server();
    if (!m_server.store) {
        setState(m_server, State::Refused);
        return;
    }
    m_serverWatch = std::make_unique<QDBusServiceWatcher>(
        sourcesService, *m_session, QDBusServiceWatcher::WatchForRegistration);
    connect(m_serverWatch.get(), &QDBusServiceWatcher::serviceRegistered, this, &Calendars::changed);
    connect(m_server.store.get(), &Calendars::changed, this, &Calendars::changed);
    setState(m_server, State::Present);
}

void LinuxCalendarStore::findFolder()
{
    const bool isKnown = m_folder.state == State::Present || m_folder.state == State::Absent;
    if (isKnown || std::exchange(m_isFindingFolder, true))
        return;
    if (m_folderWatch || m_folder.store) {
        lookIntoFolder();
        return;
    }
    // It looks first when it stands, so that nothing comes unseen.
    m_folderWatch = std::make_unique<FolderTreeWatch>(m_stores.folderPath, folderRest);
    connect(m_folderWatch.get(), &FolderTreeWatch::changed, this, &LinuxCalendarStore::lookIntoFolder);
}

void LinuxCalendarStore::lookIntoFolder()
{
    auto state = std::make_shared<State>();
    m_folder.asking.run([path = m_stores.folderPath, state] { *state = stateOfFolder(path); }, this,
        [this, state] {
            m_isFindingFolder = false;
            // What was loaded stays, for what comes again.
            if (*state == State::Present || (*state == State::Absent && m_folder.store))
                useFolder();
            else
                setState(m_folder, *state);
        });
}

bool LinuxCalendarStore::useFolder()
{
    if (!m_folder.store) {
        m_folder.store = m_stores.folder();
        if (!m_folder.store) {
            setState(m_folder, State::Refused);
            return false;
        }
        connect(m_folder.store.get(), &Calendars::changed, this, &Calendars::changed);
        m_folderWatch.reset();
    }
    setState(m_folder, State::Present);
    return true;
}

void LinuxCalendarStore::setState(CalendarSource& source, State state)
{
    State before {};
    {
        const std::lock_guard lock(m_mutex);
        before = std::exchange(source.state, state);
        m_answered.notify_all();
    }
    if (&source == &m_server)
        m_isFindingServer = false;
    if (before != State::Unknown && before != state)
        QMetaObject::invokeMethod(this, &Calendars::changed, Qt::QueuedConnection);
    ask(source);
    answerRequests();
    createWaiting();
}

} // namespace nimbarrow
