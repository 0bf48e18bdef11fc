#include "certificates/certificatelocationinfo.h"
#include "console/configfile.h"
#include "console/configreaders.h"
#include "console/endpointconfig.h"
#include "console/hostname.h"
#include "console/traceconfig.h"
#include "console/veskserverconfigwidget.h"
#include "console/vesktracesettingswidget.h"
#include "console/windowgeometry.h"
#include "tests/console/malformer.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QDomDocument>
#include <QSpinBox>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using ReadResult = ConfigFile::ReadResult;

// Five hundred malformed files, the same at each run, through every reader, every writer and both
// tabs: nothing crashes or hangs, what can't be read is left alone, and what was written reads back
// the same.

namespace {

constexpr int fileCount = 500;

QByteArray malformed(int number)
{
    static const QList<QByteArray> files = [] {
        Malformer malformer(sampleConfig(), 20251121);
        QList<QByteArray> made;
        for (int i = 0; i < fileCount; ++i) {
            made.append(malformer.next());
        }
        return made;
    }();
    return files[number];
}

QDomElement childOf(const QDomElement& element, const char* name)
{
    return element.firstChildElement(QString::fromLatin1(name));
}

/// Whether every element whose text the console writes has one child at most. A new text goes into
/// the first child and the others stay, so that a text of several children grows with each save.
bool hasPlainTexts(const QDomNode& parent)
{
    for (QDomNode node = parent.firstChild(); !node.isNull(); node = node.nextSibling()) {
        const bool isMixed =
            !node.isElement() && parent.isElement() && parent.childNodes().count() > 1;
        if (isMixed || !hasPlainTexts(node)) {
            return false;
        }
    }
    return true;
}

bool hasPlainTexts(const QByteArray& bytes)
{
    QDomDocument document;
    return document.setContent(bytes) && hasPlainTexts(document);
}

/// What the readers of both tabs find in the file.
struct Content
{
    QList<EndpointRecord> endpoints;
    std::optional<UserLogon> logon;
    TraceConfig trace;
};

Content contentOf(const QString& path)
{
    ConfigFile file(path);
    if (file.read() != ReadResult::Parsed) {
        return {};
    }
    const QDomElement config = childOf(file.root(), "UaServerConfig");
    return {readEndpoints(config), readUserLogon(config),
            readTraceConfig(childOf(config, "Trace"), QString())};
}

bool isSame(const TraceConfig& a, const TraceConfig& b)
{
    return a.appTraceFile == b.appTraceFile && a.appTraceMaxEntries == b.appTraceMaxEntries &&
           a.appTraceMaxBackup == b.appTraceMaxBackup &&
           a.isAppTraceEnabled == b.isAppTraceEnabled && a.appTraceLevel == b.appTraceLevel &&
           a.isStackTraceEnabled == b.isStackTraceEnabled && a.stackTraceLevel == b.stackTraceLevel;
}

bool isSame(const std::optional<UserLogon>& a, const std::optional<UserLogon>& b)
{
    return a.has_value() == b.has_value() &&
           (!a || (a->isAnonymousAllowed == b->isAnonymousAllowed &&
                   a->isUserPasswordAllowed == b->isUserPasswordAllowed));
}

} // namespace

class MalformedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void generator_makes_the_same_files_again();
    void file_passes_every_reader_and_writer_data() { addRows(); }
    void file_passes_every_reader_and_writer();
    void endpoints_tab_saves_what_it_shows_data() { addRows(); }
    void endpoints_tab_saves_what_it_shows();
    void trace_tab_saves_what_it_shows_data() { addRows(); }
    void trace_tab_saves_what_it_shows();
    void enough_files_are_readable();

private:
    static void addRows()
    {
        QTest::addColumn<int>("number");
        for (int i = 0; i < fileCount; ++i) {
            QTest::addRow("%d", i) << i;
        }
    }

    /// Writes the file of the row, and tells whether it is one that the console reads.
    bool makeFile()
    {
        QFETCH(const int, number);
        writeFile(m_path, malformed(number));
        return ConfigFile(m_path).read() == ReadResult::Parsed;
    }

    QTemporaryDir m_directory;
    QString m_path;
};

void MalformedFilesTest::initTestCase()
{
    m_path = m_directory.filePath(u"ServerConfig.xml"_s);
}

