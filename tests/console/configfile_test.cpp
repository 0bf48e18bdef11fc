#include "console/configdom.h"
#include "console/configfile.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"
#include "tests/support/unusualfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTextStream>

using namespace Qt::StringLiterals;
using ReadResult = ConfigFile::ReadResult;

namespace {

/// A configuration file in a directory of its own.
class Fixture
{
public:
    explicit Fixture(const QByteArray& content)
        : path(writeFile(directory.filePath(u"ServerConfig.xml"_s), content))
        , file(path)
    {
    }

    [[nodiscard]] QByteArray content() const { return readFile(path); }

    QTemporaryDir directory;
    QString path;
    ConfigFile file;
};

/// What the file's characters are by the rule: a file opened as text, a text stream set to UTF-8.
QString textByStream(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qFatal("can't open %s", qPrintable(path));
    }
    QTextStream stream(&file);
    stream.setEncoding(QStringConverter::Utf8);
    return stream.readAll();
}

QByteArray utf16(const QString& text, bool isBigEndian)
{
    QByteArray bytes;
    for (const QChar c : QChar(0xFEFF) + text) {
        const char high = static_cast<char>(c.row());
        const char low = static_cast<char>(c.cell());
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

} // namespace

class ConfigFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sample_is_parsed();
    void document_element_name_is_not_looked_at();
    void names_are_no_namespaces();
    void bytes_read_like_a_text_stream_data();
    void bytes_read_like_a_text_stream();
    void declared_encoding_has_no_effect();
    void write_indents_by_two_and_keeps_what_it_does_not_know();
    void write_gives_plain_utf_8_data();
    void write_gives_plain_utf_8();
    void write_changes_the_file_in_its_place();
    void write_through_a_link_keeps_the_link();
    void write_leaves_no_other_file();
    void write_twice_gives_the_same_bytes_data();
    void write_twice_gives_the_same_bytes();
    void carriage_return_in_a_value_survives();
    void read_after_write_gives_the_document_again();
    void read_after_write_sees_what_others_wrote();
    void read_after_write_gives_what_the_file_says();
    void damaged_file_is_emptied_by_a_write();
    void longer_file_is_cut_by_a_shorter_text();
    void writable_file_is_told_and_left_alone();
};

void ConfigFileTest::sample_is_parsed()
{
    Fixture fixture(sampleConfig());
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().tagName(), u"ServerConfiguration"_s);
    QCOMPARE(descend(fixture.file.root(), {u"UaServerConfig"_s, u"Trace"_s, u"UaAppTraceLevel"_s})
                 .text(),
             u"Info"_s);
    QCOMPARE(fixture.content(), sampleConfig());
}

void ConfigFileTest::document_element_name_is_not_looked_at()
{
    Fixture fixture("<Any><UaServerConfig>x</UaServerConfig></Any>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(descend(fixture.file.root(), {u"UaServerConfig"_s}).text(), u"x"_s);
}

void ConfigFileTest::names_are_no_namespaces()
{
    Fixture fixture(
        "<a><p:UaServerConfig>1</p:UaServerConfig><UaServerConfig>2</UaServerConfig></a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed); // though "p" is declared nowhere
    QCOMPARE(descend(fixture.file.root(), {u"UaServerConfig"_s}).text(), u"2"_s);
    QCOMPARE(descend(fixture.file.root(), {u"p:UaServerConfig"_s}).text(), u"1"_s);
}

void ConfigFileTest::bytes_read_like_a_text_stream_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("ASCII") << QByteArray("<a>x</a>");
    QTest::newRow("UTF-8") << QByteArray("<a>журнал 跟踪 😀</a>");
    QTest::newRow("UTF-8 with a byte order mark") << QByteArray("\xEF\xBB\xBF<a>ж</a>");
    QTest::newRow("little-endian UTF-16") << utf16(u"<a>журнал 😀</a>"_s, false);
    QTest::newRow("big-endian UTF-16") << utf16(u"<a>журнал 😀</a>"_s, true);
    QTest::newRow("Latin-1") << QByteArray("<a>caf\xE9!</a>");
    QTest::newRow("cut character") << QByteArray("<a>\xD0</a>");
    QTest::newRow("cut character of four") << QByteArray("<a>\xF0\x9F\x98</a>");
    QTest::newRow("overlong form") << QByteArray("<a>\xC0\xAF</a>");
    QTest::newRow("surrogates in UTF-8") << QByteArray("<a>\xED\xA0\xBD\xED\xB8\x80</a>");
    QTest::newRow("beyond the last character") << QByteArray("<a>\xF5\x80\x80\x80</a>");
    QTest::newRow("bytes that never occur") << QByteArray("<a>\xFF\xFE\xFF</a>");
    QTest::newRow("Windows line ends") << QByteArray("<a>\r\nx\r\n</a>\r\n");
    QTest::newRow("old line ends") << QByteArray("<a>\rx\r</a>\r");
    QTest::newRow("doubled line ends") << QByteArray("<a>\r\r\nx\n\r</a>");
    QTest::newRow("byte order mark inside") << QByteArray("<a>\xEF\xBB\xBFx</a>");
}

void ConfigFileTest::bytes_read_like_a_text_stream()
{
    QFETCH(const QByteArray, content);

    Fixture fixture(content);
    QDomDocument expected;
    QVERIFY(expected.setContent(textByStream(fixture.path)));
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().text(), expected.documentElement().text());
    QVERIFY(!fixture.file.root().text().isEmpty());
}

