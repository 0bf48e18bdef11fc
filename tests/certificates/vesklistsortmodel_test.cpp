#include "certificates/veskcertificatemodel.h"
#include "certificates/veskcrlmodel.h"
#include "certificates/vesklistdelegate.h"
#include "certificates/vesklistsortmodel.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/testmain.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;

namespace {

UaByteArray bytesOf(const QByteArray& bytes)
{
    return {bytes.constData(), static_cast<OpcUa_Int32>(bytes.size())};
}

VeskCertificateModel::Entry entry(const QString& name, qint64 to)
{
    TestCertificate source;
    source.name = name;
    source.to = to;
    return {UaPkiCertificate::fromDER(bytesOf(source.der())), u"/pki/"_s + name, 1};
}

QStringList names(const QAbstractItemModel& model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
        result.append(model.index(row, VeskCertificateModel::NameColumn).data().toString());
    }
    return result;
}

} // namespace

class VeskListSortModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<VeskCertificateModel>(QIcon(), VeskCertificateModel::TrustList);
        m_proxy = std::make_unique<VeskListSortModel>();
        m_proxy->setSourceModel(m_model.get());
    }

    void dates_sort_as_dates()
    {
        const QAbstractItemModelTester tester(
            m_proxy.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        // As texts, in whatever locale, these would hardly come out in this order.
        m_model->addCertificates({entry(u"c"_s, 4000 * Day), entry(u"a"_s, 9 * Day),
                                  entry(u"d"_s, 9000 * Day), entry(u"b"_s, 300 * Day)});
        m_proxy->sort(VeskCertificateModel::ValidToColumn, Qt::AscendingOrder);
        QCOMPARE(names(*m_proxy), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
        m_proxy->sort(VeskCertificateModel::ValidToColumn, Qt::DescendingOrder);
        QCOMPARE(names(*m_proxy), QStringList({u"d"_s, u"c"_s, u"b"_s, u"a"_s}));
    }

    void texts_sort_by_character()
    {
        m_model->addCertificates({entry(u"b"_s, Day), entry(u"A"_s, Day), entry(u"a"_s, Day)});
        m_proxy->sort(VeskCertificateModel::NameColumn);
        QCOMPARE(names(*m_proxy), QStringList({u"A"_s, u"a"_s, u"b"_s}));
    }

    void rows_that_come_later_are_sorted_in()
    {
        m_proxy->sort(VeskCertificateModel::NameColumn);
        m_model->addCertificates({entry(u"b"_s, Day), entry(u"d"_s, Day)});
        m_model->addCertificates({entry(u"c"_s, Day), entry(u"a"_s, Day)});
        QCOMPARE(names(*m_proxy), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    }

    void numbers_of_revocation_lists_sort_as_numbers()
    {
        VeskCRLModel model(0);
        for (const int number : {10, 9, 100}) {
            TestRevocationList source;
            source.number = number;
            model.addCRL(UaPkiRevocationList::fromDER(bytesOf(source.der())), u"/a"_s);
        }
        m_proxy->setSourceModel(&model);
        m_proxy->sort(VeskCRLModel::NumberColumn);
        QCOMPARE(m_proxy->index(0, 0).data().toInt(), 9);
        QCOMPARE(m_proxy->index(2, 0).data().toInt(), 100);
    }

    void screen_reader_hears_the_state_and_what_the_cells_show()
    {
        m_model->addCertificates({entry(u"a\nb"_s, -1)});
        const auto spoken = [this](int column) {
            return m_proxy->index(0, column).data(Qt::AccessibleTextRole).toString();
        };
        QCOMPARE(spoken(0), u"Trusted, The certificate has expired"_s);
        QCOMPARE(spoken(1), u"a b"_s);
        QCOMPARE(spoken(3), QLocale().toString(m_proxy->index(0, 3).data().toDateTime(),
                                               QLocale::ShortFormat));
        QCOMPARE(spoken(12), u"/pki/a b"_s);
        m_model->clear();
        m_model->addCertificates({entry(u"a"_s, 1000 * Day)});
        QCOMPARE(spoken(0), u"Trusted"_s);
        QVERIFY(!m_proxy->data(QModelIndex(), Qt::AccessibleTextRole).isValid());
    }

    void cells_show_dates_in_the_locale_and_texts_as_one_line_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("shown");

        const QDateTime date(QDate(2026, 3, 9), QTime(14, 5));
        QTest::newRow("date") << QVariant(date)
                              << QLocale(QLocale::German).toString(date, QLocale::ShortFormat);
        QTest::newRow("number") << QVariant(-1) << u"-1"_s;
        QTest::newRow("markup") << QVariant(u"<b>&amp;</b>"_s) << u"<b>&amp;</b>"_s;
        QTest::newRow("line breaks") << QVariant(u"a\r\nb\u2028c"_s) << u"a  b c"_s;
        QTest::newRow("right to left override")
            << QVariant(u"a\u202Egpj.exe"_s) << u"a\ufffdgpj.exe"_s;
        QTest::newRow("thousand characters")
            << QVariant(QString(1000, u'x')) << QString(1000, u'x');
        QTest::newRow("more than a thousand")
            << QVariant(QString(5000, u'x'))
            << QString(QString(500, u'x') + u'\u2026' + QString(500, u'x'));
    }

    void cells_show_dates_in_the_locale_and_texts_as_one_line()
    {
        QFETCH(const QVariant, value);
        QFETCH(const QString, shown);
        QCOMPARE(VeskListDelegate().displayText(value, QLocale(QLocale::German)), shown);
    }

private:
    std::unique_ptr<VeskCertificateModel> m_model;
    std::unique_ptr<VeskListSortModel> m_proxy;
};

ZANDREL_TEST_MAIN(VeskListSortModelTest)

#include "vesklistsortmodel_test.moc"
