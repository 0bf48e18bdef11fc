#include "certificates/veskcrlmodel.h"
#include "tests/certificates/testcertificate.h"
#include "tests/pki/fixedclock.h"
#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QPainter>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr OpcUa_Int64 second = 10000000;

UaPkiRevocationList make(const TestRevocationList& list)
{
    const QByteArray der = list.der();
    return UaPkiRevocationList::fromDER(
        UaByteArray(der.constData(), static_cast<OpcUa_Int32>(der.size())));
}

QVariant display(const VeskCRLModel& model, int column)
{
    return model.data(model.index(0, column), Qt::DisplayRole);
}

QImage decoration(const VeskCRLModel& model)
{
    return model.data(model.index(0, 0), Qt::DecorationRole)
        .value<QIcon>()
        .pixmap(64, 64)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage overlaid(const QString& overlay)
{
    QImage picture = QIcon(u":/veskwidgets/images/on.png"_s)
                         .pixmap(64, 64)
                         .toImage()
                         .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (!overlay.isEmpty()) {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(picture.rect(), QImage(overlay));
    }
    return picture;
}

} // namespace

class VeskCRLModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headers_name_the_columns()
    {
        const VeskCRLModel model(1);
        QCOMPARE(model.kind(), 1);
        QCOMPARE(model.columnCount(), 9);
        QCOMPARE(model.rowCount(), 0);
        const QStringList expected = {u"Number"_s,       u"Valid From"_s,       u"Next Update"_s,
                                      u"Organization"_s, u"OrganizationUnit"_s, u"Locality"_s,
                                      u"State"_s,        u"Country"_s,          u"Filename"_s};
        for (int column = 0; column < 9; ++column) {
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                     expected[column]);
            QVERIFY(!model.headerData(column, Qt::Vertical, Qt::DisplayRole).isValid());
        }
        QVERIFY(!model.headerData(9, Qt::Horizontal, Qt::DisplayRole).isValid());
    }

    void columns_show_the_fields()
    {
        const UaPkiRevocationList crl = make({});
        VeskCRLModel model(0);
        model.addCRL(crl, u"/pki/crl/ä b.crl"_s);
        QCOMPARE(display(model, 0), QVariant(7));
        QCOMPARE(display(model, 1).toDateTime().toSecsSinceEpoch(), crl.thisUpdate().toTime_t());
        QCOMPARE(display(model, 2).toDateTime().toSecsSinceEpoch(), crl.nextUpdate().toTime_t());
        QCOMPARE(display(model, 2).toDateTime().timeSpec(), Qt::LocalTime);
        QCOMPARE(display(model, 3), QVariant(u"Organization"_s));
        QCOMPARE(display(model, 4), QVariant(u"Unit"_s));
        QCOMPARE(display(model, 5), QVariant(u"Locality"_s));
        QCOMPARE(display(model, 6), QVariant(u"Province"_s));
        QCOMPARE(display(model, 7), QVariant(u"DE"_s));
        QCOMPARE(display(model, 8), QVariant(u"/pki/crl/ä b.crl"_s));
    }

    void list_without_a_number_shows_minus_one()
    {
        TestRevocationList source;
        source.number.reset();
        VeskCRLModel model(0);
        model.addCRL(make(source), u"/a.crl"_s);
        QCOMPARE(display(model, 0), QVariant(-1));
    }

    void state_shows_as_overlay_and_tooltip_data()
    {
        QTest::addColumn<qint64>("from");
        QTest::addColumn<qint64>("nextUpdate"); // 0 for none
        QTest::addColumn<QString>("overlay");
        QTest::addColumn<QString>("toolTip");

        const QString error = u":/veskwidgets/images/overlay_error.png"_s;
        const QString warning = u":/veskwidgets/images/overlay_warning.png"_s;
        QTest::newRow("healthy") << -Day << 16 * Day << QString() << QString();
        QTest::newRow("exactly 15 days left") << -Day << 15 * Day << QString() << QString();
        QTest::newRow("14 days 23 hours left")
            << -Day << 15 * Day - 3600 << warning << u"The CRL will expire soon"_s;
        QTest::newRow("not yet valid") << Day << 30 * Day << error << u"The CRL is not yet valid"_s;
        QTest::newRow("next update was yesterday")
            << -30 * Day << -Day << error << u"The CRL has expired"_s;
        QTest::newRow("without a next update")
            << -Day << qint64(0) << warning << u"The CRL will expire soon"_s;
    }

    void state_shows_as_overlay_and_tooltip()
    {
        QFETCH(const qint64, from);
        QFETCH(const qint64, nextUpdate);
        QFETCH(const QString, overlay);
        QFETCH(const QString, toolTip);
        TestRevocationList source;
        source.from = from;
        source.nextUpdate = nextUpdate == 0 ? std::nullopt : std::optional(nextUpdate);
        const UaPkiRevocationList crl = make(source);
        // The moment in which the list was made, to the second.
        const FixedClock clock(UaDateTime(OpcUa_Int64(crl.thisUpdate().toInt64() - from * second)));
        VeskCRLModel model(0);
        model.addCRL(crl, u"/a.crl"_s);

        QCOMPARE(decoration(model), overlaid(overlay));
        for (int column = 0; column < 9; ++column) {
            const QVariant shown = model.data(model.index(0, column), Qt::ToolTipRole);
            QCOMPARE(shown.isValid(), !toolTip.isEmpty());
            QCOMPARE(shown.toString(), toolTip);
            QCOMPARE(model.data(model.index(0, column), Qt::DecorationRole).isValid(), column == 0);
        }
    }

    void nothing_else_is_answered()
    {
        const UaPkiRevocationList crl = make({});
        const UaByteArray der = crl.toDER();
        VeskCRLModel model(0);
        model.addCRL(crl, u"/a.crl"_s);
        QCOMPARE(model.data(model.index(0, 4), Qt::UserRole).toByteArray(),
                 QByteArray(reinterpret_cast<const char*>(der.data()), der.size()));
        for (int role = 0; role < 300; ++role) {
            QVERIFY(!model.data(QModelIndex(), role).isValid());
            const bool isAnswered = role == 0 || role == 1 || role == 256;
            QCOMPARE(model.data(model.index(0, 0), role).isValid(), isAnswered);
        }
    }

    void rows_come_and_go_with_signals()
    {
        VeskCRLModel model(0);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        model.clear();
        model.addCRL(make({}), u"/a.crl"_s);
        model.addCRLs({{make({}), u"/b.crl"_s}, {make({}), u"/c.crl"_s}});
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(inserted[1].mid(1), QVariantList({1, 2}));
        QCOMPARE(model.flags(model.index(2, 8)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        model.clear();
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed[0].mid(1), QVariantList({0, 2}));
    }
};

ZANDREL_TEST_MAIN(VeskCRLModelTest)

#include "veskcrlmodel_test.moc"
