#include "linux/display/QtScreens.h"

#include "linux/display/ScreenCutouts.h"
#include "qt/FlippedAxis.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace nimbarrow {
namespace {

Screen described(const QScreen& screen, const ScreenCutouts& cutouts)
{
    const QRectF frame = screen.geometry();
    const auto scale = screen.devicePixelRatio();
    Screen result { screen.name(), flipped(frame), 0, {}, {} };
    const auto cutout = cutouts.topCutout(screen.name(), (frame.size() * scale).toSize());
    if (!cutout)
        return result;
    const auto left = cutout->left() / scale;
    const auto right = cutout->right() / scale;
    result.topInset = cutout->bottom() / scale;
    result.topLeftArea = flipped(QRectF(frame.x(), frame.y(), left, result.topInset));
    result.topRightArea
        = flipped(QRectF(frame.x() + right, frame.y(), frame.width() - right, result.topInset));
    return result;
}

} // namespace

QtScreens::QtScreens(std::unique_ptr<ScreenCutouts> cutouts)
    : m_cutouts(std::move(cutouts))
    , m_last(screens())
{
    // One change of the set-up arrives as many small ones.
    m_settled.setSingleShot(true);
    m_settled.setInterval(20ms);
    connect(&m_settled, &QTimer::timeout, this, &QtScreens::compare);
    const auto settle = qOverload<>(&QTimer::start);

    for (const auto all = QGuiApplication::screens(); auto* screen : all)
        follow(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &QtScreens::follow);
    connect(qGuiApp, &QGuiApplication::screenAdded, &m_settled, settle);
    connect(qGuiApp, &QGuiApplication::screenRemoved, &m_settled, settle);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, &m_settled, settle);
    connect(m_cutouts.get(), &ScreenCutouts::changed, &m_settled, settle);
}

QtScreens::~QtScreens() = default;

QList<Screen> QtScreens::screens() const
{
    QList<Screen> result;
    for (const auto all = QGuiApplication::screens(); const auto* screen : all)
        result << described(*screen, *m_cutouts);
    return result;
}

QString QtScreens::screenToDeclare() const
{
    const auto all = screens();
    const auto builtIn = std::ranges::find_if(
        all, [this](const Screen& screen) { return m_cutouts->isBuiltIn(screen.name); });
    // The main one is Qt's first.
    return builtIn != all.cend() ? builtIn->name : all.isEmpty() ? QString() : all.first().name;
}

NotchDeclaration QtScreens::declareNotch(const QString& name, QSize size)
{
    const auto wanted = name.isEmpty() ? screenToDeclare() : name;
    QStringList names;
    for (const auto all = QGuiApplication::screens(); const auto* screen : all) {
        names << screen->name();
        if (names.last() != wanted)
            continue;
        if (size.width() > screen->size().width() || size.height() * 2 >= screen->size().height())
            return { {}, u"That does not fit at the top of the screen %1."_s.arg(wanted) };
        const auto mode = screen->size() * screen->devicePixelRatio();
        const auto box = size * screen->devicePixelRatio();
        return m_cutouts->declare(wanted, mode, { QPoint((mode.width() - box.width()) / 2, 0), box });
    }
    return { {}, u"There is no screen \"%1\", only %2."_s.arg(wanted, names.join(", "_L1)) };
}

void QtScreens::follow(QScreen* screen)
{
    const auto settle = qOverload<>(&QTimer::start);
    connect(screen, &QScreen::geometryChanged, &m_settled, settle);
    connect(screen, &QScreen::physicalDotsPerInchChanged, &m_settled, settle);
    connect(screen, &QScreen::logicalDotsPerInchChanged, &m_settled, settle);
    connect(screen, &QScreen::orientationChanged, &m_settled, settle);
}

void QtScreens::compare()
{
    // Other files come and go in the watched folders all the time.
    auto now = screens();
    if (now == m_last)
        return;
    m_last = std::move(now);
    Q_EMIT changed();
}

} // namespace nimbarrow