void ConfigFileTest::declared_encoding_has_no_effect()
{
    for (const char* encoding : {"ISO-8859-1", "UTF-16", "Shift_JIS", "no-such-thing"}) {
        Fixture fixture("<?xml version='1.0' encoding='" + QByteArray(encoding) +
                        "'?>\n<a>ж</a>\n");
        const QByteArray before = fixture.content();
        QCOMPARE(fixture.file.read(), ReadResult::Parsed);
        QCOMPARE(fixture.file.root().text(), u"ж"_s);
        // Nor on writing: the declaration stays as it is, the bytes are UTF-8.
        QVERIFY(fixture.file.write());
        QCOMPARE(fixture.content(), before);
    }
}

void ConfigFileTest::write_indents_by_two_and_keeps_what_it_does_not_know()
{
    Fixture fixture(
        "<?xml version='1.0' encoding='UTF-8'?><!-- first --><?style sheet?>"
        "<a b='1'><c><d>t</d><![CDATA[<raw> & ]]></c><!-- in --><e/>mixed &lt; text</a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.content(), "<?xml version='1.0' encoding='UTF-8'?>\n"
                                "<!-- first -->\n"
                                "<?style sheet?>\n"
                                "<a b=\"1\">\n"
                                "  <c>\n"
                                "    <d>t</d><![CDATA[<raw> & ]]></c>\n"
                                "  <!-- in -->\n"
                                "  <e/>mixed &lt; text</a>\n");
}

void ConfigFileTest::write_gives_plain_utf_8_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("UTF-8") << QByteArray("<a>журнал 😀</a>\n");
    QTest::newRow("UTF-8 with a byte order mark") << QByteArray("\xEF\xBB\xBF<a>журнал 😀</a>\n");
    QTest::newRow("little-endian UTF-16") << utf16(u"<a>журнал 😀</a>"_s, false);
    QTest::newRow("big-endian UTF-16") << utf16(u"<a>журнал 😀</a>"_s, true);
    QTest::newRow("Windows line ends") << QByteArray("<a>журнал 😀</a>\r\n");
}

void ConfigFileTest::write_gives_plain_utf_8()
{
    QFETCH(const QByteArray, content);

    Fixture fixture(content);
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.content(), "<a>журнал 😀</a>\n");
}

void ConfigFileTest::write_changes_the_file_in_its_place()
{
    Fixture fixture(sampleConfig());
    const auto permissions = QFileDevice::Permissions::fromInt(0x6640);
    QVERIFY(QFile::setPermissions(fixture.path, permissions));
    const quint64 before = fileNumber(fixture.path);
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    QCOMPARE(fileNumber(fixture.path), before);
    QCOMPARE(QFile::permissions(fixture.path) & permissions, permissions);
    QVERIFY(!QFile::permissions(fixture.path).testFlag(QFileDevice::ReadOther));
}

void ConfigFileTest::write_through_a_link_keeps_the_link()
{
    const Fixture fixture("<a>old</a>");
    const QString link = fixture.directory.filePath(u"link.xml"_s);
    QVERIFY(QFile::link(fixture.path, link));
    ConfigFile file(link);
    QCOMPARE(file.read(), ReadResult::Parsed);
    setFirstChildText(file.root(), u"new"_s);
    QVERIFY(file.write());
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(fixture.content(), "<a>new</a>\n");
}

void ConfigFileTest::write_leaves_no_other_file()
{
    Fixture fixture(sampleConfig());
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    QCOMPARE(QDir(fixture.directory.path())
                 .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
             QStringList(u"ServerConfig.xml"_s));
}

