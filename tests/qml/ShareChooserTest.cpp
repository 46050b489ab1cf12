#include "clipboard/SharePresenter.h"
#include "qml/SurfaceFixture.h"
#include "support/FakeOpener.h"
#include "support/FakeSharePicker.h"

#include <QQmlEngine>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace nimbarrow;

class ShareChooserTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u"."_s));
        L10n::setCurrent(L10n::English);
        m_done = 0;
        m_picker.used.reset();
        m_picker.offered = { ShareService::Email, ShareService::OpenWith };
    }
    void cleanup()
    {
        m_view.reset();
        m_presenter.reset();
    }

    void doesWhatIsClicked()
    {
        show();
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(row(1)));
        QCOMPARE(m_picker.used, ShareService::OpenWith);
        QCOMPARE(m_done, 1);
    }

    void closesWithoutAChoice()
    {
        show();
        // The card itself is not beside the rows.
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(row(0)) - QPoint(0, 30));
        QCOMPARE(m_done, 0);
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, { 10, 10 });
        QCOMPARE(m_done, 1);

        show();
        QTest::keyClick(m_view.get(), Qt::Key_Escape);
        QCOMPARE(m_done, 2);
        QVERIFY(!m_picker.used);
    }

    void staysWhileItFades()
    {
        show();
        m_view->rootObject()->setProperty("presenter", QVariant::fromValue<SharePresenter*>(nullptr));
        m_presenter.reset();
        QVERIFY(row(3));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, middle(row(0)));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, { 10, 10 });
        QVERIFY(!m_picker.used);
    }

    void fitsInBothLanguages()
    {
        for (const auto language : { L10n::English, L10n::Ukrainian }) {
            show();
            L10n::setCurrent(language);
            QCOMPARE(texts(),
                (QStringList { L10n::text(L10n::Key::Share), L10n::text(L10n::Key::ShareEmail),
                    L10n::text(L10n::Key::ShareOpenWith), L10n::text(L10n::Key::ShareShowInFolder),
                    L10n::text(L10n::Key::ShareOpen) }));
        }
        m_picker.offered.clear();
        show({ u"text"_s });
        QCOMPARE(
            texts(), (QStringList { L10n::text(L10n::Key::Share), L10n::text(L10n::Key::ShareNothing) }));
    }

private:
    void show(const QList<ShareItem>& items = { QUrl(u"file:///a.txt"_s) })
    {
        m_view.reset();
        m_presenter = std::make_unique<SharePresenter>(m_picker, m_opener, items, [this] { ++m_done; });
        m_view = std::make_unique<QQuickView>();
        m_view->engine()->addImportPath(u"qrc:/qt/qml"_s);
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
        m_view->setInitialProperties({ { u"presenter"_s, QVariant::fromValue(m_presenter.get()) } });
        m_view->resize(400, 200);
        m_view->setSource(QUrl(u"qrc:/qt/qml/Nimbarrow/Clipboard/ShareChooser.qml"_s));
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }

    [[nodiscard]] QList<QQuickItem*> items(const char* type) const
    {
        QList<QQuickItem*> found;
        QList<QQuickItem*> left { m_view->rootObject() };
        while (!left.isEmpty()) {
            auto* const item = left.takeFirst();
            if (item->isVisible() && QByteArray(item->metaObject()->className()).startsWith(type))
                found << item;
            left << item->childItems();
        }
        std::ranges::sort(found, {}, [](const QQuickItem* item) { return item->mapToScene({}).y(); });
        return found;
    }

    [[nodiscard]] QQuickItem* row(int index) const { return items("ShareChoiceRow_").value(index); }

    [[nodiscard]] QStringList texts() const
    {
        QStringList texts;
        for (const auto* const line : items("Line_")) {
            texts << line->property("text").toString();
            if (line->property("truncated").toBool())
                qWarning("%ls is cut", qUtf16Printable(texts.constLast()));
        }
        return texts;
    }

    static QPoint middle(const QQuickItem* item) { return SurfaceFixture::middle(item); }

    FakeSharePicker m_picker;
    FakeOpener m_opener;
    int m_done = 0;
    std::unique_ptr<SharePresenter> m_presenter;
    std::unique_ptr<QQuickView> m_view;
};

QTEST_MAIN(ShareChooserTest)
#include "ShareChooserTest.moc"
