#include "console/traceconfig.h"
#include "tests/support/configsample.h"

#include <QDomDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QDomElement traceOf(QDomDocument& document, const QByteArray& content)
{
    if (!document.setContent("<Trace>" + content + "</Trace>")) {
        qFatal("not well-formed: %s", content.constData());
    }
    return document.documentElement();
}

QByteArray bytesOf(const QDomDocument& document)
{
    return document.toByteArray(-1);
}

TraceConfig filledConfig()
{
    return {.appTraceFile = u"/var/log/srv.log"_s,
            .appTraceMaxEntries = 1234,
            .appTraceMaxBackup = 7,
            .isAppTraceEnabled = true,
            .appTraceLevel = u"Info"_s,
            .isStackTraceEnabled = true,
            .stackTraceLevel = u"DEBUG"_s};
}

} // namespace

class TraceConfigTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void read_of_null_element_gives_empty_values();
    static void write_to_null_element_changes_nothing();
    static void number_reads_as_decimal_or_zero_data();
    static void number_reads_as_decimal_or_zero();
    static void switch_reads_by_its_text_data();
    static void switch_reads_by_its_text();
    static void text_reads_as_it_stands_data();
    static void text_reads_as_it_stands();
    static void trace_path_replaces_the_placeholder_data();
    static void trace_path_replaces_the_placeholder();
    static void placeholder_replaces_the_trace_path_data();
    static void placeholder_replaces_the_trace_path();
    static void write_fills_every_element();
    static void write_takes_only_text_children_data();
    static void write_takes_only_text_children();
    static void first_of_repeated_elements_counts();
    static void what_was_written_reads_back();
};

void TraceConfigTest::read_of_null_element_gives_empty_values()
{
    const TraceConfig config = readTraceConfig(QDomElement(), u"/trace"_s);
    QCOMPARE(config.appTraceFile, QString());
    QCOMPARE(config.appTraceMaxEntries, 0);
    QCOMPARE(config.appTraceMaxBackup, 0);
    QCOMPARE(config.isAppTraceEnabled, false);
    QCOMPARE(config.appTraceLevel, QString());
    QCOMPARE(config.isStackTraceEnabled, false);
    QCOMPARE(config.stackTraceLevel, QString());
}

void TraceConfigTest::write_to_null_element_changes_nothing()
{
    QDomDocument document;
    QDomElement trace = traceOf(document, "<Other>1</Other>");
    const QByteArray before = bytesOf(document);
    writeTraceConfig(QDomElement(), filledConfig(), QString());
    writeTraceConfig(trace, filledConfig(), QString());
    QCOMPARE(bytesOf(document), before);
}

void TraceConfigTest::number_reads_as_decimal_or_zero_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("decimal") << QByteArray("42") << 42;
    QTest::newRow("leading zero is no octal") << QByteArray("010") << 10;
    QTest::newRow("plus") << QByteArray("+5") << 5;
    QTest::newRow("negative") << QByteArray("-5") << -5;
    QTest::newRow("spaces around") << QByteArray(" 42\n") << 42;
    QTest::newRow("greatest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("one more") << QByteArray("2147483648") << 0;
    QTest::newRow("long") << QByteArray(1000, '9') << 0;
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("hexadecimal") << QByteArray("0x10") << 0;
    QTest::newRow("fraction") << QByteArray("1.5") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 0;
    QTest::newRow("word") << QByteArray("many") << 0;
    QTest::newRow("trailing letters") << QByteArray("12ab") << 0;
    QTest::newRow("grouped") << QByteArray("1,000") << 0;
}

void TraceConfigTest::number_reads_as_decimal_or_zero()
{
    QFETCH(const QByteArray, text);
    QFETCH(const int, expected);

    QDomDocument document;
    const QDomElement trace =
        traceOf(document, "<UaAppTraceMaxEntries>" + text + "</UaAppTraceMaxEntries>" +
                              "<UaAppTraceMaxBackup>" + text + "</UaAppTraceMaxBackup>");
    const TraceConfig config = readTraceConfig(trace, QString());
    QCOMPARE(config.appTraceMaxEntries, expected);
    QCOMPARE(config.appTraceMaxBackup, expected);
}

