#include "text/DisplayLine.h"

#include "support/Test.h"

class DisplayLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aTextStaysInItsLine_data()
    {
        const Rows<QString, QString> row;
        row("as it is", u"  Ґанок  №1 "_s, u"Ґанок  №1"_s);
        row("a name turned around", u"abc \u202egnp.exe"_s, u"abc  gnp.exe"_s);
        row("isolated", u"\u2067a\u2069"_s, u"a"_s);
        row("right to left by itself", u"שלום\u200f!"_s, u"שלום\u200f!"_s);
        row("line breaks and controls", u"a\nb\tc\u2028d\x1b[0m"_s, u"a b c d [0m"_s);
        row("byte order", u"\ufeffa"_s, u"a"_s);
        row("accents", u"Việt e\u0323\u0302"_s, u"Việt e\u0323\u0302"_s);
        row("a tower of marks", u"e"_s + QString(50, u'\u0301') + u"f"_s,
            u"e"_s + QString(4, u'\u0301') + u"f"_s);
        row("a tower with gaps", u"e"_s + u"\u0301\u200d"_s.repeated(9),
            u"e\u0301\u200d\u0301\u200d\u0301\u200d\u0301"_s + QString(6, u'\u200d'));
        row("a family", u"👩‍👩‍👧 ❤️"_s, u"👩‍👩‍👧 ❤️"_s);
        row("too long", QString(30, u'x'), QString(20, u'x'));
        row("half a character", u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xdc00), u"a b"_s);
        row("cut inside a character", QString(19, u'x') + u"😀"_s, QString(19, u'x'));
        row("marks without a letter", QString(50, u'\u0301'), {});
        row("nothing that is drawn", u"\u200b\u00ad\u3164\u2800\ufeff\U000e0041 \u202e"_s, {});
        row("only far behind nothing", QString(1000, u'\u200b') + u'a', {});
        row("nothing", {}, {});
    }
    void aTextStaysInItsLine()
    {
        const auto [text, line] = Rows<QString, QString>::current();
        QCOMPARE(displayLine(text, 20), line);
    }
};

QTEST_GUILESS_MAIN(DisplayLineTest)
#include "DisplayLineTest.moc"
