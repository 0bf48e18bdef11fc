#include "console/configguard.h"

#include <QTest>

#include <array>

using namespace Qt::StringLiterals;

namespace {

QString nested(int levels, const QString& tag = u"<a>"_s)
{
    return tag.repeated(levels) + u"</a>"_s.repeated(levels);
}

QString withAttributes(int count, QChar quote = u'"')
{
    QString text = u"<a"_s;
    for (int i = 0; i < count; ++i) {
        text += u" b%1=%2x%2"_s.arg(i).arg(quote);
    }
    return text + u"/>"_s;
}

bool isWithin(const QString& text)
{
    return measureMarkup(text).isWithinLimits();
}

/// The rule for a text, one character after the other.
bool isXmlTextByCharacter(const QString& text)
{
    const auto characters = text.toUcs4();
    return std::all_of(characters.begin(), characters.end(),
                       [](uint c) {
                           return c == 9 || c == 10 || c == 13 || (c >= 0x20 && c < 0xD800) ||
                                  (c > 0xDFFF && c < 0xFFFE) || c > 0xFFFF;
                       }) &&
           QString::fromUcs4(reinterpret_cast<const char32_t*>(characters.constData()),
                             characters.size()) == text;
}

} // namespace

class ConfigGuardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void depth_is_limited_data();
    static void depth_is_limited();
    static void attributes_are_limited_data();
    static void attributes_are_limited();
    static void hidden_markup_does_not_count_data();
    static void hidden_markup_does_not_count();
    static void deep_text_behind_a_trick_is_seen_data();
    static void deep_text_behind_a_trick_is_seen();
    static void text_that_ends_early_is_passed_data();
    static void text_that_ends_early_is_passed();
    static void nodes_are_limited();
    static void attributes_weigh_more_than_elements();
    static void indent_is_limited();
    static void entity_references_are_limited();
    static void declarations_that_grow_a_text_are_refused_data();
    static void declarations_that_grow_a_text_are_refused();
    static void extent_tells_what_a_save_must_prepare();
    static void instructions_have_plain_names_data();
    void instructions_have_plain_names();
    static void xml_text_takes_what_xml_allows_data();
    static void xml_text_takes_what_xml_allows();
    static void xml_text_is_seen_at_every_place();
};

void ConfigGuardTest::depth_is_limited_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isWithin");

    QTest::newRow("empty") << QString() << 0 << true;
    QTest::newRow("no markup") << u"plain > text"_s << 0 << true;
    QTest::newRow("one") << u"<a/>"_s << 1 << true;
    QTest::newRow("500 levels") << nested(500) << 500 << true;
    QTest::newRow("501 levels") << nested(501) << 501 << false;
    QTest::newRow("empty element at level 500")
        << u"<a>"_s.repeated(499) + u"<b/>"_s + u"</a>"_s.repeated(499) << 500 << true;
    QTest::newRow("empty element at level 501")
        << u"<a>"_s.repeated(500) + u"<b/>"_s + u"</a>"_s.repeated(500) << 501 << false;
    QTest::newRow("side by side") << u"<a>"_s + nested(499).repeated(3) + u"</a>"_s << 500 << true;
    QTest::newRow("not closed") << u"<a>"_s.repeated(501) << 501 << false;
    QTest::newRow("spaces in the tags")
        << u"<a \n>"_s.repeated(501) + u"</a >"_s.repeated(501) << 501 << false;
}

void ConfigGuardTest::depth_is_limited()
{
    QFETCH(const QString, text);
    QFETCH(const int, depth);
    QFETCH(const bool, isWithin);

    const MarkupExtent extent = measureMarkup(text);
    QCOMPARE(extent.depth, depth);
    QCOMPARE(extent.isWithinLimits(), isWithin);
}