void TraceConfigTest::switch_reads_by_its_text_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("expected");

    QTest::newRow("true") << QByteArray("true") << true;
    QTest::newRow("false") << QByteArray("false") << false;
    QTest::newRow("False") << QByteArray("False") << false;
    QTest::newRow("FALSE") << QByteArray("FALSE") << false;
    QTest::newRow("zero") << QByteArray("0") << false;
    QTest::newRow("one") << QByteArray("1") << true;
    QTest::newRow("empty") << QByteArray() << false;
    // Whatever is neither empty nor "0" nor "false" counts as on.
    QTest::newRow("no") << QByteArray("no") << true;
    QTest::newRow("false with a space") << QByteArray("false ") << true;
}

void TraceConfigTest::switch_reads_by_its_text()
{
    QFETCH(const QByteArray, text);
    QFETCH(const bool, expected);

    QDomDocument document;
    const QDomElement app =
        traceOf(document, "<UaAppTraceEnabled>" + text + "</UaAppTraceEnabled>");
    QCOMPARE(readTraceConfig(app, QString()).isAppTraceEnabled, expected);
    QCOMPARE(readTraceConfig(app, QString()).isStackTraceEnabled, false);

    const QDomElement stack =
        traceOf(document, "<UaStackTraceEnabled>" + text + "</UaStackTraceEnabled>");
    QCOMPARE(readTraceConfig(stack, QString()).isAppTraceEnabled, false);
    QCOMPARE(readTraceConfig(stack, QString()).isStackTraceEnabled, expected);
}

void TraceConfigTest::text_reads_as_it_stands_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("expected");

    QTest::newRow("plain") << QByteArray("Info") << u"Info"_s;
    QTest::newRow("spaces are kept") << QByteArray(" Info ") << u" Info "_s;
    QTest::newRow("only spaces") << QByteArray("  ") << QString();
    QTest::newRow("CDATA") << QByteArray("<![CDATA[a<b]]>") << u"a<b"_s;
    QTest::newRow("comment inside") << QByteArray("In<!-- x -->fo") << u"Info"_s;
    QTest::newRow("instruction inside") << QByteArray("In<?x y?>fo") << u"Info"_s;
    QTest::newRow("element inside") << QByteArray("In<b>f</b>o") << u"Info"_s;
    QTest::newRow("references") << QByteArray("a&amp;&#x416;") << u"a&\u0416"_s;
    QTest::newRow("not Latin") << QByteArray("Журнал/跟踪") << u"Журнал/跟踪"_s;
}

void TraceConfigTest::text_reads_as_it_stands()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const QString, expected);

    QDomDocument document;
    const QDomElement trace = traceOf(
        document, "<UaAppTraceFile>" + xml + "</UaAppTraceFile>" + "<UaAppTraceLevel>" + xml +
                      "</UaAppTraceLevel>" + "<UaStackTraceLevel>" + xml + "</UaStackTraceLevel>");
    const TraceConfig config = readTraceConfig(trace, QString());
    QCOMPARE(config.appTraceFile, expected);
    QCOMPARE(config.appTraceLevel, expected);
    QCOMPARE(config.stackTraceLevel, expected);
}

void TraceConfigTest::trace_path_replaces_the_placeholder_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tracePath");
    QTest::addColumn<QString>("expected");

    QTest::newRow("front") << u"[TracePath]/a.log"_s << u"/var/log"_s << u"/var/log/a.log"_s;
    QTest::newRow("middle") << u"x/[TracePath]/a"_s << u"y"_s << u"x/y/a"_s;
    QTest::newRow("twice") << u"[TracePath][TracePath]"_s << u"y"_s << u"yy"_s;
    QTest::newRow("no placeholder") << u"a.log"_s << u"/var/log"_s << u"a.log"_s;
    QTest::newRow("empty path leaves it") << u"[TracePath]/a"_s << QString() << u"[TracePath]/a"_s;
    QTest::newRow("other case leaves it") << u"[tracepath]/a"_s << u"/var"_s << u"[tracepath]/a"_s;
    QTest::newRow("backslashes of the text stay")
        << u"[TracePath]\\a.log"_s << u"C:/log"_s << u"C:/log\\a.log"_s;
    QTest::newRow("path holding the placeholder is not searched again")
        << u"[TracePath]"_s << u"[TracePath]x"_s << u"[TracePath]x"_s;
}

