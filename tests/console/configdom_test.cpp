#include "console/configdom.h"
#include "console/domwalk.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QDomDocument parsed(const QString& text)
{
    QDomDocument document;
    if (!document.setContent(text)) {
        qFatal("not well-formed: %s", qPrintable(text));
    }
    return document;
}

/// The text of a document on one line.
QString lineOf(const QDomDocument& document)
{
    return document.toString(-1);
}

} // namespace

class ConfigDomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void descend_follows_the_first_match();
    static void descend_is_null_when_a_step_is_missing();
    static void obtain_child_takes_the_first_or_appends_one();
    static void value_goes_into_the_first_child_data();
    static void value_goes_into_the_first_child();
    static void text_goes_into_the_first_text_data();
    static void text_goes_into_the_first_text();
    static void value_that_a_node_cannot_hold_leaves_a_readable_text_data();
    static void value_that_a_node_cannot_hold_leaves_a_readable_text();
    static void null_element_takes_nothing();
    static void appended_text_element_escapes_its_text();
    static void walk_visits_all_elements_in_order_with_their_depth();
    static void walk_ends_when_the_visitor_says_so();
    static void document_is_shallow_up_to_the_limit();
};

void ConfigDomTest::descend_follows_the_first_match()
{
    const QDomDocument document =
        parsed(u"<r><a/><a><b>second a</b></a><c><b>1</b><b>2</b></c></r>"_s);
    const QDomElement root = document.documentElement();
    QCOMPARE(descend(root, {}), root);
    QCOMPARE(descend(root, {u"c"_s, u"b"_s}).text(), u"1"_s);
    // Only the first "a" is looked at, although the second has what is searched.
    QVERIFY(descend(root, {u"a"_s, u"b"_s}).isNull());
}

void ConfigDomTest::descend_is_null_when_a_step_is_missing()
{
    const QDomElement root = parsed(u"<r><a><b/></a></r>"_s).documentElement();
    QVERIFY(descend(root, {u"b"_s}).isNull());
    QVERIFY(descend(root, {u"A"_s}).isNull());
    QVERIFY(descend(root, {u"x"_s, u"a"_s, u"b"_s}).isNull());
    QVERIFY(descend(QDomElement(), {u"a"_s}).isNull());
}

void ConfigDomTest::obtain_child_takes_the_first_or_appends_one()
{
    QDomDocument document = parsed(u"<r>t<a>1</a><a>2</a></r>"_s);
    QCOMPARE(obtainChild(document.documentElement(), u"a"_s).text(), u"1"_s);
    const QDomElement made = obtainChild(document.documentElement(), u"b"_s);
    QVERIFY(!made.isNull());
    QCOMPARE(obtainChild(document.documentElement(), u"b"_s), made);
    QCOMPARE(lineOf(document), u"<r>t<a>1</a><a>2</a><b/></r>"_s);
}

void ConfigDomTest::value_goes_into_the_first_child_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text") << u"old"_s << u"n&lt;w"_s;
    QTest::newRow("text before others") << u"old<b/>tail"_s << u"n&lt;w<b/>tail"_s;
    QTest::newRow("CDATA") << u"<![CDATA[old]]>"_s << u"<![CDATA[n<w]]>"_s;
    QTest::newRow("comment") << u"<!--c-->old"_s << u"<!--n<w-->old"_s;
    QTest::newRow("instruction") << u"<?p d?>"_s << u"<?p n<w?>\n"_s;
    QTest::newRow("no child") << QString() << QString();
    QTest::newRow("element") << u"<b>old</b>"_s << u"<b>old</b>"_s;
}

void ConfigDomTest::value_goes_into_the_first_child()
{
    QFETCH(const QString, content);
    QFETCH(const QString, expected);

    const QDomDocument document = parsed(u"<r>"_s + content + u"</r>"_s);
    setFirstChildValue(document.documentElement(), u"n<w"_s);
    QCOMPARE(lineOf(document), expected.isEmpty() ? u"<r/>"_s : u"<r>"_s + expected + u"</r>"_s);
}

void ConfigDomTest::text_goes_into_the_first_text_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");

    QTest::newRow("text") << u"old"_s << u"n&lt;w"_s;
    QTest::newRow("text before others") << u"old<b/>tail"_s << u"n&lt;w<b/>tail"_s;
    QTest::newRow("CDATA") << u"<![CDATA[old]]>"_s << u"<![CDATA[n<w]]>"_s;
    QTest::newRow("comment") << u"<!--c-->old"_s << u"<!--c-->old"_s;
    QTest::newRow("instruction") << u"<?p d?>"_s << u"<?p d?>\n"_s;
    QTest::newRow("no child") << QString() << QString();
    QTest::newRow("element") << u"<b>old</b>"_s << u"<b>old</b>"_s;
}

