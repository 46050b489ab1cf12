#pragma once

#include <QObject>
#include <QUrl>
#include <qqmlintegration.h>

namespace nimbarrow {

class Capabilities;
class Opener;

/// What the program says of itself: its version, where its author takes support, and which of its switches do
/// not work in this session.
class About final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(QString version READ version CONSTANT FINAL)
    /// What to do instead of the hot key, in the interface's language; empty where it works.
    Q_PROPERTY(QString hotKeyRemark READ hotKeyRemark NOTIFY remarksChanged FINAL)
    /// What to do for an entry to be pasted, or instead; empty where it works.
    Q_PROPERTY(QString pasteRemark READ pasteRemark NOTIFY remarksChanged FINAL)

public:
    /// Both outlive this.
    About(Opener& opener, const Capabilities& capabilities, QObject* parent = nullptr);

    /// The program's name and version.
    [[nodiscard]] static QString version();
    [[nodiscard]] static QUrl supportUrl();

    /// Shows the support page in the user's browser.
    Q_INVOKABLE void openSupport();

    [[nodiscard]] QString hotKeyRemark() const;
    [[nodiscard]] QString pasteRemark() const;
    /// Something may work now that did not, or the other way round.
    Q_INVOKABLE void refresh() { Q_EMIT remarksChanged(); }

Q_SIGNALS:
    void remarksChanged();

private:
    Opener& m_opener;
    const Capabilities& m_capabilities;
};

} // namespace nimbarrow