void TraceConfigTest::trace_path_replaces_the_placeholder()
{
    QFETCH(const QString, text);
    QFETCH(const QString, tracePath);
    QFETCH(const QString, expected);

    QDomDocument document;
    const QDomElement trace =
        traceOf(document, "<UaAppTraceFile>" + text.toUtf8() + "</UaAppTraceFile>");
    QCOMPARE(readTraceConfig(trace, tracePath).appTraceFile, expected);
}

void TraceConfigTest::placeholder_replaces_the_trace_path_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("tracePath");
    QTest::addColumn<QString>("expected");

    QTest::newRow("front") << u"/var/log/a.log"_s << u"/var/log"_s << u"[TracePath]/a.log"_s;
    QTest::newRow("twice") << u"xx"_s << u"x"_s << u"[TracePath][TracePath]"_s;
    QTest::newRow("elsewhere") << u"/opt/a.log"_s << u"/var/log"_s << u"/opt/a.log"_s;
    QTest::newRow("other case") << u"/VAR/LOG/a"_s << u"/var/log"_s << u"/VAR/LOG/a"_s;
    QTest::newRow("backslashes become slashes first")
        << u"C:\\log\\a.log"_s << u"C:/log"_s << u"[TracePath]/a.log"_s;
    QTest::newRow("backslashes become slashes without a match")
        << u"D:\\log\\a.log"_s << u"C:/log"_s << u"D:/log/a.log"_s;
    QTest::newRow("empty path leaves backslashes")
        << u"C:\\log\\a.log"_s << QString() << u"C:\\log\\a.log"_s;
    QTest::newRow("empty path leaves the placeholder")
        << u"[TracePath]/a.log"_s << QString() << u"[TracePath]/a.log"_s;
}

void TraceConfigTest::placeholder_replaces_the_trace_path()
{
    QFETCH(const QString, text);
    QFETCH(const QString, tracePath);
    QFETCH(const QString, expected);

    QDomDocument document;
    const QDomElement trace = traceOf(document, "<UaAppTraceFile>old</UaAppTraceFile>");
    TraceConfig config;
    config.appTraceFile = text;
    writeTraceConfig(trace, config, tracePath);
    QCOMPARE(trace.firstChildElement(u"UaAppTraceFile"_s).text(), expected);
}

void TraceConfigTest::write_fills_every_element()
{
    QDomDocument document;
    const QDomElement trace = traceOf(
        document, "<UaAppTraceFile>x</UaAppTraceFile>"
                  "<UaAppTraceMaxEntries>x</UaAppTraceMaxEntries>"
                  "<UaAppTraceMaxBackup>x</UaAppTraceMaxBackup>"
                  "<UaAppTraceEnabled>x</UaAppTraceEnabled><UaAppTraceLevel>x</UaAppTraceLevel>"
                  "<UaStackTraceEnabled>x</UaStackTraceEnabled>"
                  "<UaStackTraceLevel>x</UaStackTraceLevel>");
    TraceConfig config = filledConfig();
    writeTraceConfig(trace, config, QString());
    QCOMPARE(bytesOf(document), "<Trace><UaAppTraceFile>/var/log/srv.log</UaAppTraceFile>"
                                "<UaAppTraceMaxEntries>1234</UaAppTraceMaxEntries>"
                                "<UaAppTraceMaxBackup>7</UaAppTraceMaxBackup>"
                                "<UaAppTraceEnabled>true</UaAppTraceEnabled>"
                                "<UaAppTraceLevel>Info</UaAppTraceLevel>"
                                "<UaStackTraceEnabled>true</UaStackTraceEnabled>"
                                "<UaStackTraceLevel>DEBUG</UaStackTraceLevel></Trace>");

    config.isAppTraceEnabled = false;
    config.isStackTraceEnabled = false;
    writeTraceConfig(trace, config, QString());
    QCOMPARE(trace.firstChildElement(u"UaAppTraceEnabled"_s).text(), u"false"_s);
    QCOMPARE(trace.firstChildElement(u"UaStackTraceEnabled"_s).text(), u"false"_s);
}

