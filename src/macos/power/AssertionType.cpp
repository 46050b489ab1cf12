#include "macos/power/AssertionType.h"

using namespace Qt::StringLiterals;

namespace nimbarrow {

QString assertionType(PowerAssertions::Type type)
{
    switch (type) {
    case PowerAssertions::Type::PreventUserIdleDisplaySleep: return u"PreventUserIdleDisplaySleep"_s;
    case PowerAssertions::Type::PreventSystemSleep: return u"PreventSystemSleep"_s;
    }
    Q_UNREACHABLE();
    return {};
}

} // namespace nimbarrow
