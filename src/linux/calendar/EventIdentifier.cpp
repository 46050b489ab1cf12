#include "linux/calendar/EventIdentifier.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

// The parts may hold anything, colons and percent signs too.
QString encoded(const QString& part)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(part));
}

QString decoded(const QString& part)
{
    return QUrl::fromPercentEncoding(part.toUtf8());
}

} // namespace

QString EventIdentifier::text() const
{
    QStringList parts { kind == Kind::DataServer ? u"eds"_s : u"ics"_s, encoded(calendar), encoded(uid) };
    if (!recurrence.isEmpty())
        parts += encoded(recurrence);
    return parts.join(u':');
}

std::optional<EventIdentifier> EventIdentifier::parse(const QString& text)
{
    const auto parts = text.split(u':');
    if (parts.size() < 3 || parts.size() > 4 || (parts[0] != "eds"_L1 && parts[0] != "ics"_L1))
        return {};
    EventIdentifier identifier { parts[0] == "eds"_L1 ? Kind::DataServer : Kind::File, decoded(parts[1]),
        decoded(parts[2]), parts.size() == 4 ? decoded(parts[3]) : QString() };
    if (identifier.calendar.isEmpty())
        return {};
    return identifier;
}

std::optional<EventIdentifier> EventIdentifier::ofLink(const QUrl& link)
{
    if (link.scheme() != "ical"_L1 || link.host() != "ekevent"_L1)
        return {};
    return parse(link.path(QUrl::FullyDecoded).mid(1));
}

} // namespace nimbarrow
