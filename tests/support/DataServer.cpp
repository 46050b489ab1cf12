#include "support/DataServer.h"

#include "linux/calendar/server/GObjects.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <libecal/libecal.h>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

bool write(const QString& path, const QByteArray& text)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) && file.write(text) >= 0;
}

/// The other program may not leave anything behind either: where leaks are looked for, they fail it.
struct FreeComponents {
    void operator()(GSList* list) const { e_util_free_nullable_object_slist(list); }
};

/// Not by the call that takes an invitation: that one leaves out what the user has declined.
bool put(ECalClient* client, ICalComponent* component, Failure& failure)
{
    const auto kind = i_cal_component_isa(component);
    if (kind == I_CAL_VTIMEZONE_COMPONENT) {
        const Reference<ICalTimezone> zone(i_cal_timezone_new());
        const Reference<ICalComponent> description(i_cal_component_clone(component));
        i_cal_timezone_set_component(zone.get(), description.get());
        return e_cal_client_add_timezone_sync(client, zone.get(), nullptr, failure.out());
    }
    const Reference<ICalProperty> recurrence(
        i_cal_component_get_first_property(component, I_CAL_RECURRENCEID_PROPERTY));
    if (recurrence) {
        return e_cal_client_modify_object_sync(
            client, component, E_CAL_OBJ_MOD_THIS, E_CAL_OPERATION_FLAG_NONE, nullptr, failure.out());
    }
    return e_cal_client_create_object_sync(
               client, component, E_CAL_OPERATION_FLAG_NONE, nullptr, nullptr, nullptr)
        || e_cal_client_modify_object_sync(
            client, component, E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE, nullptr, failure.out());
}

bool put(ECalClient* client, const QByteArray& text, Failure& failure)
{
    const Reference<ICalComponent> calendar(i_cal_component_new_from_string(text.constData()));
    Reference<ICalComponent> component(
        i_cal_component_get_first_component(calendar.get(), I_CAL_ANY_COMPONENT));
    while (component) {
        if (!put(client, component.get(), failure))
            return false;
        component.reset(i_cal_component_get_next_component(calendar.get(), I_CAL_ANY_COMPONENT));
    }
    return true;
}

QString text(ICalTime* time)
{
    const Reference<ICalTime> owned(time);
    return taken(i_cal_time_as_ical_string(time));
}

bool use(ECalClient* client, const QByteArray& what, Failure& failure)
{
    if (what == "put") {
        QFile input;
        return input.open(stdin, QIODevice::ReadOnly) && put(client, input.readAll(), failure);
    }
    GSList* list = nullptr;
    if (!e_cal_client_get_object_list_sync(client, "#t", &list, nullptr, failure.out()))
        return false;
    const std::unique_ptr<GSList, FreeComponents> found(list);
    for (auto* item = list; item; item = item->next) {
        auto* const component = static_cast<ICalComponent*>(item->data);
        const auto* const uid = i_cal_component_get_uid(component);
        if (what == "clear") {
            // One that stands twice, as a series and its occurrence, is gone with the first.
            e_cal_client_remove_object_sync(
                client, uid, nullptr, E_CAL_OBJ_MOD_ALL, E_CAL_OPERATION_FLAG_NONE, nullptr, nullptr);
            continue;
        }
        std::printf("%s %s %s %s\n", uid, qPrintable(text(i_cal_component_get_dtstart(component))),
            qPrintable(text(i_cal_component_get_dtend(component))), i_cal_component_get_summary(component));
    }
    return true;
}

bool useCalendar(
    ESourceRegistry* registry, const QByteArray& what, const QByteArray& calendar, Failure& failure)
{
    const Reference<ESource> source(
        registry ? e_source_registry_ref_source(registry, calendar.constData()) : nullptr);
    const Reference<EClient> client(source
            ? e_cal_client_connect_sync(source.get(), E_CAL_CLIENT_SOURCE_TYPE_EVENTS,
                static_cast<guint32>(-1), nullptr, failure.out())
            : nullptr);
    if (client && use(E_CAL_CLIENT(client.get()), what, failure))
        return true;
    std::fprintf(stderr, "%s %s: %s\n", what.constData(), calendar.constData(),
        failure.isSet() ? qPrintable(failure.text()) : "no such calendar");
    return false;
}

/// The other program.
int runOther(const QByteArray& what, const QStringList& calendars)
{
    Failure failure;
    const Reference<ESourceRegistry> registry(e_source_registry_new_sync(nullptr, failure.out()));
    return std::all_of(calendars.begin(), calendars.end(),
               [&](const QString& calendar) {
                   return useCalendar(registry.get(), what, calendar.toUtf8(), failure);
               })
        ? 0
        : 1;
}

} // namespace

DataServer::DataServer(const QString& folder)
{
    qputenv("HOME", QFile::encodeName(folder));
    for (const auto* const variable :
        { "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR" }) {
        const auto path = folder + u'/' + QString::fromLatin1(variable).toLower();
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv(variable, QFile::encodeName(path));
    }
    qputenv("GSETTINGS_BACKEND", "memory");
    const auto sources = folder + "/xdg_config_home/evolution/sources/"_L1;
    write(sources + "second.source"_L1,
        "[Data Source]\nDisplayName=Second\nEnabled=true\nParent=local-stub\n"
        "[Calendar]\nBackendName=local\nColor=#ff0000\nSelected=true\n");
    write(sources + "mail.source"_L1,
        "[Data Source]\nDisplayName=Mail\nEnabled=true\n"
        "[Mail Identity]\nAddress=Sam@Example.org\nName=Sam\n");
    m_bus = std::make_unique<PrivateBus>();
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().toUtf8());
}

bool DataServer::put(const QByteArray& components, const QString& calendar)
{
    return other({ u"put"_s, calendar },
        "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:x\r\n" + components + "END:VCALENDAR\r\n");
}

bool DataServer::clear()
{
    return other({ u"clear"_s, u"system-calendar"_s, u"second"_s });
}

QStringList DataServer::list()
{
    if (!other({ u"list"_s, u"system-calendar"_s }))
        return {};
    return m_output.split(u'\n', Qt::SkipEmptyParts);
}

QList<qint64> DataServer::processes() const
{
    // Whoever has this bus in its environment and is of the server's programs.
    QList<qint64> result;
    const auto mark = QByteArray("DBUS_SESSION_BUS_ADDRESS=") + m_bus->address().toUtf8();
    for (const auto& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        bool isProcess = false;
        const auto id = entry.toLongLong(&isProcess);
        QFile command("/proc/"_L1 + entry + "/cmdline"_L1);
        QFile environment("/proc/"_L1 + entry + "/environ"_L1);
        if (isProcess && command.open(QIODevice::ReadOnly) && environment.open(QIODevice::ReadOnly)
            && command.readAll().contains("evolution-") && environment.readAll().contains(mark))
            result += id;
    }
    return result;
}

int DataServer::runAsOther(const QStringList& arguments)
{
    if (arguments.size() < 4 || arguments[1] != "--other"_L1)
        return -1;
    return runOther(arguments[2].toUtf8(), arguments.sliced(3));
}

bool DataServer::other(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), QStringList { u"--other"_s } + arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished())
        return false;
    m_output = QString::fromUtf8(process.readAllStandardOutput());
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace nimbarrow