void ConfigGuardTest::attributes_are_limited_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("attributes");
    QTest::addColumn<bool>("isWithin");

    QTest::newRow("none") << u"<a/>"_s << qint64(0) << true;
    QTest::newRow("1000") << withAttributes(1000) << qint64(1000) << true;
    QTest::newRow("1001") << withAttributes(1001) << qint64(1001) << false;
    QTest::newRow("1001 in apostrophes") << withAttributes(1001, u'\'') << qint64(1001) << false;
    QTest::newRow("a thousand on each of two")
        << u"<r>"_s + withAttributes(1000).repeated(2) + u"</r>"_s << qint64(1000) << true;
    QTest::newRow("quotes in the values") << u"<a b=\"'''\" c='\"\"'/>"_s << qint64(2) << true;
    QTest::newRow("angle brackets in the values")
        << u"<a b='/>' c='<d e=\"\">'/>"_s << qint64(2) << true;
    QTest::newRow("100,000") << withAttributes(100'000) << qint64(100'000) << false;
}

void ConfigGuardTest::attributes_are_limited()
{
    QFETCH(const QString, text);
    QFETCH(const qint64, attributes);
    QFETCH(const bool, isWithin);

    const MarkupExtent extent = measureMarkup(text);
    QCOMPARE(extent.attributes, attributes);
    QCOMPARE(extent.isWithinLimits(), isWithin);
}

void ConfigGuardTest::hidden_markup_does_not_count_data()
{
    QTest::addColumn<QString>("text");

    const QString deep = u"<a>"_s.repeated(600);
    const QString quotes = u"'\"\""_s;
    QTest::newRow("comment") << u"<r><!-- "_s + quotes + deep + u" --></r>"_s;
    QTest::newRow("comment that looks closed at once") << u"<r><!-->"_s + deep + u"--></r>"_s;
    QTest::newRow("comment that looks closed at once, with a dash")
        << u"<r><!--->"_s + deep + u"--></r>"_s;
    QTest::newRow("CDATA") << u"<r><![CDATA["_s + quotes + deep + u"]]></r>"_s;
    QTest::newRow("CDATA with brackets") << u"<r><![CDATA[]]"_s + deep + u"]]]></r>"_s;
    QTest::newRow("instruction") << u"<r><?p "_s + quotes + deep + u"?></r>"_s;
    QTest::newRow("attribute value") << u"<r b='"_s + deep + u"'/>"_s;
    QTest::newRow("declaration in front") << u"<?xml version=\"1.0\"?><r/>"_s;
    QTest::newRow("document type's identifier")
        << u"<!DOCTYPE r SYSTEM \""_s + deep + u"]>\"><r/>"_s;
    QTest::newRow("document type's entity")
        << u"<!DOCTYPE r [<!ENTITY e '"_s + deep + u"]>'>]><r/>"_s;
    QTest::newRow("document type's comment")
        << u"<!DOCTYPE r [<!-- ' ]> % <!ATTLIST "_s + deep + u"-->]><r/>"_s;
    QTest::newRow("document type's instruction")
        << u"<!DOCTYPE r [<?p ' ]> % <!ATTLIST "_s + deep + u"?>]><r/>"_s;
    QTest::newRow("percent sign in a quoted text") << u"<!DOCTYPE r [<!ENTITY e '100 %'>]><r/>"_s;
}

void ConfigGuardTest::hidden_markup_does_not_count()
{
    QFETCH(const QString, text);

    const MarkupExtent extent = measureMarkup(text);
    QCOMPARE(extent.depth, 1);
    QVERIFY(extent.attributes <= 1);
    QVERIFY(extent.isWithinLimits());
}

