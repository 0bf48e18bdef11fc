#include "console/windowgeometry.h"

#include <QDomDocument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QDomDocument parsed(const QByteArray& text)
{
    QDomDocument document;
    if (!document.setContent(text)) {
        qFatal("not well-formed: %s", text.constData());
    }
    return document;
}

QByteArray tools(const QByteArray& content)
{
    return "<r><ConfigTools><ZandrelDialog>" + content + "</ZandrelDialog></ConfigTools></r>";
}

} // namespace

class WindowGeometryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void missing_geometry_reads_as_empty_data();
    static void missing_geometry_reads_as_empty();
    static void geometry_is_stored_in_base_64_data();
    static void geometry_is_stored_in_base_64();
    static void what_was_written_reads_back();
};

void WindowGeometryTest::missing_geometry_reads_as_empty_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("nothing") << QByteArray("<r/>");
    QTest::newRow("no ZandrelDialog") << QByteArray("<r><ConfigTools/></r>");
    QTest::newRow("no Geometry") << tools({});
    QTest::newRow("empty Geometry") << tools("<Geometry/>");
    QTest::newRow("no base 64") << tools("<Geometry>{}?!</Geometry>");
    QTest::newRow("not Latin") << tools("<Geometry>журнал</Geometry>");
}

void WindowGeometryTest::missing_geometry_reads_as_empty()
{
    QFETCH(const QByteArray, text);
    const QByteArray geometry = readWindowGeometry(parsed(text).documentElement());
    QVERIFY2(geometry.size() <= 4, geometry.toHex().constData()); // no more than its letters give
    QCOMPARE(readWindowGeometry(QDomElement()), QByteArray());
}

void WindowGeometryTest::geometry_is_stored_in_base_64_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray geometry = "<Geometry>AQIDBA==</Geometry>";
    QTest::newRow("replaces the text") << tools("<Geometry>old</Geometry>") << tools(geometry);
    QTest::newRow("makes the text") << tools("<Geometry/>") << tools(geometry);
    QTest::newRow("makes the element")
        << tools("<Hostname>x</Hostname>") << tools("<Hostname>x</Hostname>" + geometry);
    QTest::newRow("makes all elements") << QByteArray("<r><Other/></r>")
                                        << "<r><Other/><ConfigTools><ZandrelDialog>" + geometry +
                                               "</ZandrelDialog></ConfigTools></r>";
    QTest::newRow("text goes behind what isn't one")
        << tools("<Geometry><b/></Geometry>") << tools("<Geometry><b/>AQIDBA==</Geometry>");
}

void WindowGeometryTest::geometry_is_stored_in_base_64()
{
    QFETCH(const QByteArray, text);
    QFETCH(const QByteArray, expected);

    QDomDocument document = parsed(text);
    writeWindowGeometry(document, QByteArray("\1\2\3\4"));
    QCOMPARE(document.toByteArray(-1), expected);
}

void WindowGeometryTest::what_was_written_reads_back()
{
    QByteArray geometry;
    for (int i = 0; i < 256; ++i) {
        geometry.append(static_cast<char>(i));
        QDomDocument document = parsed("<r/>");
        writeWindowGeometry(document, geometry);
        QCOMPARE(readWindowGeometry(document.documentElement()), geometry);
    }
}

QTEST_GUILESS_MAIN(WindowGeometryTest)
#include "windowgeometry_test.moc"
