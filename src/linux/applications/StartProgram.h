#pragma once

#include "linux/session/InheritedState.h"

#include <QString>
#include <QStringList>

class QProcess;

namespace nimbarrow {

/// The path of a program that the session finds by this name; empty where there is none.
[[nodiscard]] QString installedProgram(const InheritedState& inherited, const QString& name);

/// Makes `process` start a program as the session would have started it, in a session of its own.
void prepareProgram(
    QProcess& process, const InheritedState& inherited, const QString& path, const QStringList& arguments);

/// Starts a program as the session would have started it, and lets it go. False when it did not start.
bool startProgram(const InheritedState& inherited, const QString& path, const QStringList& arguments);

} // namespace nimbarrow
