#pragma once

#include "support/PrivateXServer.h"

#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTest>

namespace nimbarrow {

/// The main function of a test on a private X server, which must be there before Qt connects to it.
template <typename Test>
int runOnPrivateXServer(int argc, char** argv)
{
    const PrivateXServer server(
        { QStringLiteral("-screen"), QStringLiteral("0"), QStringLiteral("1512x982x24") });
    if (!server.isRunning()) {
        qCritical("Xvfb does not start");
        return 1;
    }
    const QTemporaryDir home;
    qputenv("DISPLAY", server.name());
    qputenv("HOME", home.path().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    qputenv("GSETTINGS_BACKEND", "memory");
    qputenv("QT_QPA_PLATFORM", "xcb");
    // Without a graphics driver it would composite at a crawl; others composite here.
    qputenv("KWIN_COMPOSE", "N");
    const QGuiApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace nimbarrow
