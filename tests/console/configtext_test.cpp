#include "console/configtext.h"

#include <QDomDocument>
#include <QHashSeed>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QDomDocument parsed(const QString& text)
{
    QDomDocument document;
    if (!document.setContent(text)) {
        qFatal("not well-formed: %s", qPrintable(text.left(1000)));
    }
    return document;
}

/// The text of a document that was made ready; null when that would take too long.
QString textFormOf(const QString& text)
{
    return stableTextForm(parsed(text)).value_or(QString());
}

QString randomText(QRandomGenerator& random, int length)
{
    static const QStringList pieces = {u"x"_s,    u"&amp;"_s, u"&lt;"_s,  u"]"_s,  u"]"_s,
                                       u"&gt;"_s, u"😀"_s,     u"&#13;"_s, u"\n"_s, u"&quot;"_s};
    QString text;
    for (int i = 0; i < length; ++i) {
        text += pieces[random.bounded(pieces.size())];
    }
    return text;
}

QString elementWith(QStringList names, QRandomGenerator& random)
{
    std::shuffle(names.begin(), names.end(), random);
    QString text = u"<a"_s;
    for (const QString& name : names) {
        text += u" %1=\"v%1\""_s.arg(name);
    }
    return text + u"/>"_s;
}

template <std::size_t size>
QString anyOf(const char16_t* const (&choices)[size], QRandomGenerator& random)
{
    return QString::fromUtf16(choices[random.bounded(static_cast<int>(size))]);
}

QString randomElement(QRandomGenerator& random, int depth);

QString randomContent(QRandomGenerator& random, int depth)
{
    static constexpr const char16_t* comments[] = {u"<!--c-->", u"<!---->", u"<!-- a\n-->"};
    static constexpr const char16_t* instructions[] = {u"<?p?>", u"<?p d?>", u"<?p d e ?>"};
    static constexpr const char16_t* sections[] = {u"<![CDATA[]]>", u"<![CDATA[ \n]]>",
                                                   u"<![CDATA[<a>&]]>", u"<![CDATA[]]]]>"};
    switch (random.bounded(8)) {
    case 0:
        return anyOf(comments, random);
    case 1:
        return anyOf(instructions, random);
    case 2:
        return anyOf(sections, random);
    case 3:
    case 4:
        return randomText(random, random.bounded(6));
    case 5:
        return QString(random.bounded(4), u' ');
    default:
        return randomElement(random, depth + 1);
    }
}

QString randomElement(QRandomGenerator& random, int depth)
{
    static constexpr const char16_t* values[] = {
        u"", u"x", u" ", u"&amp;", u"&quot;'", u"&#9;&#10;&#13;", u"&lt;>]]>", u"\n\t", u"журнал"};
    QString text = u"<e"_s;
    for (const QString& name : {u" b"_s, u" a"_s, u" p:c"_s, u" xmlns"_s, u" ж"_s}) {
        if (random.bounded(3) == 0) {
            text += name + u"=\""_s + anyOf(values, random) + u'"';
        }
    }
    text += u'>';
    for (int count = depth > 5 ? 0 : random.bounded(5); count > 0; --count) {
        text += randomContent(random, depth);
    }
    return text + u"</e>"_s;
}

QString randomDocument(QRandomGenerator& random)
{
    static constexpr const char16_t* beginnings[] = {
        u"",
        u"<?xml version='1.0' encoding='UTF-8'?>",
        u"<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>\n",
        u"<!-- c -->\n<?p d?>",
        u"<!DOCTYPE e>",
        u"<!DOCTYPE e PUBLIC \"p'\" 's\"'>",
        u"<!DOCTYPE e [<!ENTITY i '&#38;amp;<e/>'><!NOTATION n SYSTEM 'x'>]>"};
    static constexpr const char16_t* ends[] = {u"", u"\n\n", u"<!--c-->", u"<?p?>\n<!---->"};
    return anyOf(beginnings, random) + randomElement(random, 0) + anyOf(ends, random);
}

} // namespace

class ConfigTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void empty_document_has_an_empty_text();
    static void plain_document_has_its_own_text();
    static void attributes_come_in_one_order_whatever_theirs_was();
    static void written_attributes_are_a_fixed_point();
    static void written_documents_are_a_fixed_point();
    static void line_break_behind_an_instruction_does_not_grow_data();
    static void line_break_behind_an_instruction_does_not_grow();
    static void long_text_keeps_its_text_form_data();
    static void long_text_keeps_its_text_form();
    static void long_random_texts_keep_their_text_form();
    static void five_million_references_are_written();
    static void attribute_of_many_escapes_is_refused();
    static void document_stays_as_it_was_data();
    static void document_stays_as_it_was();
};

void ConfigTextTest::empty_document_has_an_empty_text()
{
    QCOMPARE(stableTextForm(QDomDocument()), QString());
}

void ConfigTextTest::plain_document_has_its_own_text()
{
    const QString text = u"<a>\n  <b>t</b>\n  <!--c-->\n  <c d=\"1\"/>\n</a>\n"_s;
    QCOMPARE(textFormOf(text), text);
}

void ConfigTextTest::attributes_come_in_one_order_whatever_theirs_was()
{
    QRandomGenerator random(7);
    QStringList names;
    for (int i = 0; i < 40; ++i) {
        names.append(u"n%1"_s.arg(i));
    }
    const QString expected = textFormOf(elementWith(names, random));
    for (int i = 0; i < 100; ++i) {
        QCOMPARE(textFormOf(elementWith(names, random)), expected);
    }
    for (const QString& name : names) {
        QVERIFY(expected.contains(u" %1=\"v%1\""_s.arg(name)));
    }
}

void ConfigTextTest::written_attributes_are_a_fixed_point()
{
    QRandomGenerator random(11);
    for (int i = 0; i < 5000; ++i) {
        QStringList names;
        const int count = random.bounded(i % 50 == 0 ? 300 : 20);
        for (int n = 0; n < count; ++n) {
            names.append(u"%1%2"_s.arg(QChar(u'a' + random.bounded(26))).arg(random.generate()));
        }
        names.removeDuplicates();
        const QString first = textFormOf(elementWith(names, random));
        QCOMPARE(textFormOf(first), first);
    }
}

void ConfigTextTest::written_documents_are_a_fixed_point()
{
    QRandomGenerator random(17);
    int differing = 0;
    for (int i = 0; i < 3000; ++i) {
        const QString document = randomDocument(random);
        const QString first = textFormOf(document);
        QCOMPARE(textFormOf(first), first);
        differing += parsed(first).toString(2) == first ? 0 : 1;
    }
    QVERIFY(differing > 100); // the document's own text form isn't one
}

void ConfigTextTest::line_break_behind_an_instruction_does_not_grow_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("text behind it") << u"<a><?p d?>text</a>"_s;
    QTest::newRow("text behind it, with a line break") << u"<a><?p d?>\n text</a>"_s;
    QTest::newRow("only a line break behind it") << u"<a><?p d?>&#10;</a>"_s;
    QTest::newRow("two of them") << u"<a><?p d?>\n\nx<?p d?>y<b><?p?>z</b></a>"_s;
    QTest::newRow("element behind it") << u"<a><?p d?><b/></a>"_s;
    QTest::newRow("comment behind it") << u"<a><?p d?><!--c-->x</a>"_s;
    QTest::newRow("section behind it") << u"<a><?p d?><![CDATA[\nx]]></a>"_s;
    QTest::newRow("outside the document element") << u"<?p d?><a/><?p d?>"_s;
}

void ConfigTextTest::line_break_behind_an_instruction_does_not_grow()
{
    QFETCH(const QString, text);
    const QString first = textFormOf(text);
    QCOMPARE(textFormOf(first), first);
}

