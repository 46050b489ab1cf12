#pragma once

#include <QString>

namespace nimbarrow {

/// The words by which people know the keys and the places of their system.
struct SystemWords {
    /// The program's hot key.
    QString hotKey;
    /// What pastes in other programs.
    QString paste;
    /// Where programs live that stay where they are.
    QString programsFolder;
    /// The program that holds the system's settings.
    QString settingsEnglish;
    QString settingsUkrainian;
    /// What runs it, in English.
    QString computer = QStringLiteral("Mac");
};

} // namespace nimbarrow
