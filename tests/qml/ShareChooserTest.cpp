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
        m_view = std::make_unique<QQuickView>();
        m_view->engine()->addImportPath(u"qrc:/qt/qml"_s);
        m_view->setInitialProperties({ { u"presenter"_s, QVariant::fromValue(&m_presenter) } });
        m_view->setResizeMode(QQuickView::SizeRootObjectToView);
        m_view->resize(400, 200);
        m_view->setSource(QUrl(u"qrc:/qt/qml/Nimbarrow/Clipboard/ShareChooser.qml"_s));
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }

    void closesWithOneChoice_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<bool>("done");
        QTest::addColumn<bool>("used");
        QTest::newRow("title") << QPoint(200, 40) << false << false;
        QTest::newRow("beside") << QPoint(10, 10) << true << false;
        QTest::newRow("second row") << QPoint(200, 97) << true << true;
        QTest::newRow("Escape") << QPoint() << true << false;
    }

    void closesWithOneChoice()
    {
        QFETCH(QPoint, place);
        int done = 0;
        m_picker.used.reset();
        SharePresenter presenter(m_picker, m_opener, { QUrl(u"file:///a.txt"_s) }, [&done] { ++done; });
        m_view->rootObject()->setProperty("presenter", QVariant::fromValue(&presenter));
        if (place.isNull())
            QTest::keyClick(m_view.get(), Qt::Key_Escape);
        else
            QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, place);
        QTEST(done == 1, "done");
        QTEST(m_picker.used == ShareService::OpenWith, "used");

        // While it fades there is nobody to tell.
        m_view->rootObject()->setProperty("presenter", QVariant::fromValue<SharePresenter*>(nullptr));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, { 200, 97 });
    }

    void fitsInBothLanguages()
    {
        for (const auto language : { L10n::English, L10n::Ukrainian }) {
            L10n::setCurrent(language);
            QStringList texts;
            QList<QQuickItem*> left { m_view->rootObject() };
            while (!left.isEmpty()) {
                const auto* const item = left.takeFirst();
                left << item->childItems();
                if (!item->isVisible() || !QByteArray(item->metaObject()->className()).startsWith("Line_"))
                    continue;
                texts << item->property("text").toString();
                QVERIFY2(!item->property("truncated").toBool(), qPrintable(texts.constLast()));
            }
            QCOMPARE(texts.size(), 5);
            QVERIFY(texts.contains(L10n::text(L10n::Key::ShareOpenWith)));
        }
    }

private:
    FakeSharePicker m_picker;
    FakeOpener m_opener;
    SharePresenter m_presenter { m_picker, m_opener, { QUrl(u"file:///a.txt"_s) }, {} };
    std::unique_ptr<QQuickView> m_view;
};

QTEST_MAIN(ShareChooserTest)
#include "ShareChooserTest.moc"