void ConfigTextTest::long_text_keeps_its_text_form_data()
{
    QTest::addColumn<QString>("text");

    const int size = TextForm::pieceSize;
    QTest::newRow("as long as a piece") << QString(size, u'x');
    QTest::newRow("one longer") << QString(size + 1, u'x');
    QTest::newRow("many pieces") << QString(10 * size + 5, u'x');
    QTest::newRow("references") << u"&amp;"_s.repeated(2 * size);
    QTest::newRow("carriage returns") << u"&#13;"_s.repeated(2 * size);
    QTest::newRow("brackets at the cut")
        << QString(size - 1, u'x') + u"]]&gt;"_s + QString(size, u'x');
    QTest::newRow("brackets right behind the cut")
        << QString(size, u'x') + u"]]&gt;"_s + QString(size, u'x');
    QTest::newRow("one bracket on each side")
        << QString(size - 1, u'x') + u"]]&gt;"_s + QString(size, u'x');
    QTest::newRow("only brackets") << QString(3 * size, u']') + u"&gt;"_s;
    QTest::newRow("pair at the cut") << QString(size - 1, u'x') + u"😀"_s + QString(size, u'x');
    QTest::newRow("spaces") << u"x"_s + QString(3 * size, u' ') + u"x"_s;
    QTest::newRow("line breaks") << u"x"_s + QString(3 * size, u'\n') + u"x"_s;
}

void ConfigTextTest::long_text_keeps_its_text_form()
{
    QFETCH(const QString, text);
    for (const QString& frame : {u"<a>%1</a>"_s, u"<a><b/>%1<c/></a>"_s, u"<a><!--c-->%1</a>"_s}) {
        const QString whole = frame.arg(text);
        QCOMPARE(textFormOf(whole), parsed(whole).toString(2));
    }
}

void ConfigTextTest::long_random_texts_keep_their_text_form()
{
    QRandomGenerator random(13);
    for (int i = 0; i < 100; ++i) {
        const QString text = u"<a>"_s + randomText(random, random.bounded(20'000)) + u"</a>"_s;
        QCOMPARE(textFormOf(text), parsed(text).toString(2));
    }
}

void ConfigTextTest::five_million_references_are_written()
{
    // Without the pieces each reference would move all that is behind it: hours.
    const qsizetype count = 5'000'000;
    const QString text = u"<a>"_s + u"&lt;"_s.repeated(count) + u"</a>"_s;
    QCOMPARE(textFormOf(text).size(), text.size() + 1);
}

void ConfigTextTest::attribute_of_many_escapes_is_refused()
{
    const auto attribute = [](int count) {
        return u"<a b=\""_s + u"&amp;"_s.repeated(count) + u"\"/>"_s;
    };
    QCOMPARE(textFormOf(attribute(20'000)), attribute(20'000) + u'\n');
    QVERIFY(textFormOf(attribute(40'000)).isNull());
    // However they are divided among the attributes.
    QString many = u"<r>"_s;
    for (int i = 0; i < 10; ++i) {
        many += attribute(20'000);
    }
    QVERIFY(textFormOf(many + u"</r>"_s).isNull());
    QVERIFY(!textFormOf(u"<a b=\""_s + QString(10'000'000, u'x') + u"\"/>"_s).isNull());
}

void ConfigTextTest::document_stays_as_it_was_data()
{
    QTest::addColumn<QString>("text");

    const QString longText = u"x&amp;"_s.repeated(9000);
    QTest::newRow("instruction and text") << u"<a><?p?>\n\nx<b><?p?>y</b></a>"_s;
    QTest::newRow("long text") << u"<a>"_s + longText + u"</a>"_s;
    QTest::newRow("long texts among others")
        << u"<a><b/>%1<c>%1</c>%1<!--c-->%1</a>"_s.arg(longText);
    QTest::newRow("long text behind an instruction") << u"<a><?p?>\n%1</a>"_s.arg(longText);
    QTest::newRow("attribute that is refused behind a long text")
        << u"<a>%1<b c='%2'/></a>"_s.arg(longText, u"&amp;"_s.repeated(40'000));
}

void ConfigTextTest::document_stays_as_it_was()
{
    QFETCH(const QString, text);
    const QDomDocument document = parsed(text);
    const auto first = stableTextForm(document);
    QCOMPARE(stableTextForm(document), first);

    const QDomDocument untouched = parsed(text);
    QDomNode expected = untouched.documentElement().firstChild();
    for (QDomNode node = document.documentElement().firstChild(); !node.isNull();
         node = node.nextSibling()) {
        QCOMPARE(node.nodeType(), expected.nodeType());
        QCOMPARE(node.nodeValue(), expected.nodeValue());
        expected = expected.nextSibling();
    }
    QVERIFY(expected.isNull());
}

int main(int argc, char** argv)
{
    QHashSeed::setDeterministicGlobalSeed(); // as the program does
    ConfigTextTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "configtext_test.moc"