void ConfigGuardTest::deep_text_behind_a_trick_is_seen_data()
{
    QTest::addColumn<QString>("text");

    const QString deep = nested(501);
    QTest::newRow("behind a comment") << u"<!-- <!-- -->"_s + deep;
    QTest::newRow("behind an empty comment") << u"<!---->"_s + deep;
    QTest::newRow("between comments") << u"<r><!-- ' -->"_s + deep + u"<!-- ' --></r>"_s;
    QTest::newRow("behind CDATA") << u"<r><![CDATA[<!-- ]]>"_s + deep + u"</r>"_s;
    QTest::newRow("behind an instruction") << u"<?p <!-- ' ?>"_s + deep;
    QTest::newRow("behind a quote in the text") << u"<r>' \" "_s + deep + u"</r>"_s;
    QTest::newRow("behind a quote in a value") << u"<r b=\"'\" c='\"'>"_s + deep + u"</r>"_s;
    QTest::newRow("behind closed brackets in a value") << u"<r b='/>'>"_s + deep + u"</r>"_s;
    QTest::newRow("values that look like ends") << nested(501, u"<a b='/>' c=\"</a>\">"_s);
    QTest::newRow("slash at the end of a value") << nested(501, u"<a b='/'>"_s);
    QTest::newRow("behind a document type") << u"<!DOCTYPE r>"_s + deep;
    QTest::newRow("behind a document type with brackets in quotes")
        << u"<!DOCTYPE r [<!ENTITY e \"[\">]>"_s + deep;
    QTest::newRow("behind a document type with an apostrophe in a comment")
        << u"<!DOCTYPE r [<!-- ' -->]>"_s + deep;
    QTest::newRow("behind a document type with a comment that looks closed")
        << u"<!DOCTYPE r [<!-->]> -->]>"_s + deep;
    QTest::newRow("behind a document type with an instruction")
        << u"<!DOCTYPE r [<?p <!-- ?>]>"_s + deep;
}

void ConfigGuardTest::deep_text_behind_a_trick_is_seen()
{
    QFETCH(const QString, text);
    QVERIFY(!isWithin(text));
}

void ConfigGuardTest::text_that_ends_early_is_passed_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text : {"<",
                             "<!",
                             "<!-",
                             "<!--",
                             "<!---",
                             "<!-->",
                             "<![CDATA[",
                             "<![CDATA[]]",
                             "<?",
                             "<?x",
                             "<?>",
                             "</",
                             "<a",
                             "<a ",
                             "<a b=",
                             "<a b=\"",
                             "<a b=\"x",
                             "<a b='x'",
                             "<a/",
                             "<!DOCTYPE",
                             "<!DOCTYPE a [",
                             "<!DOCTYPE a [<",
                             "<!DOCTYPE a [<!--",
                             "<!DOCTYPE a [<?",
                             "<!DOCTYPE a [<!ENTITY",
                             "<!DOCTYPE a '",
                             "<!DOCTYPE a [']'",
                             "<a>\"",
                             "</></></>"}) {
        QTest::newRow(text) << QString::fromLatin1(text);
    }
}

void ConfigGuardTest::text_that_ends_early_is_passed()
{
    QFETCH(const QString, text);
    // Exactly as long as its characters, so that the sanitizer sees a step beyond the end.
    const std::vector<char16_t> exact(text.utf16(), text.utf16() + text.size());
    QVERIFY(measureMarkup(QStringView(exact.data(), text.size())).isWithinLimits());
}

void ConfigGuardTest::nodes_are_limited()
{
    const auto limit = static_cast<qsizetype>(ConfigLimits::maxNodes);
    QVERIFY(isWithin(u"<a/>"_s.repeated(limit)));
    QVERIFY(!isWithin(u"<a/>"_s.repeated(limit + 1)));
    QVERIFY(!isWithin(u"<!---->"_s.repeated(limit + 1)));
    QVERIFY(!isWithin(u"<?p?>"_s.repeated(limit + 1)));
    QVERIFY(!isWithin(u"<![CDATA[]]>"_s.repeated(limit + 1)));
    QVERIFY(isWithin(u"&amp;"_s.repeated(limit + 1)));
    QVERIFY(isWithin(u"</a>"_s.repeated(limit + 1))); // the parser refuses it at the first
}

