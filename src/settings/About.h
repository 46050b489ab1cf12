#pragma once

#include <QObject>
#include <QUrl>
#include <qqmlintegration.h>

namespace nimbarrow {

class Opener;

/// What the program says of itself: its version, and where its author takes support.
class About final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString version READ version CONSTANT FINAL)

public:
    /// The opener outlives this.
    explicit About(Opener& opener, QObject* parent = nullptr);

    /// The program's name and version.
    [[nodiscard]] static QString version();
    [[nodiscard]] static QUrl supportUrl();

    /// Shows the support page in the user's browser.
    Q_INVOKABLE void openSupport();

private:
    Opener& m_opener;
};

} // namespace nimbarrow
