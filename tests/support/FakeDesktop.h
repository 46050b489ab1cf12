#pragma once

#include "platform/AccessibilityTrust.h"
#include "platform/Applications.h"
#include "platform/DesktopPreferences.h"
#include "platform/HotKeys.h"
#include "platform/Keystrokes.h"
#include "platform/Locations.h"
#include "platform/LoginItem.h"
#include "platform/Opener.h"
#include "platform/PanelWindow.h"
#include "platform/Pointer.h"
#include "platform/Screens.h"
#include "platform/SessionLock.h"
#include "platform/SharePicker.h"
#include "platform/UserDefaults.h"

#include <QHash>
#include <QList>

#include <optional>

namespace nimbarrow {

/// Screens that the test plugs in and out.
class FakeScreens final : public Screens {
    Q_OBJECT

public:
    [[nodiscard]] QList<Screen> screens() const override { return m_screens; }

    void plugIn(const QList<Screen>& screens)
    {
        m_screens = screens;
        Q_EMIT changed();
    }

    /// 1512 x 982 points with a notch 184 wide and 32 high in the middle of its top edge.
    [[nodiscard]] static Screen notched()
    {
        return { QStringLiteral("eDP-1"), { 0, -982, 1512, 982 }, 32, ScreenRect { 0, -32, 664, 32 },
            ScreenRect { 848, -32, 664, 32 } };
    }

private:
    QList<Screen> m_screens;
};

/// A session that the test locks.
class FakeSessionLock final : public SessionLock {
    Q_OBJECT

public:
    [[nodiscard]] bool isLocked() const override { return m_isLocked; }

    void setLocked(bool locked)
    {
        m_isLocked = locked;
        Q_EMIT changed();
    }

private:
    bool m_isLocked = false;
};

/// A pointer that the test moves.
class FakePointer final : public Pointer {
public:
    [[nodiscard]] ScreenPoint location() const override { return place; }
    [[nodiscard]] bool isAnyButtonDown() const override { return buttonDown; }

    ScreenPoint place { 100, -900 };
    bool buttonDown = false;
};

/// A window that keeps what was asked of it.
class FakePanelWindow final : public PanelWindow {
    Q_OBJECT

public:
    void setFrame(const ScreenRect& rect) override { frame = rect; }
    void orderFront() override { visible = true; }
    void orderOut() override { visible = key = false; }
    void makeKey() override { key = true; }
    void resignKey() override { key = false; }
    [[nodiscard]] bool isKey() const override { return key; }
    [[nodiscard]] bool hasReturnedKey() const override { return returnsKey; }
    void setOutline(const QPainterPath& path) override { outline = path; }

    /// Another window takes the keyboard.
    void loseKey()
    {
        key = false;
        Q_EMIT resignedKey();
    }

    void press(Key pressed, KeyModifiers modifiers = {}) { Q_EMIT keyPressed({ pressed, modifiers, false }); }
    void letGo(Key released) { Q_EMIT keyReleased({ released, {}, false }); }

    ScreenRect frame;
    QPainterPath outline;
    bool visible = false;
    bool key = false;
    bool returnsKey = false;
};

/// Counts what would have been typed.
class FakeKeystrokes final : public Keystrokes {
public:
    int pastes = 0;

    void postPaste() override { ++pastes; }
};

/// The folder that the test names.
class FakeLocations final : public Locations {
public:
    QString folder;

    [[nodiscard]] QString applicationSupport() const override { return folder; }
};

/// A login item that fails when the test gives it an error.
class FakeLoginItem final : public LoginItem {
public:
    bool enabled = false;
    bool outsideApplications = false;
    std::optional<QString> error;

    [[nodiscard]] bool isEnabled() const override { return enabled; }
    std::optional<QString> setEnabled(bool enable) override
    {
        if (!error)
            enabled = enable;
        return error;
    }
    [[nodiscard]] bool runsOutsideApplications() const override { return outsideApplications; }
};

/// Remembers what it was to open and to show.
class FakeOpener final : public Opener {
public:
    void open(const QUrl& url) override { opened << url; }
    void reveal(const QList<QUrl>& files) override { revealed << files; }