void ConfigGuardTest::attributes_weigh_more_than_elements()
{
    QCOMPARE(measureMarkup(u"<a/>").nodes, 1);
    QCOMPARE(measureMarkup(u"<a b=''/>").nodes, 8);
    QCOMPARE(measureMarkup(u"<a b='' c=''/>").nodes, 10);
    QCOMPARE(measureMarkup(withAttributes(1000)).nodes, 1 + 5 + 2000 + 20'000);
    QVERIFY(isWithin(withAttributes(1000).repeated(90)));
    QVERIFY(!isWithin(withAttributes(1000).repeated(91)));
    const qsizetype limit = ConfigLimits::maxNodes / 8;
    QVERIFY(isWithin(u"<a b=''/>"_s.repeated(limit)));
    QVERIFY(!isWithin(u"<a b=''/>"_s.repeated(limit + 1)));
}

void ConfigGuardTest::indent_is_limited()
{
    const QString deep = nested(499);
    QCOMPARE(measureMarkup(u"<a><b/></a>").indent, 2 + 2);
    QVERIFY(isWithin(u"<a>"_s + deep.repeated(260) + u"</a>"_s));
    QVERIFY(!isWithin(u"<a>"_s + deep.repeated(280) + u"</a>"_s));
}

void ConfigGuardTest::entity_references_are_limited()
{
    const auto text = [](const QString& declaration, int references) {
        return u"<!DOCTYPE a ["_s + declaration + u"]><a>"_s + u"&e;"_s.repeated(references) +
               u"</a>"_s;
    };
    const QString entity = u"<!ENTITY e 'x'>"_s;
    QVERIFY(isWithin(text(entity, 256)));
    QVERIFY(!isWithin(text(entity, 257)));
    QVERIFY(isWithin(text(QString(), 257)));
    QVERIFY(isWithin(text(u"<!-- <!ENTITY e 'x'> -->"_s, 257)));
}

void ConfigGuardTest::declarations_that_grow_a_text_are_refused_data()
{
    QTest::addColumn<QString>("subset");

    QTest::newRow("attribute list") << u"<!ATTLIST a b CDATA 'x'>"_s;
    QTest::newRow("attribute list behind a comment") << u"<!-- x --><!ATTLIST a b CDATA 'x'>"_s;
    QTest::newRow("parameter entity") << u"<!ENTITY % p '&#60;!ATTLIST a b CDATA \"x\">'>%p;"_s;
    QTest::newRow("parameter reference") << u"%p;"_s;
}

void ConfigGuardTest::declarations_that_grow_a_text_are_refused()
{
    QFETCH(const QString, subset);
    QVERIFY(!isWithin(u"<!DOCTYPE a ["_s + subset + u"]><a/>"_s));
    QVERIFY(isWithin(u"<!DOCTYPE a [<?p "_s + subset + u"?>]><a/>"_s));
    QVERIFY(isWithin(u"<a><![CDATA["_s + subset + u"]]></a>"_s));
}

void ConfigGuardTest::extent_tells_what_a_save_must_prepare()
{
    QVERIFY(!measureMarkup(u"<?xml version='1.0'?><a/>").hasInstructions);
    QVERIFY(measureMarkup(u"<a><?p?></a>").hasInstructions);
    QVERIFY(!measureMarkup(u"<!DOCTYPE a><a/>").declaresEntities);
    QVERIFY(measureMarkup(u"<!DOCTYPE a [<!ENTITY e ''>]><a/>").declaresEntities);
    const QString longText(5000, u'x');
    for (const QString& text : {u"<a>%1</a>"_s, u"<a><b/>%1<b/></a>"_s, u"<a b='%1'/>"_s,
                                u"<a><![CDATA[%1]]></a>"_s, u"<a/>%1"_s}) {
        QVERIFY2(measureMarkup(text.arg(longText)).longestText >= 5000, qPrintable(text));
        QVERIFY2(measureMarkup(text.arg(u"x"_s)).longestText < 30, qPrintable(text));
    }
}

void ConfigGuardTest::instructions_have_plain_names_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isWithin");
    QTest::newRow("plain") << u"<a><?pi-1.x:_y data?></a>"_s << true;
    QTest::newRow("without content") << u"<a><?pi?></a>"_s << true;
    QTest::newRow("line break") << u"<a><?pi\nx?></a>"_s << true;
    QTest::newRow("declaration") << u"<?xml version=\"1.0\"?><a/>"_s << true;
    QTest::newRow("cut off") << u"<a><?"_s << true;
    QTest::newRow("replacement character") << u"<a><?pi\uFFFD?></a>"_s << false;
    QTest::newRow("digit first") << u"<a><?1pi?></a>"_s << false;
    QTest::newRow("no name") << u"<a><? x?></a>"_s << true;
    QTest::newRow("wide blank") << u"<a><?pi\u00A0?></a>"_s << false;
    QTest::newRow("letter beyond ASCII") << u"<a><?pi\u00E4?></a>"_s << false;
}

