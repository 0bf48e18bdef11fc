#include "console/configdom.h"
#include "console/configfile.h"
#include "console/configguard.h"
#include "tests/support/configsample.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"
#include "tests/support/unprivileged.h"
#include "tests/support/unusualfiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using ReadResult = ConfigFile::ReadResult;

// What bad files and failing writes come to.

namespace {

QByteArray nested(int levels)
{
    return QByteArray("<a>").repeated(levels) + QByteArray("</a>").repeated(levels);
}

QByteArray withAttributes(int count)
{
    QByteArray text = "<a";
    for (int i = 0; i < count; ++i) {
        text += " b" + QByteArray::number(i) + "='x'";
    }
    return text + "/>";
}

QByteArray laughs(int levels)
{
    QByteArray text = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
    for (int i = 1; i < levels; ++i) {
        text += "<!ENTITY l" + QByteArray::number(i) + " '" +
                ("&l" + QByteArray::number(i - 1) + ";").repeated(10) + "'>";
    }
    return text + "]><a>&l" + QByteArray::number(levels - 1) + ";</a>";
}

/// A file of that size that takes no room on the disk.
void makeSparse(const QString& path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size)) {
        qFatal("can't make a sparse file");
    }
}

} // namespace

class ConfigFileFailuresTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void what_is_no_file_is_not_opened_data();
    void what_is_no_file_is_not_opened();
    void file_without_permission_is_not_opened();
    void bad_content_is_told_apart_data();
    void bad_content_is_told_apart();
    void every_beginning_of_a_file_is_read_without_harm();
    void size_is_limited_exactly();
    void large_plain_file_is_read_and_written();
    void entities_that_hide_depth_are_refused();
    void text_that_xml_forbids_is_not_written_data();
    void text_that_xml_forbids_is_not_written();
    void text_that_grows_beyond_the_limit_is_not_written();
    void file_without_write_permission_stays();
    void folder_in_its_place_stays();
    void vanished_folder_is_a_failed_write();
    void read_only_disk_is_a_failed_write();
    void full_disk_puts_the_old_file_back_data();
    void full_disk_puts_the_old_file_back();
    void failed_write_can_be_repeated();

private:
    [[nodiscard]] QString file(const QByteArray& content) const
    {
        return writeFile(m_path, content);
    }

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_path;
};

void ConfigFileFailuresTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_path = m_directory->filePath(u"ServerConfig.xml"_s);
    QVERIFY(QFile::setPermissions(m_directory->path(), QFileDevice::Permissions::fromInt(0x7755)));
}

void ConfigFileFailuresTest::cleanup()
{
    m_directory.reset();
}

void ConfigFileFailuresTest::what_is_no_file_is_not_opened_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind :
         {"missing", "folder", "pipe", "device", "link to a device", "link to nothing",
          "name of a folder", "file as a folder", "no name"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void ConfigFileFailuresTest::what_is_no_file_is_not_opened()
{
    QFETCH(const QString, kind);

    QString path = m_path;
    if (kind == u"folder"_s) {
        QVERIFY(QDir().mkdir(path));
    } else if (kind == u"pipe"_s) {
        makePipe(path);
    } else if (kind == u"device"_s) {
        path = endlessDevice();
    } else if (kind == u"link to a device"_s) {
        QVERIFY(QFile::link(endlessDevice(), path));
    } else if (kind == u"link to nothing"_s) {
        QVERIFY(QFile::link(m_directory->filePath(u"nothing"_s), path));
    } else if (kind == u"name of a folder"_s) {
        path = m_directory->path() + u'/';
    } else if (kind == u"file as a folder"_s) {
        path = file(sampleConfig()) + u"/x"_s;
    } else if (kind == u"no name"_s) {
        path = QString();
    }
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::NotOpened);
    QVERIFY(config.root().isNull());
    QVERIFY(kind == u"missing"_s || kind == u"link to nothing"_s || !config.write());
}

void ConfigFileFailuresTest::file_without_permission_is_not_opened()
{
    const QString path = file(sampleConfig());
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
    const Unprivileged user;
    QCOMPARE(ConfigFile(path).read(), ReadResult::NotOpened);
    QVERIFY(!isConfigFileWritable(path));
}

