#include "macos/session/LogName.h"

namespace nimbarrow {

namespace {

constexpr auto* program = "ua.tessak.Nimbarrow";

} // namespace

LogName LogName::of(const char* name)
{
    const QByteArray whole(name == nullptr || *name == '\0' ? "default" : name);
    const QByteArray prefix = QByteArray(program) + '.';
    if (whole.startsWith(prefix) && whole.size() > prefix.size())
        return { program, whole.sliced(prefix.size()) };
    return { program, whole };
}

} // namespace nimbarrow
