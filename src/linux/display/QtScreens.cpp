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

ScreenMode qtScreenMode(const QScreen& screen)
{
    return { screen.name(), screen.size() * screen.devicePixelRatio() };
}

Screen described(const QScreen& screen, const ScreenMode& mode, const ScreenCutouts& cutouts)
{
    const QRectF frame = screen.geometry();
    Screen result { mode.name, flipped(frame), 0, {}, {} };
    const auto cutout = cutouts.topCutout(mode.name, mode.size);
    if (!cutout)
        return result;
    // Qt draws at a scale of its own where the screen's is between two whole ones.
    const auto scale = mode.size.width() / frame.width();
    const auto left = cutout->left() / scale;
    const auto right = cutout->right() / scale;
    result.topInset = cutout->bottom() / scale;
    result.topLeftArea = flipped(QRectF(frame.x(), frame.y(), left, result.topInset));
    result.topRightArea
        = flipped(QRectF(frame.x() + right, frame.y(), frame.width() - right, result.topInset));
    return result;
}

} // namespace

QtScreens::QtScreens(std::unique_ptr<ScreenCutouts> cutouts, ScreenModeOf modeOf)
    : m_cutouts(std::move(cutouts))
    , m_modeOf(modeOf ? std::move(modeOf) : qtScreenMode)
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
        result << described(*screen, m_modeOf(*screen), *m_cutouts);
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
        const auto mode = m_modeOf(*screen);
        names << mode.name;
        if (mode.name != wanted)
            continue;
        const auto points = screen->size();
        if (size.width() > points.width() || size.height() * 2 >= points.height())
            return { {}, u"That does not fit at the top of the screen %1."_s.arg(wanted) };
        const auto box = size * (static_cast<double>(mode.size.width()) / points.width());
        return m_cutouts->declare(
            wanted, mode.size, { QPoint((mode.size.width() - box.width()) / 2, 0), box });
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
