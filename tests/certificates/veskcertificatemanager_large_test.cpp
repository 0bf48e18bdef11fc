#include "tests/certificates/certificatestab.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/testmain.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QTreeView>
#include <openssl/x509.h>

using namespace Qt::StringLiterals;

// Large directories and certificates, and what painting asks of them.

namespace {

/// Calls into the library that read something of a certificate.
int reads = 0;

} // namespace

// The linker sends all calls of these functions here.
extern "C" {
X509* __real_d2i_X509(X509** target, const unsigned char** bytes, long size);
X509* __wrap_d2i_X509(X509** target, const unsigned char** bytes, long size);
X509_NAME* __real_X509_get_issuer_name(const X509* certificate);
X509_NAME* __wrap_X509_get_issuer_name(const X509* certificate);
X509_NAME* __real_X509_get_subject_name(const X509* certificate);
X509_NAME* __wrap_X509_get_subject_name(const X509* certificate);
const ASN1_TIME* __real_X509_get0_notAfter(const X509* certificate);
const ASN1_TIME* __wrap_X509_get0_notAfter(const X509* certificate);

X509* __wrap_d2i_X509(X509** target, const unsigned char** bytes, long size)
{
    ++reads;
    return __real_d2i_X509(target, bytes, size);
}

X509_NAME* __wrap_X509_get_issuer_name(const X509* certificate)
{
    ++reads;
    return __real_X509_get_issuer_name(certificate);
}

X509_NAME* __wrap_X509_get_subject_name(const X509* certificate)
{
    ++reads;
    return __real_X509_get_subject_name(certificate);
}

const ASN1_TIME* __wrap_X509_get0_notAfter(const X509* certificate)
{
    ++reads;
    return __real_X509_get0_notAfter(certificate);
}
}

class VeskCertificateManagerLargeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ten_thousand_files_are_listed_sorted_and_moved()
    {
        CertificatesTab tab;
        QList<QByteArray> certificates;
        for (int i = 0; i < 10; ++i) {
            TestCertificate source;
            source.name = u"name %1"_s.arg(i);
            source.to = (100 + i * 7 % 10) * Day;
            certificates.append(source.der());
        }
        for (int i = 0; i < 10000; ++i) {
            tab.put(i % 2 ? u"trusted"_s : u"rejected"_s, u"f%1.der"_s.arg(i),
                    certificates[i % 10]);
        }
        tab.open();
        QTreeView& view = tab.trusted();
        QCOMPARE(view.model()->rowCount(), 10000);
        view.sortByColumn(3, Qt::DescendingOrder);
        for (int row = 1; row < 10000; ++row) {
            QVERIFY(view.model()->index(row - 1, 3).data().toDateTime() >=
                    view.model()->index(row, 3).data().toDateTime());
        }
        tab.contextMenu(view, u"f5000.der"_s, u"Trust"_s);
        QVERIFY(QFileInfo::exists(tab.path(u"trusted"_s, u"f5000.der"_s)));
        QCOMPARE(view.model()->rowCount(), 10000);
        QCOMPARE(tab.currentFile(view), u"f5000.der"_s);
        QVERIFY(view.viewport()->rect().intersects(view.visualRect(view.currentIndex())));
    }

    void painting_reads_nothing_again_and_makes_no_icon_again()
    {
        CertificatesTab tab;
        for (int i = 0; i < 100; ++i) {
            TestCertificate source;
            source.to = (i % 3 - 1) * Day; // two states
            tab.put(i % 2 ? u"trusted"_s : u"rejected"_s, u"f%1.der"_s.arg(i), source.der());
        }
        reads = 0;
        tab.open();
        QTreeView& view = tab.trusted();
        view.header()->resizeSections(QHeaderView::ResizeToContents);
        static_cast<void>(tab.widget->grab());
        QVERIFY(reads > 0); // the counter works
        const auto icons = [&view] {
            QList<qint64> keys;
            for (int row = 0; row < 100; ++row) {
                keys.append(
                    view.model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>().cacheKey());
            }
            return keys;
        };
        const QList<qint64> before = icons();
        QCOMPARE(QSet<qint64>(before.begin(), before.end()).size(), 4);

        reads = 0;
        for (int i = 0; i < 5; ++i) {
            static_cast<void>(tab.widget->grab());
            view.setColumnWidth(1, 100 + i);
        }
        QCOMPARE(reads, 0);
        QCOMPARE(icons(), before);
    }

    void hundred_thousand_names_are_shown_cut()
    {
        TestCertificate source;
        for (int i = 0; i < 100000; ++i) {
            source.dnsNames.append(u"h%1"_s.arg(i));
        }
        CertificatesTab tab;
        tab.put(u"trusted"_s, u"a.der"_s, source.der());
        tab.open();
        const QModelIndex index = tab.trusted().model()->index(0, 10);
        QCOMPARE(index.data().toString(), source.dnsNames.join(u", "_s)); // whole
        QCOMPARE(index.data(Qt::AccessibleTextRole).toString().size(), 1001);
        tab.trusted().scrollTo(index);
        QVERIFY(!tab.widget->grab().isNull());
        QVERIFY(tab.trusted().columnWidth(10) < 1000);
        tab.trusted().sortByColumn(10, Qt::AscendingOrder);
        QCOMPARE(tab.trusted().model()->rowCount(), 1);
    }
};

ZANDREL_TEST_MAIN(VeskCertificateManagerLargeTest)

#include "veskcertificatemanager_large_test.moc"
