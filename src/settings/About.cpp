#include "settings/About.h"

#include "platform/Opener.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

About::About(Opener& opener, QObject* parent)
    : QObject(parent)
    , m_opener(opener)
{
}

QString About::version()
{
    return u"Nimbarrow " NIMBARROW_VERSION ""_s;
}

QUrl About::supportUrl()
{
    return QUrl(u"https://nimbarrow.tessak.ua/donate"_s);
}

void About::openSupport()
{
    m_opener.open(supportUrl());
}

} // namespace nimbarrow
