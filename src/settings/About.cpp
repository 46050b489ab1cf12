#include "settings/About.h"

#include "platform/Capabilities.h"
#include "platform/Opener.h"
#include "preferences/L10n.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

namespace {

QString remark(const Capability& capability)
{
    const bool isUkrainian = L10n::current() == L10n::Ukrainian && !capability.ukrainianWords.isEmpty();
    return isUkrainian ? capability.ukrainianWords : capability.words;
}

} // namespace

About::About(Opener& opener, const Capabilities& capabilities, QObject* parent)
    : QObject(parent)
    , m_opener(opener)
    , m_capabilities(capabilities)
{
    connect(&L10n::instance(), &L10n::currentChanged, this, &About::remarksChanged);
}

QString About::hotKeyRemark() const
{
    return remark(m_capabilities.of(Capabilities::Part::HotKey));
}

QString About::pasteRemark() const
{
    return remark(m_capabilities.of(Capabilities::Part::Paste));
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
