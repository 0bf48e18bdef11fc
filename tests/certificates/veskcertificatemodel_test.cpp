#include "certificates/veskcertificatemodel.h"
#include "tests/certificates/testcertificate.h"
#include "tests/pki/fixedclock.h"
#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>
#include <QCryptographicHash>
#include <QPainter>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using Model = VeskCertificateModel;

constexpr OpcUa_Int64 second = 10000000;

UaPkiCertificate read(const QByteArray& der)
{
    return UaPkiCertificate::fromDER(
        UaByteArray(der.constData(), static_cast<OpcUa_Int32>(der.size())));
}

UaPkiCertificate make(const TestCertificate& certificate)
{
    return read(certificate.der());
}

QIcon ownIcon()
{
    return QIcon(u":/images/ua_64x64.png"_s);
}

QVariant display(const Model& model, int column, int row = 0)
{
    return model.data(model.index(row, column), Qt::DisplayRole);
}

QImage decoration(const Model& model, int row = 0)
{
    return model.data(model.index(row, 0), Qt::DecorationRole)
        .value<QIcon>()
        .pixmap(64, 64)
        .toImage()
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// A picture with an overlay over all of it, as the list should show it.
QImage overlaid(const QString& base, const QString& overlay)
{
    QImage picture =
        QIcon(base).pixmap(64, 64).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (!overlay.isEmpty()) {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(picture.rect(), QImage(overlay));
    }
    return picture;
}

const QString on = u":/veskwidgets/images/on.png"_s;
const QString clearlog = u":/veskwidgets/images/clearlog.png"_s;
const QString own = u":/images/ua_64x64.png"_s;
const QString warning = u":/veskwidgets/images/overlay_warning.png"_s;
const QString error = u":/veskwidgets/images/overlay_error.png"_s;

} // namespace

class VeskCertificateModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void empty_model_has_columns_and_no_rows()
    {
        Model model(ownIcon(), Model::TrustList);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), 13);
        QVERIFY(model.hasChildren());
        QVERIFY(!model.index(0, 0).isValid());
        QSignalSpy removed(&model, &QAbstractItemModel::rowsAboutToBeRemoved);
        model.clear();
        QCOMPARE(removed.count(), 0);
    }

    void headers_name_the_columns()
    {
        const Model model(ownIcon(), Model::Issuers);
        const QStringList expected = {
            u"Status"_s,           u"Name"_s,     u"Valid From"_s, u"Valid To"_s, u"Organization"_s,
            u"OrganizationUnit"_s, u"Locality"_s, u"State"_s,      u"Country"_s,  u"AppURI"_s,
            u"DomainName"_s,       u"IP"_s,       u"Filename"_s};
        for (int column = 0; column < expected.size(); ++column) {
            QCOMPARE(model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(),
                     expected[column]);
            QVERIFY(!model.headerData(column, Qt::Vertical, Qt::DisplayRole).isValid());
            QVERIFY(!model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).isValid());
        }
        QVERIFY(!model.headerData(13, Qt::Horizontal, Qt::DisplayRole).isValid());
        QVERIFY(!model.headerData(-1, Qt::Horizontal, Qt::DisplayRole).isValid());
    }

    void columns_show_the_fields()
    {
        TestCertificate source;
        source.name = u"Größe 🔑"_s;
        source.uri = u"urn:host:app"_s;
        source.dnsNames = {u"a"_s, u"b"_s, u"c"_s};
        source.ipAddresses = {u"192.168.0.1"_s, u"::1"_s};
        const UaPkiCertificate certificate = make(source);
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(certificate, u"/pki/trusted/ä b.der"_s, Model::Trusted);

        QCOMPARE(display(model, 0), QVariant(u"Trusted"_s));
        QCOMPARE(display(model, 1), QVariant(u"Größe 🔑"_s));
        QCOMPARE(display(model, 4), QVariant(u"Organization"_s)); // the issuer's, unlike the name
        QCOMPARE(display(model, 5), QVariant(u"Unit"_s));
        QCOMPARE(display(model, 6), QVariant(u"Locality"_s));
        QCOMPARE(display(model, 7), QVariant(u"Province"_s));
        QCOMPARE(display(model, 8), QVariant(u"DE"_s));
        QCOMPARE(display(model, 9), QVariant(u"urn:host:app"_s));
        QCOMPARE(display(model, 10), QVariant(u"a, b, c"_s));
        QCOMPARE(display(model, 11),
                 QVariant(u"192.168.0.1, 0000:0000:0000:0000:0000:0000:0000:0001"_s));
        QCOMPARE(display(model, 12), QVariant(u"/pki/trusted/ä b.der"_s));

        const auto shown = [&](int column) { return display(model, column).toDateTime(); };
        QCOMPARE(shown(2).toSecsSinceEpoch(), certificate.validFrom().toTime_t());
        QCOMPARE(shown(3).toSecsSinceEpoch(), certificate.validTo().toTime_t());
        QCOMPARE(shown(2).timeSpec(), Qt::LocalTime);
    }

    void certificate_without_alternative_names_shows_empty_texts()
    {
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(make({}), u"/a.der"_s, Model::Trusted);
        for (const int column : {9, 10, 11}) {
            QCOMPARE(display(model, column), QVariant(QString()));
        }
    }

    void text_from_a_certificate_is_given_whole()
    {
        TestCertificate source;
        source.name = u"<b>x</b>\n\u202e"_s + QString(5000, u'x');
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(make(source), u"/a.der"_s, Model::Trusted);
        QCOMPARE(display(model, 1), QVariant(source.name));
    }

    void status_text_follows_the_kind_first_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("trust list")
            << 0 << QStringList{u"Untrusted"_s, u"Trusted"_s, u"Own Certificate"_s};
        QTest::newRow("issuers") << 1
                                 << QStringList{u"Known Issuer"_s, u"Known Issuer"_s,
                                                u"Known Issuer"_s};
        QTest::newRow("TLS issuers") << 2 << QStringList{u"Trusted"_s, u"Trusted"_s, u"Trusted"_s};
    }

    void status_text_follows_the_kind_first()
    {
        QFETCH(const int, kind);
        QFETCH(const QStringList, texts);
        Model model(ownIcon(), kind);
        QCOMPARE(model.kind(), kind);
        for (const int status : {0, 1, 2}) {
            model.addCertificate(make({}), u"/a.der"_s, status);
            QCOMPARE(display(model, 0, status).toString(), texts[status]);
            QCOMPARE(model.data(model.index(status, 5), Qt::UserRole), QVariant(status));
        }
    }

    void state_shows_as_overlay_and_tooltip_data()
    {
        QTest::addColumn<qint64>("now"); // seconds from the end of 100 days
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("base");
        QTest::addColumn<QString>("overlay");
        QTest::addColumn<QString>("toolTip");

        const QString none;
        const QString early = u"The certificate is not yet valid"_s;
        const QString soon = u"The certificate will expire soon"_s;
        const QString late = u"The certificate has expired"_s;
        QTest::newRow("healthy trusted") << -50 * Day << 1 << on << none << none;
        QTest::newRow("healthy rejected") << -50 * Day << 0 << clearlog << none << none;
        QTest::newRow("healthy own") << -50 * Day << 2 << own << none << none;
        QTest::newRow("not yet valid") << -100 * Day - 1 << 1 << on << error << early;
        QTest::newRow("15 days left") << -15 * Day << 1 << on << none << none;
        QTest::newRow("14 days 23 hours left") << -15 * Day + 3600 << 1 << on << warning << soon;
        QTest::newRow("own that expires soon") << -1 * Day << 2 << own << warning << soon;
        QTest::newRow("expired and rejected") << qint64(1) << 0 << clearlog << error << late;
        QTest::newRow("expired and own") << qint64(1) << 2 << own << error << late;
    }

    void state_shows_as_overlay_and_tooltip()
    {
        QFETCH(const qint64, now);
        QFETCH(const int, status);
        QFETCH(const QString, base);
        QFETCH(const QString, overlay);
        QFETCH(const QString, toolTip);
        TestCertificate source;
        source.from = 0;
        source.to = 100 * Day;
        const UaPkiCertificate certificate = make(source);
        const FixedClock clock(
            UaDateTime(OpcUa_Int64(certificate.validTo().toInt64() + now * second)));
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(certificate, u"/a.der"_s, status);

        QCOMPARE(decoration(model), overlaid(base, overlay));
        for (int column = 0; column < 13; ++column) {
            const QVariant shown = model.data(model.index(0, column), Qt::ToolTipRole);
            QCOMPARE(shown.isValid(), !toolTip.isEmpty());
            QCOMPARE(shown.toString(), toolTip);
        }
        for (int column = 1; column < 13; ++column) {
            QVERIFY(!model.data(model.index(0, column), Qt::DecorationRole).isValid());
        }
    }

    void state_follows_the_clock_without_a_reload()
    {
        const UaPkiCertificate certificate = make({});
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(certificate, u"/a.der"_s, Model::Trusted);
        const auto toolTip = [&model] {
            return model.data(model.index(0, 0), Qt::ToolTipRole).toString();
        };
        QCOMPARE(toolTip(), QString());
        const FixedClock clock(UaDateTime(OpcUa_Int64(certificate.validTo().toInt64() + second)));
        QCOMPARE(toolTip(), u"The certificate has expired"_s);
        QVERIFY(decoration(model) != overlaid(on, QString()));
    }

    void each_icon_is_made_once()
    {
        TestCertificate expired;
        expired.to = -1;
        Model model(ownIcon(), Model::TrustList);
        for (int i = 0; i < 3; ++i) {
            model.addCertificate(make(expired), u"/a.der"_s, Model::Rejected);
        }
        const auto key = [&model](int row) {
            return model.data(model.index(row, 0), Qt::DecorationRole).value<QIcon>().cacheKey();
        };
        QCOMPARE(key(1), key(0));
        QCOMPARE(key(2), key(0));
        QCOMPARE(key(0), key(0));
    }

    void model_without_an_own_icon_still_shows_the_state()
    {
        TestCertificate expired;
        expired.to = -1;
        Model model(QIcon(), Model::TrustList);
        model.addCertificate(make(expired), u"/a.der"_s, Model::Own);
        QVERIFY(!decoration(model).isNull());
    }

    void roles_give_status_bytes_and_thumbprint()
    {
        const QByteArray der = TestCertificate().der();
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(read(der), u"/a.der"_s, Model::Rejected);
        const QString thumbprint = QString::fromLatin1(
            QCryptographicHash::hash(der, QCryptographicHash::Sha1).toHex().toUpper());
        for (int column = 0; column < 13; ++column) {
            const QModelIndex index = model.index(0, column);
            QCOMPARE(model.data(index, Qt::UserRole), QVariant(0));
            QCOMPARE(model.data(index, Qt::UserRole + 1), QVariant(der));
            QCOMPARE(model.data(index, Qt::UserRole + 2), QVariant(thumbprint));
        }
    }

    void nothing_else_is_answered()
    {
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(make({}), u"/a.der"_s, Model::Trusted);
        for (int role = 0; role < 300; ++role) {
            QVERIFY(!model.data(QModelIndex(), role).isValid());
            QVERIFY(!model.data(model.index(0, 13), role).isValid());
            const bool isAnswered = role == 0 || role == 1 || (role >= 256 && role < 259);
            QCOMPARE(model.data(model.index(0, 0), role).isValid(), isAnswered);
        }
        QVERIFY(!model.data(model.index(0, 0), Qt::ForegroundRole).isValid());
    }

    void rows_are_children_of_the_root_alone()
    {
        Model model(ownIcon(), Model::TrustList);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.addCertificate(make({}), u"/a.der"_s, Model::Trusted);
        model.addCertificate(make({}), u"/b.der"_s, Model::Rejected);
        const QModelIndex index = model.index(1, 3);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.rowCount(index), 0);
        QCOMPARE(model.columnCount(index), 13);
        QVERIFY(!model.parent(index).isValid());
        QVERIFY(!model.hasChildren(index));
        QVERIFY(!model.index(0, 0, index).isValid());
        QCOMPARE(model.flags(index), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags());
        const auto* item = static_cast<const VeskCertificateItem*>(index.constInternalPointer());
        QCOMPARE(item->sFilename, u"/b.der"_s);
        QVERIFY(item->pParent && item->pParent->children.at(1) == item);
    }

    void rows_come_and_go_with_signals()
    {
        Model model(ownIcon(), Model::TrustList);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        QSignalSpy removed(&model, &QAbstractItemModel::rowsRemoved);
        model.addCertificate(make({}), u"/a.der"_s, Model::Trusted);
        model.addCertificates(
            {{make({}), u"/b.der"_s, Model::Trusted}, {make({}), u"/c.der"_s, Model::Rejected}});
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(inserted[0].mid(1), QVariantList({0, 0}));
        QCOMPARE(inserted[1].mid(1), QVariantList({1, 2}));
        model.addCertificates({});
        QCOMPARE(inserted.count(), 2);
        model.clear();
        QCOMPARE(removed.count(), 1);
        QCOMPARE(removed[0].mid(1), QVariantList({0, 2}));
        QCOMPARE(model.rowCount(), 0);
    }

    void second_own_certificate_replaces_the_first()
    {
        TestCertificate first;
        first.name = u"first"_s;
        TestCertificate second;
        second.name = u"second"_s;
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(make({}), u"/a.der"_s, Model::Trusted);
        model.addCertificate(make(first), u"/first.der"_s, Model::Own);
        QCOMPARE(display(model, 1, 1), QVariant(u"first"_s));
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
        model.addCertificate(make(second), u"/second.der"_s, Model::Own);
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(inserted.count(), 0);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(changed[0][0].toModelIndex(), model.index(1, 0));
        QCOMPARE(changed[0][1].toModelIndex(), model.index(1, 12));
        QCOMPARE(display(model, 1, 1), QVariant(u"second"_s));
        QCOMPARE(display(model, 12, 1), QVariant(u"/second.der"_s));
    }

    void two_own_certificates_at_once_make_one_row()
    {
        Model model(ownIcon(), Model::TrustList);
        model.addCertificates(
            {{make({}), u"/first.der"_s, Model::Own}, {make({}), u"/second.der"_s, Model::Own}});
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(display(model, 12), QVariant(u"/second.der"_s));
    }

    void null_certificate_and_unknown_status_do_no_harm()
    {
        Model model(ownIcon(), Model::TrustList);
        model.addCertificate(UaPkiCertificate(), QString(), 99);
        for (int column = 0; column < 13; ++column) {
            for (int role = 0; role < 300; ++role) {
                static_cast<void>(model.data(model.index(0, column), role));
            }
        }
        QCOMPARE(display(model, 1), QVariant(QString()));
        QVERIFY(model.data(model.index(0, 0), Qt::ToolTipRole).isValid());
    }
};

ZANDREL_TEST_MAIN(VeskCertificateModelTest)

#include "veskcertificatemodel_test.moc"
