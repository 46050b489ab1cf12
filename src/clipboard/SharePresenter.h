#pragma once

#include "clipboard/ShareChoice.h"
#include "platform/SharePicker.h"

#include <QList>
#include <QObject>
#include <QVariantList>
#include <qqmlintegration.h>

#include <functional>

namespace nimbarrow {

class Opener;

/// What can be done with something that is shared, for as long as the user chooses.
class SharePresenter final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by whoever shares something")
    /// Each with a `symbol` and a `titleKey`; may be empty.
    Q_PROPERTY(QVariantList choices READ choices CONSTANT FINAL)
    /// False while the system's own picker asks.
    Q_PROPERTY(bool asks READ asks CONSTANT FINAL)

public:
    /// The references outlive the presenter. `onDone` runs once, when the user has chosen or would not; not
    /// when the presenter is dropped before. It may drop the presenter, by QObject::deleteLater().
    SharePresenter(SharePicker& picker, Opener& opener, QList<ShareItem> items, std::function<void()> onDone,
        QObject* parent = nullptr);

    [[nodiscard]] const QList<ShareItem>& items() const { return m_items; }
    [[nodiscard]] QVariantList choices() const;
    [[nodiscard]] bool asks() const { return m_asks; }

    /// Does it and closes; no choice at `index` does nothing.
    Q_INVOKABLE void choose(int index);
    Q_INVOKABLE void cancel();

private:
    void offer();
    void perform(ShareChoice::Action action);
    void reveal();
    void close();

    SharePicker& m_picker;
    Opener& m_opener;
    QList<ShareItem> m_items;
    QList<ShareChoice> m_choices;
    std::function<void()> m_onDone;
    bool m_isOpen = true;
    bool m_asks = true;
};

} // namespace nimbarrow