void ConfigFileFailuresTest::bad_content_is_told_apart_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<ReadResult>("expected");

    const auto parsed = ReadResult::Parsed;
    const auto notParsed = ReadResult::NotParsed;
    const auto refused = ReadResult::Refused;
    const qsizetype tenMegabytes = 10'000'000;

    QTest::newRow("empty") << QByteArray() << notParsed;
    QTest::newRow("only spaces") << QByteArray(" \n\t ") << notParsed;
    QTest::newRow("only a declaration") << QByteArray("<?xml version='1.0'?>") << notParsed;
    QTest::newRow("only a comment") << QByteArray("<!-- a -->") << notParsed;
    QTest::newRow("plain text") << QByteArray("key=value\n") << notParsed;
    QTest::newRow("JSON") << QByteArray("{\"a\": 1}") << notParsed;
    QTest::newRow("HTML") << QByteArray("<html><br><p>x</html>") << notParsed;
    QTest::newRow("two document elements") << QByteArray("<a/><b/>") << notParsed;
    QTest::newRow("text behind the document element") << QByteArray("<a/>x") << notParsed;
    QTest::newRow("wrong end tag") << QByteArray("<a><b></a></b>") << notParsed;
    QTest::newRow("attribute twice") << QByteArray("<a b='1' b='2'/>") << notParsed;
    QTest::newRow("attribute without quotes") << QByteArray("<a b=1/>") << notParsed;
    QTest::newRow("unknown entity") << QByteArray("<a>&nbsp;</a>") << notParsed;
    QTest::newRow("reference to a forbidden character") << QByteArray("<a>&#1;</a>") << notParsed;
    QTest::newRow("null characters") << QByteArray(1000, '\0') << notParsed;
    QTest::newRow("null character inside") << QByteArray("<a>x\0y</a>", 10) << notParsed;
    QTest::newRow("control character inside") << QByteArray("<a>\x01</a>") << notParsed;
    QTest::newRow("section that isn't closed") << QByteArray("<a><![CDATA[x</a>") << notParsed;
    QTest::newRow("brackets of a section in a text") << QByteArray("<a>]]></a>") << notParsed;
    QTest::newRow("dashes in a comment") << QByteArray("<a><!-- -- --></a>") << notParsed;
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << notParsed;
    QTest::newRow("10 MB of zeros") << QByteArray(tenMegabytes, '\0') << notParsed;
    QTest::newRow("10 MB of brackets") << QByteArray(tenMegabytes, '<') << notParsed;
    QTest::newRow("10 MB of invalid UTF-8")
        << "<a>" + QByteArray(tenMegabytes, '\xFF') + "</a>" << parsed;
    QTest::newRow("name of 10 MB") << "<" + QByteArray(tenMegabytes, 'n') + "/>" << notParsed;

    QTest::newRow("500 levels") << nested(500) << parsed;
    QTest::newRow("501 levels") << nested(501) << refused;
    QTest::newRow("100,000 levels") << nested(100'000) << refused;
    QTest::newRow("100,000 levels without an end")
        << QByteArray("<a>").repeated(100'000) << refused;
    QTest::newRow("1,000 attributes") << withAttributes(1000) << parsed;
    QTest::newRow("1,001 attributes") << withAttributes(1001) << refused;
    QTest::newRow("100,000 attributes") << withAttributes(100'000) << refused;
    QTest::newRow("entity that grows by powers") << laughs(10) << notParsed; // by the parser itself
    QTest::newRow("entity referenced often")
        << "<!DOCTYPE a [<!ENTITY e '" + QByteArray(4000, 'x') + "'>]><a>" +
               QByteArray("&e;").repeated(100'000) + "</a>"
        << refused;
    QTest::newRow("entity of start tags")
        << "<!DOCTYPE a [<!ENTITY e '<a>'>]><a>" + QByteArray("&e;").repeated(200) +
               QByteArray("</a>").repeated(201)
        << notParsed;
    QTest::newRow("entity that refers to itself")
        << QByteArray("<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>") << notParsed;
    QTest::newRow("entity in another file")
        << QByteArray("<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><a>&e;</a>") << parsed;
    QTest::newRow("few entities") << QByteArray("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;&e;</a>")
                                  << parsed;
    QTest::newRow("attribute lists")
        << QByteArray("<!DOCTYPE a [<!ATTLIST a b CDATA 'x'>]><a/>") << refused;
    QTest::newRow("parameter entity")
        << QByteArray("<!DOCTYPE a [<!ENTITY % p 'x'>]><a/>") << refused;
    QTest::newRow("elements without number")
        << "<a>" + QByteArray("<b/>").repeated(4'000'000) + "</a>" << refused;
    QTest::newRow("indent of a hundred times the text")
        << "<a>" + nested(499).repeated(300) + "</a>" << refused;
}

void ConfigFileFailuresTest::bad_content_is_told_apart()
{
    QFETCH(const QByteArray, content);
    QFETCH(const ReadResult, expected);

    const QString path = file(content);
    ConfigFile config(path);
    QCOMPARE(config.read(), expected);
    QCOMPARE(config.root().isNull(), expected != ReadResult::Parsed);
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::every_beginning_of_a_file_is_read_without_harm()
{
    const QByteArray sample = sampleConfig();
    const qsizetype end = sample.lastIndexOf('>') + 1;
    const QString path = file(sample);
    for (qsizetype size = sample.size(); size-- > 0;) {
        QVERIFY(QFile::resize(path, size));
        QCOMPARE(ConfigFile(path).read(), size < end ? ReadResult::NotParsed : ReadResult::Parsed);
    }
}

void ConfigFileFailuresTest::size_is_limited_exactly()
{
    makeSparse(m_path, ConfigLimits::maxBytes + 1);
    QCOMPARE(ConfigFile(m_path).read(), ReadResult::Refused);
    makeSparse(m_path, 1LL << 40); // no memory is taken for it
    QCOMPARE(ConfigFile(m_path).read(), ReadResult::Refused);

    QByteArray content = "<a>" + QByteArray(ConfigLimits::maxBytes, 'x');
    content.truncate(ConfigLimits::maxBytes - 5);
    content += "</a>\n";
    const QString path = file(content);
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(config.write());
    QCOMPARE(readFile(path), content);
    setFirstChildText(config.root(), config.root().text() + u'x');
    QVERIFY(!config.write());
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::large_plain_file_is_read_and_written()
{
    QByteArray content = "<ServerConfiguration>\n  <UaServerConfig>\n";
    const QByteArray element = "    <Note>" + QByteArray(1000, 'x') + "</Note>\n";
    content += element.repeated(50'000'000 / element.size());
    content += "  </UaServerConfig>\n</ServerConfiguration>\n";
    const QString path = file(content);
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(config.write());
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::entities_that_hide_depth_are_refused()
{
    const auto text = [](int levels) {
        const int inEntity = 300;
        return "<!DOCTYPE a [<!ENTITY e '" + nested(inEntity) + "'>]>" +
               QByteArray("<a>").repeated(levels - inEntity) + "&e;" +
               QByteArray("</a>").repeated(levels - inEntity);
    };
    QCOMPARE(ConfigFile(file(text(500))).read(), ReadResult::Parsed);
    QCOMPARE(ConfigFile(file(text(501))).read(), ReadResult::Refused);
}

void ConfigFileFailuresTest::text_that_xml_forbids_is_not_written_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("null") << QString(QChar(0));
    QTest::newRow("control") << u"a\u0001b"_s;
    QTest::newRow("escape") << u"\u001b[0m"_s;
    QTest::newRow("high surrogate") << QString(QChar(0xD800));
    QTest::newRow("low surrogate") << QString(QChar(0xDFFF));
    QTest::newRow("no character") << QString(QChar(0xFFFF));
}

void ConfigFileFailuresTest::text_that_xml_forbids_is_not_written()
{
    QFETCH(const QString, text);

    const QByteArray content = "<a b=\"x\">x</a>\n";
    const QString path = file(content);
    ConfigFile inText(path);
    QCOMPARE(inText.read(), ReadResult::Parsed);
    setFirstChildText(inText.root(), text);
    QVERIFY(!inText.write());
    QCOMPARE(readFile(path), content);

    ConfigFile inAttribute(path);
    QCOMPARE(inAttribute.read(), ReadResult::Parsed);
    inAttribute.root().setAttribute(u"b"_s, text);
    QVERIFY(!inAttribute.write());
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::text_that_grows_beyond_the_limit_is_not_written()
{
    // Each byte becomes a replacement character of three.
    const QByteArray content = "<a>" + QByteArray(30'000'000, '\xFF') + "</a>";
    const QString path = file(content);
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(!config.write());
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::file_without_write_permission_stays()
{
    const QString path = file(sampleConfig());
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions::fromInt(0x4444)));
    const Unprivileged user;
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(!isConfigFileWritable(path));
    QVERIFY(!config.write());
    QCOMPARE(readFile(path), sampleConfig());
}

void ConfigFileFailuresTest::folder_in_its_place_stays()
{
    const QString path = file(sampleConfig());
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(QFile::remove(path));
    QVERIFY(QDir().mkdir(path));
    QVERIFY(!config.write());
    QVERIFY(QFileInfo(path).isDir());
    QCOMPARE(config.read(), ReadResult::NotOpened);
}

void ConfigFileFailuresTest::vanished_folder_is_a_failed_write()
{
    const QString path = file(sampleConfig());
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(QDir(m_directory->path()).removeRecursively());
    QVERIFY(!config.write());
    QVERIFY(!QFileInfo::exists(path));
}

void ConfigFileFailuresTest::read_only_disk_is_a_failed_write()
{
    SmallDisk disk(64);
    if (!disk.isMounted()) {
        QSKIP(qPrintable(disk.reason()));
    }
    const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), sampleConfig());
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    QVERIFY(disk.makeReadOnly());
    QVERIFY(!isConfigFileWritable(path));
    QVERIFY(!config.write());
    QCOMPARE(readFile(path), sampleConfig());
}

void ConfigFileFailuresTest::full_disk_puts_the_old_file_back_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("newSize");

    const QByteArray small = "<a>old</a>";
    const QByteArray large = "<a>" + QByteArray(16'000, 'x') + "</a>";
    QTest::newRow("small file, long text") << small << 20'000;
    QTest::newRow("large file, longer text") << large << 40'000;
    QTest::newRow("Windows line ends") << QByteArray("<a>\r\nold\r\n</a>\r\n") << 20'000;
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE<\0a\0>\0x\0<\0/\0a\0>\0", 18) << 20'000;
}

void ConfigFileFailuresTest::full_disk_puts_the_old_file_back()
{
    QFETCH(const QByteArray, content);
    QFETCH(const int, newSize);

    SmallDisk disk(64);
    if (!disk.isMounted()) {
        QSKIP(qPrintable(disk.reason()));
    }
    const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), content);
    disk.fillUpTo(4);
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    setFirstChildText(config.root(), QString(newSize, u'y'));
    QVERIFY(!config.write());
    QCOMPARE(readFile(path), content);
}

void ConfigFileFailuresTest::failed_write_can_be_repeated()
{
    SmallDisk disk(64);
    if (!disk.isMounted()) {
        QSKIP(qPrintable(disk.reason()));
    }
    const QString path = writeFile(disk.filePath(u"ServerConfig.xml"_s), "<a>old</a>");
    disk.fillUpTo(4);
    ConfigFile config(path);
    QCOMPARE(config.read(), ReadResult::Parsed);
    const QString text(20'000, u'y');
    setFirstChildText(config.root(), text);
    QVERIFY(!config.write());
    QVERIFY(QFile::remove(disk.filePath(u"filler"_s))); // someone makes room
    QVERIFY(config.write());
    QCOMPARE(readFile(path), "<a>" + text.toUtf8() + "</a>\n");
}

ZANDREL_TEST_MAIN(ConfigFileFailuresTest)
#include "configfile_failures_test.moc"