void ConfigGuardTest::instructions_have_plain_names()
{
    QFETCH(const QString, text);
    QFETCH(const bool, isWithin);
    QCOMPARE(measureMarkup(text).isWithinLimits(), isWithin);
}

void ConfigGuardTest::xml_text_takes_what_xml_allows_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");

    QTest::newRow("empty") << QString() << true;
    QTest::newRow("tab, line feed, carriage return") << u"\t\n\r"_s << true;
    QTest::newRow("null") << QString(QChar(0)) << false;
    QTest::newRow("bell") << QString(QChar(7)) << false;
    QTest::newRow("last control") << QString(QChar(0x1F)) << false;
    QTest::newRow("space") << u" "_s << true;
    QTest::newRow("delete") << QString(QChar(0x7F)) << true;
    QTest::newRow("C1 control") << QString(QChar(0x85)) << true;
    QTest::newRow("last before the surrogates") << QString(QChar(0xD7FF)) << true;
    QTest::newRow("pair") << QString::fromUcs4(U"\U0001F600") << true;
    QTest::newRow("last character") << QString::fromUcs4(U"\U0010FFFF") << true;
    QTest::newRow("high surrogate alone") << QString(QChar(0xD83D)) << false;
    QTest::newRow("low surrogate alone") << QString(QChar(0xDE00)) << false;
    QTest::newRow("swapped pair") << QString(QChar(0xDE00)) + QChar(0xD83D) << false;
    QTest::newRow("two high surrogates") << QString(2, QChar(0xD83D)) << false;
    QTest::newRow("first after the surrogates") << QString(QChar(0xE000)) << true;
    QTest::newRow("replacement character") << QString(QChar(0xFFFD)) << true;
    QTest::newRow("FFFE") << QString(QChar(0xFFFE)) << false;
    QTest::newRow("FFFF") << QString(QChar(0xFFFF)) << false;
}

void ConfigGuardTest::xml_text_takes_what_xml_allows()
{
    QFETCH(const QString, text);
    QFETCH(const bool, expected);
    QCOMPARE(isXmlText(text), expected);
    QCOMPARE(isXmlTextByCharacter(text), expected);
}

void ConfigGuardTest::xml_text_is_seen_at_every_place()
{
    // The check takes blocks; no place in or between them may make a difference.
    const std::array<QString, 6> pieces = {QString(QChar(0)),
                                           QString(QChar(0xD83D)),
                                           QString(QChar(0xDE00)),
                                           QString(QChar(0xFFFF)),
                                           u"😀"_s,
                                           u"\r"_s};
    for (const QString& piece : pieces) {
        const bool expected = isXmlTextByCharacter(piece);
        for (int length = 0; length < 200; ++length) {
            for (const int behind : {0, 1, 64, 130}) {
                const QString text = QString(length, u'x') + piece + QString(behind, u'\n');
                QVERIFY2(isXmlText(text) == expected,
                         qPrintable(u"%1 at %2"_s.arg(piece[0].unicode(), 0, 16).arg(length)));
            }
        }
    }
}

QTEST_GUILESS_MAIN(ConfigGuardTest)
#include "configguard_test.moc"