void MalformedFilesTest::generator_makes_the_same_files_again()
{
    Malformer first(sampleConfig(), 1);
    Malformer second(sampleConfig(), 1);
    int different = 0;
    for (int i = 0; i < 50; ++i) {
        const QByteArray file = first.next();
        QCOMPARE(second.next(), file);
        different += file == sampleConfig() ? 0 : 1;
    }
    QVERIFY(different > 40);
}

void MalformedFilesTest::file_passes_every_reader_and_writer()
{
    const bool isReadable = makeFile();
    const QByteArray before = readFile(m_path);
    ConfigFile file(m_path);
    QCOMPARE(file.read() == ReadResult::Parsed, isReadable);
    CertificateLocationInfo info;
    QString texts[6];
    const bool hasLocations = readCertificateLocations(file.root(), {u"/a"_s, u"/c"_s}, info);
    QVERIFY(!hasLocations || isReadable);
    QVERIFY(!readCertificateSettings(file.root(), u"alpha"_s, texts[0], texts[1], texts[2],
                                     texts[3], texts[4], texts[5]) ||
            isReadable);
    static_cast<void>(readWindowGeometry(file.root()));
    QCOMPARE(readFile(m_path), before); // readers write nothing
    if (!isReadable) {
        return;
    }

    expandHostName(file.document(), u"alpha"_s);
    static_cast<void>(checkHostName(file.document(), u"alpha"_s));
    writeWindowGeometry(file.document(), "geometry");
    QVERIFY(file.write());
    const QByteArray first = readFile(m_path);
    ConfigFile again(m_path);
    QCOMPARE(again.read(), ReadResult::Parsed);
    QCOMPARE(readWindowGeometry(again.root()), QByteArray("geometry"));
    QVERIFY(again.write());
    QCOMPARE(readFile(m_path), first);
}

void MalformedFilesTest::endpoints_tab_saves_what_it_shows()
{
    const bool isReadable = makeFile();
    const QByteArray before = readFile(m_path);
    VeskServerConfigWidget tab(m_path, 0, u"UA Port"_s);
    QCOMPARE(readFile(m_path), before);
    const Content shown = contentOf(m_path);
    tab.save();
    if (!isReadable) {
        QCOMPARE(readFile(m_path), before);
        return;
    }
    QCOMPARE(ConfigFile(m_path).read(), ReadResult::Parsed);
    if (!hasPlainTexts(before)) {
        return;
    }
    const QByteArray first = readFile(m_path);
    const Content written = contentOf(m_path);
    QCOMPARE(written.endpoints.size(), shown.endpoints.size());
    QVERIFY(isSame(written.logon, shown.logon));
    QVERIFY(isSame(written.trace, shown.trace)); // the other tab's
    tab.reload();
    tab.save();
    QCOMPARE(readFile(m_path), first);
}

void MalformedFilesTest::trace_tab_saves_what_it_shows()
{
    const bool isReadable = makeFile();
    const QByteArray before = readFile(m_path);
    VeskTraceSettingsWidget tab(m_path, QString());
    QCOMPARE(readFile(m_path), before);
    const Content shown = contentOf(m_path);
    tab.save();
    if (!isReadable) {
        QCOMPARE(readFile(m_path), before);
        return;
    }
    QCOMPARE(ConfigFile(m_path).read(), ReadResult::Parsed);
    if (!hasPlainTexts(before)) {
        return;
    }
    const QByteArray first = readFile(m_path);
    const Content written = contentOf(m_path);
    QVERIFY(written.endpoints == shown.endpoints); // the other tab's
    QVERIFY(isSame(written.logon, shown.logon));
    QCOMPARE(written.trace.appTraceFile, shown.trace.appTraceFile);
    QCOMPARE(written.trace.isAppTraceEnabled, shown.trace.isAppTraceEnabled);
    QCOMPARE(written.trace.isStackTraceEnabled, shown.trace.isStackTraceEnabled);
    tab.reload();
    tab.save();
    QCOMPARE(readFile(m_path), first);
}

void MalformedFilesTest::enough_files_are_readable()
{
    int readable = 0;
    for (int i = 0; i < fileCount; ++i) {
        writeFile(m_path, malformed(i));
        readable += ConfigFile(m_path).read() == ReadResult::Parsed ? 1 : 0;
    }
    QVERIFY2(readable > fileCount / 4 && readable < fileCount * 3 / 4,
             qPrintable(QString::number(readable)));
}

ZANDREL_TEST_MAIN(MalformedFilesTest)
#include "malformedfiles_test.moc"
