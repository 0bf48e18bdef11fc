#include "console/commandline.h"

#include <QTest>

using namespace Qt::StringLiterals;

class CommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arguments_are_read_in_pairs_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("file");
        QTest::newRow("none") << QStringList() << QString() << QString();
        QTest::newRow("title") << QStringList{u"-t"_s, u"My title"_s} << u"My title"_s << QString();
        QTest::newRow("slash") << QStringList{u"/t"_s, u"My title"_s} << u"My title"_s << QString();
        QTest::newRow("file") << QStringList{u"-f"_s, u"a.xml"_s} << QString() << u"a.xml"_s;
        QTest::newRow("both") << QStringList{u"/f"_s, u"a.xml"_s, u"-t"_s, u"b"_s} << u"b"_s
                              << u"a.xml"_s;
        QTest::newRow("value with a minus")
            << QStringList{u"-t"_s, u"-f"_s} << u"-f"_s << QString();
        QTest::newRow("later wins")
            << QStringList{u"-t"_s, u"a"_s, u"/t"_s, u"b"_s} << u"b"_s << QString();
        QTest::newRow("capital file sets nothing")
            << QStringList{u"-F"_s, u"x"_s} << QString() << QString();
        QTest::newRow("capital title sets nothing")
            << QStringList{u"/T"_s, u"x"_s} << QString() << QString();
        QTest::newRow("empty title") << QStringList{u"-t"_s, QString()} << QString() << QString();
        QTest::newRow("empty file") << QStringList{u"-f"_s, QString()} << QString() << QString();
    }

    void arguments_are_read_in_pairs()
    {
        QFETCH(const QStringList, arguments);
        const CommandLine commandLine = parseCommandLine(QStringList(u"zandrel"_s) + arguments);
        QCOMPARE(commandLine.usage, QString());
        QTEST(commandLine.windowTitle, "title");
        QTEST(commandLine.configFile, "file");
    }

    void bad_arguments_are_told_with_the_usage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("problem");
        const QString invalid = u"Invalid command line argument '%1'."_s;
        const QString missing = u"Missing value for command line argument '%1'."_s;
        QTest::newRow("missing title") << QStringList{u"-t"_s} << missing.arg(u"-t"_s);
        QTest::newRow("missing file")
            << QStringList{u"-t"_s, u"a"_s, u"/F"_s} << missing.arg(u"/F"_s);
        QTest::newRow("unknown") << QStringList{u"-x"_s, u"y"_s} << invalid.arg(u"-x"_s);
        QTest::newRow("unknown and last") << QStringList{u"-x"_s} << invalid.arg(u"-x"_s);
        QTest::newRow("value at a switch's place")
            << QStringList{u"-f"_s, u"a"_s, u"b"_s, u"-t"_s, u"c"_s} << invalid.arg(u"b"_s);
        QTest::newRow("two letters") << QStringList{u"-tf"_s, u"y"_s} << invalid.arg(u"-tf"_s);
        QTest::newRow("no letter") << QStringList{u"-"_s, u"y"_s} << invalid.arg(u"-"_s);
        QTest::newRow("two minuses") << QStringList{u"--t"_s, u"y"_s} << invalid.arg(u"--t"_s);
        QTest::newRow("line break") << QStringList{u"-t\n"_s, u"y"_s} << invalid.arg(u"-t\n"_s);
        QTest::newRow("empty") << QStringList{QString(), u"y"_s} << invalid.arg(QString());
        QTest::newRow("placeholder in it")
            << QStringList{u"%1%2"_s, u"y"_s} << invalid.arg(u"%1%2"_s);
    }

    void bad_arguments_are_told_with_the_usage()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, problem);
        QCOMPARE(parseCommandLine(QStringList(u"zandrel"_s) + arguments).usage,
                 problem + u"\nUsage:\n-t \"Window Title\"\n-f \"XML File Name\""_s);
    }

    void program_name_alone_or_nothing_at_all_is_fine()
    {
        QCOMPARE(parseCommandLine({}).usage, QString());
        QCOMPARE(parseCommandLine({u"-x"_s}).usage, QString());
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)

#include "commandline_test.moc"
