#pragma once

#include "qt/QtWorkQueues.h"
#include "support/HistoryFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QSet>

#include <array>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbarrow {

using namespace Qt::StringLiterals;

/// This process again, as one that copies, removes and saves on real threads until it is killed.
class BusyCopy {
public:
    /// What all copies together have said that they have on disk, and have removed from it.
    struct Recorded {
        /// By content, with those that were added or removed and not saved before the kill.
        QSet<QString> saved;
        QSet<QString> gone;
        QSet<QString> uncertain;
        int added = 0;
        int removed = 0;

        /// What is wrong with the history in the folder; empty when nothing is.
        [[nodiscard]] QString compare(const QString& home)
        {
            HistoryFixture fixture;
            fixture.store.reset();
            fixture.locations.folder = home;
            fixture.restart();
            fixture.queues.runAll();
            if (!fixture.store->notice().isEmpty())
                return fixture.store->notice();
            QSet<QString> found;
            QStringList images;
            for (const auto& item : fixture.store->items()) {
                if (found.contains(*item.contentHash))
                    return u"an entry is there twice"_s;
                found << *item.contentHash;
                if (item.imagePath)
                    images << QFileInfo(*item.imagePath).fileName();
            }
            images.sort();
            if (!found.contains(saved))
                return u"an entry is lost"_s;
            if (found.intersects(gone))
                return u"a removed entry is back"_s;
            if (!(saved + uncertain).contains(found))
                return u"an entry of nobody"_s;
            if (QDir(fixture.path(u"images"_s)).entryList(QDir::Files, QDir::Name) != images)
                return u"an orphaned image"_s;
            // From now on what came back is what there is.
            saved = found;
            return {};
        }
    };

    BusyCopy(const QString& home, quint32 seed)
    {
        std::array<int, 2> ends { -1, -1 };
        if (::pipe(ends.data()) != 0)
            qFatal("no pipe");
        m_pipe = ends[0];
        m_process = ::fork();
        if (m_process == 0)
            beBusy(home, seed, ends[1]);
        ::close(ends[1]);
    }

    ~BusyCopy()
    {
        ::close(m_pipe);
        if (m_process > 0) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, 0);
        }
    }

    Q_DISABLE_COPY_MOVE(BusyCopy)

    void killHard(Recorded& recorded)
    {
        ::kill(m_process, SIGKILL);
        ::waitpid(std::exchange(m_process, -1), nullptr, 0);
        QFile pipe;
        if (!pipe.open(m_pipe, QFile::ReadOnly))
            qFatal("no pipe");
        QSet<QString> added;
        QSet<QString> removed;
        for (const auto& line : pipe.readAll().split('\n')) {
            const auto content = QString::fromLatin1(line.mid(1));
            if (line.startsWith('+')) {
                added << content;
                ++recorded.added;
            } else if (line.startsWith('-')) {
                removed << content;
                ++recorded.removed;
            } else if (line.startsWith('=')) {
                recorded.saved += std::exchange(added, {});
                recorded.saved -= removed;
                recorded.gone += std::exchange(removed, {});
            }
        }
        recorded.saved -= removed;
        recorded.uncertain = added + removed;
    }

private:
    /// "+" and "-" go before what is added and removed, "=" behind what is on disk.
    static void say(int pipe, char what, const QString& content = {})
    {
        const auto line = what + content.toLatin1() + '\n';
        if (::write(pipe, line.constData(), static_cast<size_t>(line.size())) != line.size())
            ::_exit(1);
    }

    [[noreturn]] static void beBusy(const QString& home, quint32 seed, int pipe)
    {
        HistoryFixture fixture;
        fixture.store.reset();
        fixture.locations.folder = home;
        fixture.settings.setHistoryLimit(100'000);
        QtWorkQueues queues;
        ClipboardStore store(fixture.settings, fixture.locations, fixture.time, fixture.time, queues);
        QRandomGenerator random(seed);
        for (;;) {
            const auto content = QByteArray::number(random.generate64());
            switch (random.bounded(6)) {
            case 0:
            case 1:
                say(pipe, '+', ClipboardStore::hash(content));
                store.addText(QString::fromLatin1(content), {});
                break;
            case 2:
                say(pipe, '+', ClipboardStore::hash(content.repeated(2000)));
                store.addImage(content.repeated(2000), {});
                break;
            case 3:
                if (!store.isEmpty()) {
                    const auto item
                        = store.items().at(random.bounded(static_cast<int>(store.items().size())));
                    say(pipe, '-', *item.contentHash);
                    store.remove(item.id);
                }
                break;
            case 4: fixture.time.advance(std::chrono::milliseconds(random.bounded(700))); break;
            default:
                if (random.bounded(3) == 0) {
                    store.flush();
                    say(pipe, '=');
                }
            }
            QCoreApplication::processEvents();
        }
    }

    pid_t m_process = -1;
    int m_pipe = -1;
};

} // namespace nimbarrow
