#include "clipboard/SharePresenter.h"

#include "support/FakeDesktop.h"
#include "support/Test.h"

using Items = QList<ShareItem>;

namespace {

const QUrl web(u"https://example.org"_s);
const QUrl file(u"file:///a/b.txt"_s);
const QUrl otherFile(u"file:///a/c.txt"_s);

QString titles(const SharePresenter& presenter)
{
    QStringList titles;
    for (const auto& choice : presenter.choices())
        titles << L10n::text(choice.value<ShareChoice>().title);
    return titles.join(u", "_s);
}

} // namespace

class SharePresenterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void offersWhatFits()
    {
        const QList<std::pair<Items, QString>> rows {
            { { u"text"_s }, u"Email, Open with…"_s },
            { { web }, u"Email, Open with…, Open"_s },
            { { file }, u"Email, Open with…, Show in folder, Open"_s },
            { { file, otherFile }, u"Email, Open with…, Show in folder"_s },
            { { file, u"text"_s }, u"Email, Open with…"_s },
        };
        for (const auto& [items, choices] : rows)
            QCOMPARE(titles(SharePresenter(m_picker, m_opener, items, {})), choices);
    }

    void doesWhatIsChosenAndIsDoneOnce()
    {
        // The first one chooses nothing.
        for (const auto index : { -1, 0, 1, 2, 3 }) {
            m_picker.used.reset();
            int done = 0;
            SharePresenter presenter(m_picker, m_opener, { file }, [&done] { ++done; });
            presenter.choose(-1);
            presenter.choose(4);
            QCOMPARE(done, 0);
            presenter.choose(index);
            presenter.cancel();
            presenter.choose(index);
            presenter.cancel();
            QCOMPARE(done, 1);
            QCOMPARE(m_picker.used == ShareService::Email, index == 0);
            QCOMPARE(m_picker.used == ShareService::OpenWith, index == 1);
        }
        QCOMPARE(m_picker.shared, Items { file });
        QCOMPARE(m_opener.revealed, QList { file });
        QCOMPARE(m_opener.opened, QList { file });
        // Several files are shown together.
        SharePresenter(m_picker, m_opener, { file, otherFile }, [] {}).choose(2);
        QCOMPARE(m_opener.revealed, (QList { file, file, otherFile }));
    }

    void leavesTheQuestionToTheSystem()
    {
        auto done = 0;
        m_picker.presents = true;
        {
            SharePresenter presenter(m_picker, m_opener, { u"text"_s }, [&done] { ++done; });
            QVERIFY(!presenter.asks());
            QVERIFY(presenter.choices().isEmpty());
            QCOMPARE(m_picker.shared, QList<ShareItem> { u"text"_s });
            m_picker.done();
            QCOMPARE(done, 1);
        }
        // The system may tell of the end when nobody waits for it any more.
        m_picker.done();
        QCOMPARE(done, 1);
        m_picker.presents = false;
    }

private:
    FakeSharePicker m_picker;
    FakeOpener m_opener;
};

QTEST_GUILESS_MAIN(SharePresenterTest)
#include "SharePresenterTest.moc"
