#include "macos/media/MacScripting.h"

#include "macos/media/ScriptAnswer.h"

#include <QCache>

#include <Foundation/Foundation.h>
#include <mutex>

namespace nimbarrow {

namespace {

using Errors = NSDictionary<NSString*, id>*;

/// More than there are scripts that are run again and again; the others carry a number and pass through.
constexpr qsizetype mostKept = 12;

QVariant valueOf(NSAppleEventDescriptor* descriptor)
{
    switch (scriptanswer::kindOf(descriptor.descriptorType)) {
    case scriptanswer::Kind::Text: return QString::fromNSString(descriptor.stringValue);
    case scriptanswer::Kind::Integer: return static_cast<int>(descriptor.int32Value);
    case scriptanswer::Kind::Real: return descriptor.doubleValue;
    case scriptanswer::Kind::Truth: return descriptor.booleanValue != 0;
    case scriptanswer::Kind::Bytes: return QByteArray::fromNSData(descriptor.data);
    case scriptanswer::Kind::List:
    case scriptanswer::Kind::Nothing: break;
    }
    return {};
}

QVariantList valuesOf(NSAppleEventDescriptor* descriptor)
{
    if (scriptanswer::kindOf(descriptor.descriptorType) != scriptanswer::Kind::List)
        return { valueOf(descriptor) };
    QVariantList values;
    // Counted from one.
    for (NSInteger place = 1; place <= descriptor.numberOfItems; ++place) {
        auto* const item = [descriptor descriptorAtIndex:place];
        values << (item ? valueOf(item) : QVariant());
    }
    return values;
}

ScriptResult failure(Errors errors)
{
    std::optional<qint64> number;
    if (id given = errors[NSAppleScriptErrorNumber]; [given isKindOfClass:NSNumber.class])
        number = ((NSNumber*)given).longLongValue;
    QString words;
    if (id given = errors[NSAppleScriptErrorMessage]; [given isKindOfClass:NSString.class])
        words = QString::fromNSString((NSString*)given);
    return { scriptanswer::error(number, words), {} };
}

} // namespace

struct MacScripting::Compiled {
    struct Kept {
        NSAppleScript* script;
    };

    std::mutex mutex;
    QCache<QString, Kept> scripts { mostKept };

    /// Null when the text is no script.
    NSAppleScript* script(const QString& text, Errors* errors)
    {
        if (const auto* const kept = scripts.object(text))
            return kept->script;
        auto* const script = [[NSAppleScript alloc] initWithSource:text.toNSString()];
        Errors found = nil;
        const bool compiled = [script compileAndReturnError:&found];
        *errors = found;
        if (!compiled)
            return nil;
        scripts.insert(text, new Kept { script });
        return script;
    }
};

MacScripting::MacScripting()
    : m_compiled(std::make_unique<Compiled>())
{
}

MacScripting::~MacScripting() = default;

ScriptResult MacScripting::run(const QString& script)
{
    @autoreleasepool {
        const std::lock_guard lock(m_compiled->mutex);
        Errors errors = nil;
        auto* const compiled = m_compiled->script(script, &errors);
        if (!compiled)
            return failure(errors);
        auto* const answer = [compiled executeAndReturnError:&errors];
        if (!answer)
            return failure(errors);
        return { {}, valuesOf(answer) };
    }
}

} // namespace nimbarrow
