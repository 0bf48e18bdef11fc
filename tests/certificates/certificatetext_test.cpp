#include "base/uaarrays.h"
#include "base/uadatetime.h"
#include "base/uastring.h"
#include "certificates/certificatetext.h"

#include <QTest>
#include <QTimeZone>

using namespace Qt::StringLiterals;

class CertificateTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void text_is_read_as_utf_8()
    {
        QCOMPARE(toQString(UaString()), QString());
        QCOMPARE(toQString(UaString("Müller & Söhne 🔑")), u"Müller & Söhne 🔑"_s);
        QCOMPARE(toQString(UaString("a\0b", 3)), QString(u"a\0b"_s));
        QCOMPARE(toQString(UaString("\xff")), QString(QChar::ReplacementCharacter));
    }

    void texts_are_joined_by_a_comma_and_a_blank_data()
    {
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<QString>("joined");
        QTest::newRow("none") << QStringList() << QString();
        QTest::newRow("one") << QStringList{u"a"_s} << u"a"_s;
        QTest::newRow("three") << QStringList{u"a"_s, u"b"_s, u"c"_s} << u"a, b, c"_s;
        QTest::newRow("an empty one") << QStringList{u"a"_s, u""_s, u"ü"_s} << u"a, , ü"_s;
    }

    void texts_are_joined_by_a_comma_and_a_blank()
    {
        QFETCH(const QStringList, texts);
        QFETCH(const QString, joined);
        UaStringArray array;
        QCOMPARE(array.create(static_cast<OpcUa_Int32>(texts.size())), OpcUa_Good);
        for (qsizetype i = 0; i < texts.size(); ++i) {
            const UaString text(texts[i].toUtf8().constData());
            QCOMPARE(text.copyTo(&array[static_cast<OpcUa_UInt32>(i)]), OpcUa_Good);
        }
        QCOMPARE(toJoinedText(array), joined);
        QCOMPARE(toQStringList(array), texts);
    }

    void time_counts_from_1601_and_is_shown_as_local_time()
    {
        const QDateTime shown = toLocalDateTime(UaDateTime::fromString("2024-02-29T12:34:56.789Z"));
        QCOMPARE(shown.timeSpec(), Qt::LocalTime);
        QCOMPARE(shown.toUTC(),
                 QDateTime(QDate(2024, 2, 29), QTime(12, 34, 56, 789), QTimeZone::utc()));
        QCOMPARE(toLocalDateTime(UaDateTime()).toUTC(),
                 QDateTime(QDate(1601, 1, 1), QTime(0, 0), QTimeZone::utc()));
    }

    void digits_below_a_millisecond_are_cut_off()
    {
        QCOMPARE(toLocalDateTime(UaDateTime(OpcUa_Int64(19999))).toUTC().time(), QTime(0, 0, 0, 1));
    }
};

QTEST_MAIN(CertificateTextTest)

#include "certificatetext_test.moc"
