#pragma once

#include "nowplaying/NowPlayingModel.h"
#include "support/FakeAdapter.h"
#include "support/FakeDesktop.h"
#include "support/FakeMusicApp.h"
#include "support/FakeScripting.h"
#include "support/ManualQueues.h"
#include "support/ManualTime.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace nimbarrow {

/// What plays, over companions and a music application that the test plays.
class PlayerFixture {
public:
    ManualTime time;
    ManualQueues queues;
    FakeApplications applications;
    FakeAdapterCommand command;
    FakeAdapterProcesses processes;
    FakeMusicApp musicApp;
    FakeScripting scripting;
    NowPlayingModel model { { applications, command, processes, musicApp, scripting, queues, time, time } };

    [[nodiscard]] FakeAdapterProcess& adapter() const { return *processes.current; }

    /// The model runs, and its companion is ready.
    void start()
    {
        model.start();
        adapter().run();
        say("{\"type\":\"ready\"}");
    }

    void say(const QByteArray& line)
    {
        adapter().say(line + '\n');
        queues.runAll();
    }

    void say(const QJsonObject& message) { say(QJsonDocument(message).toJson(QJsonDocument::Compact)); }
};

} // namespace nimbarrow