void ConfigFileTest::write_twice_gives_the_same_bytes_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("sample") << sampleConfig();
    QTest::newRow("attributes") << QByteArray("<a z='1' y='2' x='3'><b c='1' a='2' b='3'/></a>");
    QTest::newRow("mixed content") << QByteArray("<a>t<b/>t<b>t<c/></b><!--c-->t<!--c--><b/>t</a>");
    QTest::newRow("instructions") << QByteArray("<?p?><a>t<?p?>t<?p?><b/><?p?>\n\n t</a><?p?>");
    QTest::newRow("sections") << QByteArray("<a><![CDATA[ ]]>t<![CDATA[]]><b/><![CDATA[x]]>\n</a>");
    QTest::newRow("document type")
        << QByteArray("<!DOCTYPE a PUBLIC \"p'\" 's\"' [<!NOTATION n SYSTEM 'x'>]><a/>");
    QTest::newRow("entities") << QByteArray(
        "<!DOCTYPE a [<!ENTITY e '<b>&#38;amp;</b>'>]><a>&e;&e;</a>");
    QTest::newRow("references") << QByteArray("<a b='&#9;&#10;&#13;&quot;'>&#9;&#10;&#13;&gt;</a>");
    QTest::newRow("spaces") << QByteArray("<a> <b> </b> t <c>\n</c>\t<d>  x  </d></a>");
}

void ConfigFileTest::write_twice_gives_the_same_bytes()
{
    QFETCH(const QByteArray, content);

    Fixture fixture(content);
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    const QByteArray first = fixture.content();
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.content(), first);
    for (int i = 0; i < 3; ++i) {
        ConfigFile again(fixture.path);
        QCOMPARE(again.read(), ReadResult::Parsed);
        QVERIFY(again.write());
        QCOMPARE(fixture.content(), first);
    }
}

void ConfigFileTest::carriage_return_in_a_value_survives()
{
    Fixture fixture("<a>x</a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    setFirstChildText(fixture.file.root(), u"1\r2\n3\t4"_s);
    QVERIFY(fixture.file.write());
    ConfigFile again(fixture.path);
    QCOMPARE(again.read(), ReadResult::Parsed);
    QCOMPARE(again.root().text(), u"1\r2\n3\t4"_s);
}

void ConfigFileTest::read_after_write_gives_the_document_again()
{
    Fixture fixture("<a>old</a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    setFirstChildText(fixture.file.root(), u"new"_s);
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().text(), u"new"_s);
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().text(), u"new"_s);
}

void ConfigFileTest::read_after_write_sees_what_others_wrote()
{
    Fixture fixture("<a>old</a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QVERIFY(fixture.file.write());
    writeFile(fixture.path, "<a>other</a>\n");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().text(), u"other"_s);

    QVERIFY(fixture.file.write());
    writeFile(fixture.path, "<a>");
    QCOMPARE(fixture.file.read(), ReadResult::NotParsed);
    QVERIFY(fixture.file.document().isNull() || fixture.file.root().isNull());
}

void ConfigFileTest::read_after_write_gives_what_the_file_says()
{
    const QByteArray text = "<a>\n<?p?>\nx</a>\n";
    Fixture fixture(text);
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    const QString before = fixture.file.root().text();
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().text(), before);
    const QString longText(10'000, u'&');
    setFirstChildText(appendTextElement(fixture.file.root(), u"b"_s, u"x"_s), longText);
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    QCOMPARE(fixture.file.root().firstChildElement(u"b"_s).firstChild().nodeValue(), longText);
}

void ConfigFileTest::damaged_file_is_emptied_by_a_write()
{
    Fixture fixture("<a><b></a>");
    QCOMPARE(fixture.file.read(), ReadResult::NotParsed);
    QVERIFY(fixture.file.root().isNull());
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.content(), QByteArray(""));
}

void ConfigFileTest::longer_file_is_cut_by_a_shorter_text()
{
    Fixture fixture("<a>" + QByteArray(100'000, 'x') + "</a>");
    QCOMPARE(fixture.file.read(), ReadResult::Parsed);
    setFirstChildText(fixture.file.root(), u"y"_s);
    QVERIFY(fixture.file.write());
    QCOMPARE(fixture.content(), "<a>y</a>\n");
}

void ConfigFileTest::writable_file_is_told_and_left_alone()
{
    const Fixture fixture(sampleConfig());
    const QDateTime before = QFileInfo(fixture.path).lastModified();
    QVERIFY(isConfigFileWritable(fixture.path));
    QCOMPARE(fixture.content(), sampleConfig());
    QCOMPARE(QFileInfo(fixture.path).lastModified(), before);
    QVERIFY(!isConfigFileWritable(fixture.directory.path()));
    QVERIFY(!isConfigFileWritable(fixture.directory.filePath(u"no/such/folder.xml"_s)));
    QVERIFY(!isConfigFileWritable(endlessDevice()));
    QVERIFY(!isConfigFileWritable(QString()));
}

ZANDREL_TEST_MAIN(ConfigFileTest)
#include "configfile_test.moc"