void ConfigDomTest::text_goes_into_the_first_text()
{
    QFETCH(const QString, content);
    QFETCH(const QString, expected);

    const QDomDocument document = parsed(u"<r>"_s + content + u"</r>"_s);
    setFirstChildText(document.documentElement(), u"n<w"_s);
    QCOMPARE(lineOf(document), expected.isEmpty() ? u"<r/>"_s : u"<r>"_s + expected + u"</r>"_s);
}

void ConfigDomTest::value_that_a_node_cannot_hold_leaves_a_readable_text_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty text") << u"old"_s << QString() << QString();
    QTest::newRow("empty text before others") << u"old<b/>"_s << QString() << u"<b/>"_s;
    QTest::newRow("empty section") << u"<![CDATA[old]]>"_s << QString() << u"<![CDATA[]]>"_s;
    QTest::newRow("end of CDATA becomes a text")
        << u"<![CDATA[old]]>"_s << u"a]]>b"_s << u"a]]&gt;b"_s;
    QTest::newRow("text") << u"old"_s << u"a]]>b"_s << u"a]]&gt;b"_s;
    QTest::newRow("brackets fit into CDATA")
        << u"<![CDATA[old]]>"_s << u"a]]"_s << u"<![CDATA[a]]]]>"_s;
    QTest::newRow("two dashes in a comment") << u"<!--c-->t"_s << u"a--b"_s << u"<!--c-->t"_s;
    QTest::newRow("dash at the end of a comment") << u"<!--c-->t"_s << u"a-"_s << u"<!--c-->t"_s;
    QTest::newRow("dash in a comment") << u"<!--c-->t"_s << u"a-b"_s << u"<!--a-b-->t"_s;
    QTest::newRow("end of an instruction") << u"<?p d?>"_s << u"a?>b"_s << u"<?p d?>\n"_s;
}

void ConfigDomTest::value_that_a_node_cannot_hold_leaves_a_readable_text()
{
    QFETCH(const QString, content);
    QFETCH(const QString, value);
    QFETCH(const QString, expected);

    const QDomDocument document = parsed(u"<r>"_s + content + u"</r>"_s);
    setFirstChildValue(document.documentElement(), value);
    QCOMPARE(lineOf(document), expected.isEmpty() ? u"<r/>"_s : u"<r>"_s + expected + u"</r>"_s);
    parsed(lineOf(document));
}

void ConfigDomTest::null_element_takes_nothing()
{
    setFirstChildValue(QDomElement(), u"x"_s);
    setFirstChildText(QDomElement(), u"x"_s);
    QVERIFY(obtainChild(QDomElement(), u"x"_s).isNull());
    QVERIFY(isShallow(QDomDocument(), 0));
}

void ConfigDomTest::appended_text_element_escapes_its_text()
{
    const QDomDocument document = parsed(u"<r><a/></r>"_s);
    const QDomElement made = appendTextElement(document.documentElement(), u"b"_s, u"<&>"_s);
    QCOMPARE(made.text(), u"<&>"_s);
    QCOMPARE(lineOf(document), u"<r><a/><b>&lt;&amp;></b></r>"_s);
}

void ConfigDomTest::walk_visits_all_elements_in_order_with_their_depth()
{
    const QDomDocument document =
        parsed(u"<!--x--><a>t<b><c/><!--y--><d><e/></d></b><f/>t<g><h/></g></a>"_s);
    QString visited;
    QVERIFY(visitElements(document, [&visited](const QDomElement& element, int depth) {
        visited += element.tagName() + QString::number(depth);
        return true;
    }));
    QCOMPARE(visited, u"a1b2c3d3e4f2g2h3"_s);
}

void ConfigDomTest::walk_ends_when_the_visitor_says_so()
{
    QString visited;
    QVERIFY(!visitElements(parsed(u"<a><b/><c/></a>"_s), [&](const QDomElement& element, int) {
        visited += element.tagName();
        return element.tagName() != u"b"_s;
    }));
    QCOMPARE(visited, u"ab"_s);
    QVERIFY(visitElements(QDomDocument(), [](const QDomElement&, int) { return false; }));
}

void ConfigDomTest::document_is_shallow_up_to_the_limit()
{
    const QDomDocument document = parsed(u"<a><b><c/></b><b/></a>"_s);
    QVERIFY(isShallow(document, 3));
    QVERIFY(!isShallow(document, 2));
    const QString entity = u"<!DOCTYPE a [<!ENTITY e '<b><c/></b>'>]><a><a>&e;</a></a>"_s;
    QVERIFY(isShallow(parsed(entity), 4));
    QVERIFY(!isShallow(parsed(entity), 3));
}

QTEST_GUILESS_MAIN(ConfigDomTest)
#include "configdom_test.moc"
