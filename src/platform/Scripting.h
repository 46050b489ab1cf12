#pragma once

#include "platform/Port.h"

#include <QString>
#include <QVariantList>

#include <optional>

namespace nimbarrow {

/// What a script gave back.
struct ScriptResult {
    /// Why it failed.
    struct Error {
        /// The user refused that this program drives the other one.
        bool isRefusal = false;
        QString description;
    };

    /// None when the script ran to its end.
    std::optional<Error> error;
    /// The items of a list, or the one value; numbers, texts and bytes.
    QVariantList values;
};

/// Port: drives other programs by the text of a script. This class itself is a system without such a service.
class Scripting : public Port {
public:
    /// Runs the script to its end, which may take long. On any thread but the main one; several at once.
    [[nodiscard]] virtual ScriptResult run(const QString& script)
    {
        Q_UNUSED(script)
        return {
            ScriptResult::Error { false, QStringLiteral("There is no scripting service on this system") }, {}
        };
    }
};

} // namespace nimbarrow