    QList<QUrl> opened;
    QList<QUrl> revealed;
};

/// Trust as the test grants it.
class FakeTrust final : public AccessibilityTrust {
public:
    bool trusted = true;
    int prompts = 0;

    [[nodiscard]] bool isTrusted() const override { return trusted; }
    void prompt() override { ++prompts; }
};

/// A desktop whose user wants what the test says.
class FakeDesktopPreferences final : public DesktopPreferences {
public:
    QStringList languages { QStringLiteral("en-GB") };
    bool lessMotion = false;

    [[nodiscard]] QStringList preferredLanguages() const override { return languages; }
    [[nodiscard]] bool reduceMotion() const override { return lessMotion; }
};

/// Remembers which programs were brought to the front.
class FakeApplications final : public Applications {
public:
    std::optional<RunningApplication> front;
    QList<RunningApplication> activated;
    QHash<qint32, RunningApplication> processes;
    /// By identifier.
    QHash<QString, QImage> icons;

    [[nodiscard]] std::optional<RunningApplication> frontmost() const override { return front; }
    [[nodiscard]] std::optional<RunningApplication> withProcess(qint32 pid) const override
    {
        return processes.contains(pid) ? std::optional(processes.value(pid)) : std::nullopt;
    }
    [[nodiscard]] QImage icon(const RunningApplication& application) const override
    {
        return icons.value(application.identifier);
    }
    void activate(const RunningApplication& application) override { activated << application; }
};

/// Presses the last registered key when told to.
class FakeHotKeys final : public HotKeys {
public:
    [[nodiscard]] std::unique_ptr<Registration> registerKey(
        Key /*key*/, KeyModifiers /*modifiers*/, std::function<void()> pressed) override
    {
        press = std::move(pressed);
        return std::make_unique<Registration>();
    }

    std::function<void()> press;
};

/// User defaults in memory.
class FakeUserDefaults final : public UserDefaults {
public:
    /// What the user has set.
    QVariantMap values;

    void registerDefaults(const QVariantMap& defaults) override { m_defaults = defaults; }
    [[nodiscard]] bool boolean(QStringView key) const override { return value(key).toBool(); }
    [[nodiscard]] qint64 integer(QStringView key) const override { return value(key).toLongLong(); }
    [[nodiscard]] QString string(QStringView key) const override { return value(key).toString(); }
    void set(QStringView key, const QVariant& value) override { values.insert(key.toString(), value); }

    [[nodiscard]] bool isSaved() const override { return !m_fails; }

    /// From now on the disk takes nothing, or everything.
    void fail(bool fails)
    {
        m_fails = fails;
        Q_EMIT isSavedChanged();
    }

private:
    [[nodiscard]] QVariant value(QStringView key) const
    {
        const auto name = key.toString();
        return values.value(name, m_defaults.value(name));
    }

    QVariantMap m_defaults;
    bool m_fails = false;
};

/// Offers what the test says, and remembers what was shared last.
class FakeSharePicker final : public SharePicker {
public:
    QList<ShareService> offered { ShareService::Email, ShareService::OpenWith };
    std::optional<ShareService> used;
    /// As where the system has a picker of its own; then `done` closes it.
    bool presents = false;
    std::function<void()> done;
    QList<ShareItem> shared;

    [[nodiscard]] bool present(const QList<ShareItem>& items, std::function<void()> whenDone) override
    {
        if (!presents)
            return false;
        shared = items;
        done = std::move(whenDone);
        return true;
    }

    [[nodiscard]] QList<ShareService> services(const QList<ShareItem>& /*items*/) const override
    {
        return offered;
    }

    void share(const QList<ShareItem>& items, ShareService service) override
    {
        used = service;
        shared = items;
    }
};

} // namespace nimbarrow
