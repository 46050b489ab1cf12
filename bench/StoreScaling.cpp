// StoreScaling ENTRIES: prints what each operation of a history of that many entries takes, in milliseconds a
// line. One entry in eleven is an image, as in the history that the other measures have.
#include "clipboard/ClipboardIndex.h"
#include "files/PrivateFiles.h"
#include "support/HistoryFixture.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace nimbarrow;

namespace {

double milliseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(int times, const std::function<double()>& measure)
{
    QList<double> taken;
    for (auto number = 0; number < times; ++number)
        taken << measure();
    std::ranges::nth_element(taken, taken.begin() + times / 2);
    return taken[times / 2];
}

QString textOf(qsizetype number)
{
    return u"Entry %1: the quick brown fox jumps over the lazy dog"_s.arg(number);
}

class Bench {
public:
    explicit Bench(qsizetype entries)
    {
        m_history.settings.setHistoryLimit(entries * 2);
        const auto image = m_history.path(u"images/shared.png"_s);
        const auto start = m_history.time.wallTime().addSecs(-entries);
        QList<ClipboardItem> items;
        for (qsizetype number = entries; number > 0; --number) {
            ClipboardItem item;
            item.id = QUuid::createUuid();
            item.createdAt = start.addSecs(number);
            if (number % 11 == 0) {
                item.kind = ClipboardItem::Kind::Image;
                item.imagePath = image;
                item.contentHash = ClipboardStore::hash(QByteArray::number(number));
            } else {
                item.text = textOf(number);
                item.contentHash = ClipboardStore::hash(item.text->toUtf8());
            }
            items << item;
        }
        if (!privatefiles::write(image, "picture")
            || !privatefiles::write(m_history.path(u"index.json"_s), clipboardindex::encode(items)))
            qFatal("cannot write the history");
        m_history.restart();
        if (m_history.store->items().size() != entries)
            qFatal("the history was not loaded");
    }

    void run()
    {
        print("adding", median(operations, [this, number = 0]() mutable {
            return milliseconds([&] { store().addText(u"New %1"_s.arg(++number), std::nullopt); });
        }));
        print("promoting", median(operations, [this] {
            // The oldest is the farthest from the top.
            const auto text = store().textualItems().last().text.value();
            return milliseconds([&] { store().addText(text, std::nullopt); });
        }));
        print("deleting", median(operations, [this] {
            const auto id = store().items()[store().items().size() / 2].id;
            return milliseconds([&] { store().remove(id); });
        }));
        m_history.queues.runAll();
        print("saving, main thread", median(passes, [this] {
            store().togglePin(store().items().first().id);
            return milliseconds([this] { m_history.time.advance(1s); });
        }));
        print("saving, store's thread", median(passes, [this] {
            store().togglePin(store().items().first().id);
            m_history.time.advance(1s);
            return milliseconds([this] { m_history.queues.runAll(); });
        }));
        print("loading", median(passes, [this] { return milliseconds([this] { m_history.restart(); }); }));
    }

private:
    static constexpr int operations = 51;
    static constexpr int passes = 9;

    static void print(const char* what, double taken) { std::printf("%s\t%.4f\n", what, taken); }

    ClipboardStore& store() { return *m_history.store; }

    HistoryFixture m_history;
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    Bench(QCoreApplication::arguments().value(1).toLongLong()).run();
}
