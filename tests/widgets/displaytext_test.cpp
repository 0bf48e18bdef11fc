#include "tests/support/testmain.h"
#include "widgets/displaytext.h"
#include "widgets/elidedlabel.h"

#include <QPixmap>

using namespace Qt::StringLiterals;

class DisplayTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_is_cut_beyond_the_limit_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("at the limit") << u"0123456789"_s << u"0123456789"_s;
        QTest::newRow("one beyond") << u"0123456789A"_s << u"01234\u20266789A"_s;
        QTest::newRow("far beyond") << QString(100000, u'x') << u"xxxxx\u2026xxxxx"_s;
        // Each of these characters takes two places.
        const QString pairs = u"\U0001F600\U0001F601\U0001F602\U0001F603\U0001F604\U0001F605"_s;
        QTest::newRow("pairs stay whole")
            << pairs << u"\U0001F600\U0001F601\U0001F602\u2026\U0001F604\U0001F605"_s;
    }

    void text_is_cut_beyond_the_limit()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, expected);
        QCOMPARE(cutForDisplay(text, 10), expected);
    }

    void line_holds_nothing_that_misleads_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        QTest::newRow("plain") << u"a b"_s << u"a b"_s;
        QTest::newRow("line breaks") << u"a\nb\rc\u2028d"_s << u"a b c d"_s;
        QTest::newRow("tab") << u"a\tb"_s << u"a b"_s;
        QTest::newRow("hard blank") << u"a\u00a0b"_s << u"a\u00a0b"_s;
        QTest::newRow("control characters") << u"\u0001\u001b\u007f"_s << u"\ufffd\ufffd\ufffd"_s;
        QTest::newRow("marks of direction")
            << u"\u061c\u200e\u200f\u202a\u202e\u2066\u2069"_s << QString(7, u'\ufffd');
        QTest::newRow("letters from right to left") << u"\u05d0\u0627"_s << u"\u05d0\u0627"_s;
        QTest::newRow("pairs") << u"\U0001F600"_s << u"\U0001F600"_s;
        QTest::newRow("long") << QString(30, u'\n') << u"     \u2026     "_s;
    }

    void line_holds_nothing_that_misleads()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, expected);
        QCOMPARE(lineForDisplay(text, 10), expected);
    }

    void tooltip_shows_markup_as_it_stands()
    {
        QCOMPARE(plainToolTip(u"<b>a&b</b>"_s).remove(QChar(0x200b)),
                 u"<p>&lt;b&gt;a&amp;b&lt;/b&gt;</p>"_s);
    }

    void long_tooltip_can_be_broken_into_lines()
    {
        const QString toolTip = plainToolTip(QString(130, u'x'));
        QCOMPARE(toolTip.count(QChar(0x200b)), 3);
        QVERIFY(plainToolTip(QString(1000000, u'x')).size() < 1200);
    }

    void elided_label_keeps_its_text_and_asks_for_little_room()
    {
        ElidedLabel label;
        label.setText(u"short"_s);
        const int hint = label.sizeHint().width();
        const QSize minimum = label.minimumSizeHint();
        label.setText(QString(100000, u'w'));
        QCOMPARE(label.text().size(), 100000);
        QCOMPARE(label.minimumSizeHint(), minimum);
        QVERIFY(label.sizeHint().width() > hint);
        QVERIFY(label.sizeHint().width() < 1000);
    }

    void elided_label_paints_beginning_and_end()
    {
        ElidedLabel label;
        label.resize(200, label.sizeHint().height());
        const auto picture = [&label](const QString& text) {
            label.setText(text);
            return label.grab().toImage();
        };
        const QImage one = picture(u"begin"_s + QString(300, u'-') + u"end"_s);
        QCOMPARE(picture(u"begin"_s + QString(400, u'-') + u"end"_s), one);
        QVERIFY(picture(u"BEGIN"_s + QString(300, u'-') + u"end"_s) != one);
        QVERIFY(picture(u"begin"_s + QString(300, u'-') + u"END"_s) != one);
        // Markup and ampersands are no more than characters.
        QVERIFY(picture(u"&a"_s) != picture(u"a"_s));
        QVERIFY(picture(u"<b></b>a"_s) != picture(u"a"_s));
    }
};

ZANDREL_TEST_MAIN(DisplayTextTest)

#include "displaytext_test.moc"