void TraceConfigTest::write_takes_only_text_children_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("text") << QByteArray("old") << QByteArray("Info");
    QTest::newRow("CDATA stays CDATA")
        << QByteArray("<![CDATA[old]]>") << QByteArray("<![CDATA[Info]]>");
    QTest::newRow("first text only, what follows stays")
        << QByteArray("a<!--c-->b") << QByteArray("Info<!--c-->b");
    QTest::newRow("comment first") << QByteArray("<!--c-->b") << QByteArray("<!--c-->b");
    // The text form of a document breaks the line behind an instruction.
    QTest::newRow("instruction first") << QByteArray("<?p d?>b") << QByteArray("<?p d?>\nb");
    QTest::newRow("element first") << QByteArray("<b>x</b>") << QByteArray("<b>x</b>");
}

void TraceConfigTest::write_takes_only_text_children()
{
    QFETCH(const QByteArray, xml);
    QFETCH(const QByteArray, expected);

    QDomDocument document;
    const QDomElement trace =
        traceOf(document, "<UaAppTraceLevel>" + xml + "</UaAppTraceLevel><UaStackTraceLevel/>");
    writeTraceConfig(trace, filledConfig(), QString());
    // An element without any text is the second one of each document.
    QCOMPARE(bytesOf(document), "<Trace><UaAppTraceLevel>" + expected +
                                    "</UaAppTraceLevel><UaStackTraceLevel/></Trace>");
}

void TraceConfigTest::first_of_repeated_elements_counts()
{
    QDomDocument document;
    const QDomElement trace = traceOf(document, "<UaAppTraceLevel>first</UaAppTraceLevel>"
                                                "<UaAppTraceLevel>second</UaAppTraceLevel>");
    QCOMPARE(readTraceConfig(trace, QString()).appTraceLevel, u"first"_s);
    writeTraceConfig(trace, filledConfig(), QString());
    QCOMPARE(bytesOf(document), "<Trace><UaAppTraceLevel>Info</UaAppTraceLevel>"
                                "<UaAppTraceLevel>second</UaAppTraceLevel></Trace>");
}

void TraceConfigTest::what_was_written_reads_back()
{
    QDomDocument document;
    QVERIFY(document.setContent(sampleConfig()));
    const QDomElement trace = document.documentElement()
                                  .firstChildElement(u"UaServerConfig"_s)
                                  .firstChildElement(u"Trace"_s);
    TraceConfig config = filledConfig();
    config.appTraceFile = u"/base/журнал & <1>.log"_s;
    writeTraceConfig(trace, config, u"/base"_s);

    const TraceConfig back = readTraceConfig(trace, u"/base"_s);
    QCOMPARE(back.appTraceFile, config.appTraceFile);
    QCOMPARE(back.appTraceMaxEntries, config.appTraceMaxEntries);
    QCOMPARE(back.appTraceMaxBackup, config.appTraceMaxBackup);
    QCOMPARE(back.isAppTraceEnabled, config.isAppTraceEnabled);
    QCOMPARE(back.appTraceLevel, config.appTraceLevel);
    QCOMPARE(back.isStackTraceEnabled, config.isStackTraceEnabled);
    QCOMPARE(back.stackTraceLevel, config.stackTraceLevel);
}

QTEST_GUILESS_MAIN(TraceConfigTest)
#include "traceconfig_test.moc"
