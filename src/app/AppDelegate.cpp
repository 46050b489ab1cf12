#include "app/AppDelegate.h"

#include "app/AppModel.h"
#include "app/Doctor.h"
#include "app/NotchOffer.h"
#include "app/NotchSurface.h"
#include "clipboard/ThumbnailFile.h"
#include "notch/NotchController.h"
#include "preferences/L10n.h"
#include "style/Motion.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <cstdio>

namespace nimbarrow {

Q_LOGGING_CATEGORY(logApp, "ua.tessak.Nimbarrow.app")

AppDelegate::AppDelegate(Platform platform)
    : m_platform(std::move(platform))
{
}

AppDelegate::~AppDelegate()
{
    m_offer.reset();
    // The views go before what they show, and the window after the controller that moves it.
    if (m_surface)
        m_surface->unload();
    m_notch.reset();
    m_surface.reset();
    ThumbnailFile::setLoader(nullptr);
}

bool AppDelegate::applicationDidFinishLaunching(bool forKeyboard)
{
    auto& instance = *m_platform.instance;
    if (instance.anotherIsRunning()) {
        if (!instance.ask(forKeyboard ? Instance::Request::ToggleKeyboard : Instance::Request::Open))
            std::fprintf(stderr, "Nimbarrow: it runs already, but does not answer.\n");
        return false;
    }
    qCInfo(logApp, "did finish launching");

    L10n::setSystemWords(m_platform.words);
    m_model = std::make_unique<AppModel>(m_platform);
    ThumbnailFile::setLoader(&m_model->thumbnails());
    const auto& desktop = *m_platform.desktopPreferences;
    const auto followMotion = [&desktop] { Motion::instance().setReduced(desktop.reduceMotion()); };
    QObject::connect(&desktop, &DesktopPreferences::reduceMotionChanged, &Motion::instance(), followMotion);
    followMotion();

    m_surface = std::make_unique<NotchSurface>(m_platform);
    m_notch = std::make_unique<NotchController>(NotchServices {
        .screens = *m_platform.screens,
        .sessionLock = *m_platform.sessionLock,
        .pointer = *m_platform.pointer,
        .panelWindow = m_surface->panelWindow(),
        .applications = *m_platform.applications,
        .keystrokes = *m_platform.keystrokes,
        .scheduler = *m_platform.scheduler,
        .settings = m_model->settings(),
        .store = m_model->store(),
        .monitor = m_model->clipboard(),
        .capture = m_model->capture(),
        .paster = m_model->paster(),
    });
    m_surface->load(*m_notch, *m_model);
    m_model->start(*m_notch);
    m_notch->start();
    m_offer
        = std::make_unique<NotchOffer>(*m_platform.screens, *m_platform.questions, *m_platform.userDefaults);
    m_offer->makeOnce();
    const auto& end = *m_platform.programEnd;
    QObject::connect(&end, &ProgramEnd::requested, m_model.get(), &QCoreApplication::quit);
    QObject::connect(&end, &ProgramEnd::sessionMayEnd, m_model.get(), &AppModel::save);
    QObject::connect(&end, &ProgramEnd::displayLost, m_model.get(), &AppModel::save);
    // Queued, also what was asked while the program started: by then the surface stands.
    QObject::connect(
        &instance, &Instance::asked, m_model.get(), [this](auto request) { answer(request); },
        Qt::QueuedConnection);
    instance.setReport([this] { return doctor::report(m_platform); });
    if (forKeyboard)
        Q_EMIT instance.asked(Instance::Request::ToggleKeyboard);
    return true;
}

void AppDelegate::answer(Instance::Request request)
{
    switch (request) {
    case Instance::Request::Open:
        m_offer->make();
        m_notch->openKeyboard();
        break;
    case Instance::Request::ToggleKeyboard: m_notch->toggleKeyboard(); break;
    case Instance::Request::Quit: QCoreApplication::quit(); break;
    }
}

void AppDelegate::applicationWillTerminate()
{
    m_model->end();
}

} // namespace nimbarrow
