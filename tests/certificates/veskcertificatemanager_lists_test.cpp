#include "tests/certificates/certificatestab.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QDir>
#include <QScrollBar>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace {

struct List
{
    QString directory;
    const char* view;
    bool isOfCertificates;
};

const List lists[] = {{u"trusted"_s, "treeView_trustedCerts", true},
                      {u"issuers"_s, "treeView_issuerCerts", true},
                      {u"tls"_s, "treeView_tlsIssuerCerts", true},
                      {u"crl"_s, "treeView_trustedCRLs", false},
                      {u"issuersCrl"_s, "treeView_issuerCRLs", false},
                      {u"tlsCrl"_s, "treeView_tlsIssuerCRLs", false}};

void putInto(const CertificatesTab& tab, const List& list, const QString& name)
{
    if (list.isOfCertificates) {
        tab.putCertificate(list.directory, name);
    } else {
        tab.putRevocationList(list.directory, name);
    }
}

QStringList sortedRows(const QTreeView& view)
{
    QStringList rows = CertificatesTab::rows(view);
    rows.sort();
    return rows;
}

} // namespace

class VeskCertificateManagerListsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void every_directory_has_its_list()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.putCertificate(u"trusted"_s, u"trusted.der"_s);
        tab.putCertificate(u"rejected"_s, u"rejected.der"_s);
        tab.putCertificate(u"issuers"_s, u"issuer.der"_s);
        tab.putCertificate(u"tls"_s, u"tls.der"_s);
        tab.putRevocationList(u"crl"_s, u"trusted.crl"_s);
        tab.putRevocationList(u"issuersCrl"_s, u"issuer.crl"_s);
        tab.putRevocationList(u"tlsCrl"_s, u"tls.crl"_s);
        tab.open();
        QCOMPARE(sortedRows(tab.trusted()),
                 QStringList({u"Own Certificate server.der"_s, u"Trusted trusted.der"_s,
                              u"Untrusted rejected.der"_s}));
        QCOMPARE(sortedRows(tab.view("treeView_issuerCerts")),
                 QStringList{u"Known Issuer issuer.der"_s});
        QCOMPARE(sortedRows(tab.view("treeView_tlsIssuerCerts")),
                 QStringList{u"Trusted tls.der"_s});
        QCOMPARE(sortedRows(tab.view("treeView_trustedCRLs")), QStringList{u"7 trusted.crl"_s});
        QCOMPARE(sortedRows(tab.view("treeView_issuerCRLs")), QStringList{u"7 issuer.crl"_s});
        QCOMPARE(sortedRows(tab.view("treeView_tlsIssuerCRLs")), QStringList{u"7 tls.crl"_s});
    }

    void own_certificate_is_shown_once_data()
    {
        QTest::addColumn<QString>("serverCertificate");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("elsewhere")
            << u"own/server.der"_s
            << QStringList{u"Own Certificate server.der"_s, u"Trusted a.der"_s};
        QTest::newRow("trusted") << u"trusted/a.der"_s << QStringList{u"Own Certificate a.der"_s};
        QTest::newRow("by another path")
            << u"own/../trusted/a.der"_s << QStringList{u"Own Certificate a.der"_s};
        QTest::newRow("missing") << u"own/none.der"_s << QStringList{u"Trusted a.der"_s};
        QTest::newRow("no certificate") << u"own/server.pem"_s << QStringList{u"Trusted a.der"_s};
        QTest::newRow("in PEM form")
            << u"own/text.der"_s << QStringList{u"Own Certificate text.der"_s, u"Trusted a.der"_s};
    }

    void own_certificate_is_shown_once()
    {
        QFETCH(const QString, serverCertificate);
        QFETCH(const QStringList, rows);
        CertificatesTab tab;
        tab.putOwn();
        tab.put(u"own"_s, u"text.der"_s, TestCertificate().pem());
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.info.serverCertificate = tab.directory.filePath(serverCertificate);
        tab.open();
        QCOMPARE(sortedRows(tab.trusted()), rows);
    }

    void directory_for_trusted_and_rejected_shows_each_file_as_both()
    {
        CertificatesTab tab;
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.info.rejectedCertificatesDirectory = tab.info.trustListLocation;
        tab.open();
        QCOMPARE(sortedRows(tab.trusted()),
                 QStringList({u"Trusted a.der"_s, u"Untrusted a.der"_s}));
    }

    void files_that_are_none_are_skipped_in_silence()
    {
        CertificatesTab tab;
        for (const QString& directory : {u"trusted"_s, u"rejected"_s, u"crl"_s}) {
            tab.put(directory, u"empty.der"_s, QByteArray());
            tab.put(directory, u"text.cer"_s, "no certificate");
            tab.put(directory, u"cut.crt"_s, TestCertificate().der().chopped(1));
        }
        tab.put(u"trusted"_s, u"pem.der"_s, TestCertificate().pem());
        tab.put(u"trusted"_s, u"list.der"_s, TestRevocationList().der());
        tab.put(u"crl"_s, u"certificate.der"_s, TestCertificate().der());
        tab.put(u"crl"_s, u"pem.crl"_s, TestRevocationList().pem());
        tab.open();
        QCOMPARE(tab.rows(tab.trusted()), QStringList{u"Trusted pem.der"_s});
        QCOMPARE(tab.rows(tab.view("treeView_trustedCRLs")), QStringList{u"7 pem.crl"_s});
    }

    void tls_page_needs_one_of_its_directories_data()
    {
        QTest::addColumn<bool>("hasCertificates");
        QTest::addColumn<bool>("hasLists");
        QTest::newRow("both") << true << true;
        QTest::newRow("certificates alone") << true << false;
        QTest::newRow("lists alone") << false << true;
        QTest::newRow("none") << false << false;
    }

    void tls_page_needs_one_of_its_directories()
    {
        QFETCH(const bool, hasCertificates);
        QFETCH(const bool, hasLists);
        CertificatesTab tab;
        if (!hasCertificates) {
            tab.info.tlsIssuersCertificatesLocation.clear();
        }
        if (!hasLists) {
            tab.info.tlsIssuersRevocationListLocation.clear();
        }
        tab.open();
        QCOMPARE(tab.child<QTabWidget>("tabWidget").count(), hasCertificates || hasLists ? 3 : 2);
        // A reload doesn't add it twice or take it away.
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.child<QTabWidget>("tabWidget").count(), hasCertificates || hasLists ? 3 : 2);
        QCOMPARE(tab.view("treeView_tlsIssuerCerts").model()->rowCount(), 0);
    }

    void f5_anywhere_in_the_tab_reloads_all_lists_data()
    {
        QTest::addColumn<QString>("focus");
        for (const List& list : lists) {
            QTest::newRow(list.view) << QString::fromLatin1(list.view);
        }
        for (const char* name :
             {"toolButton_RefreshTrusted", "pushButton_OpenCertLocationIssuers", "tabWidget"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }

    void f5_anywhere_in_the_tab_reloads_all_lists()
    {
        QFETCH(const QString, focus);
        CertificatesTab tab;
        tab.open();
        for (const List& list : lists) {
            putInto(tab, list, u"new.der"_s);
        }
        auto& widget = tab.child<QWidget>(focus.toLatin1().constData());
        tab.showPageOf(widget);
        widget.setFocus();
        QVERIFY(tab.widget->isAncestorOf(QApplication::focusWidget()));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F5);
        for (const List& list : lists) {
            QCOMPARE(tab.view(list.view).model()->rowCount(), 1);
        }
    }

    void refresh_buttons_reload_all_lists_data()
    {
        QTest::addColumn<QString>("button");
        for (const char* name : {"toolButton_RefreshTrusted", "toolButton_RefreshIssuers",
                                 "toolButton_RefreshTLSIssuers"}) {
            QTest::newRow(name) << QString::fromLatin1(name);
        }
    }

    void refresh_buttons_reload_all_lists()
    {
        QFETCH(const QString, button);
        CertificatesTab tab;
        tab.open();
        for (const List& list : lists) {
            putInto(tab, list, u"new.der"_s);
        }
        tab.click(button.toLatin1().constData());
        for (const List& list : lists) {
            QCOMPARE(tab.view(list.view).model()->rowCount(), 1);
        }
    }

    void buttons_follow_what_is_there()
    {
        CertificatesTab tab;
        tab.open();
        const auto isEnabled = [&tab](const char* name) {
            return tab.child<QWidget>(name).isEnabled();
        };
        QVERIFY(isEnabled("pushButton_OpenCertLocationTrusted"));
        QVERIFY(isEnabled("pushButton_OpenCertLocationIssuers"));
        QVERIFY(isEnabled("pushButton_OpenCertLocationTLSIssuers"));
        QVERIFY(tab.child<QAction>("actionReject").isEnabled());
        QVERIFY(!isEnabled("pushButton_CopyCertificateTo"));
        QVERIFY(!isEnabled("pushButton_CreateNewCertificate"));

        for (const QString& directory : {u"trusted"_s, u"issuers"_s, u"tls"_s, u"rejected"_s}) {
            QVERIFY(QDir(tab.directory.path()).rmdir(directory));
        }
        tab.putOwn();
        tab.press(tab.trusted(), Qt::Key_F5);
        QVERIFY(!isEnabled("pushButton_OpenCertLocationTrusted"));
        QVERIFY(!isEnabled("pushButton_OpenCertLocationIssuers"));
        QVERIFY(!isEnabled("pushButton_OpenCertLocationTLSIssuers"));
        QVERIFY(!tab.child<QAction>("actionReject").isEnabled());
        QVERIFY(isEnabled("pushButton_CopyCertificateTo"));
        QVERIFY(isEnabled("pushButton_CreateNewCertificate"));
    }

    void nothing_is_created()
    {
        CertificatesTab tab;
        tab.info.trustListLocation = tab.directory.filePath(u"none/"_s);
        tab.info.issuersRevocationListLocation = tab.directory.filePath(u"neither/"_s);
        tab.open();
        tab.press(tab.trusted(), Qt::Key_F5);
        QVERIFY(!QFile::exists(tab.info.trustListLocation));
        QVERIFY(!QFile::exists(tab.info.issuersRevocationListLocation));
        QCOMPARE(tab.trusted().model()->rowCount(), 0);
    }

    void order_and_selection_survive_a_reload()
    {
        CertificatesTab tab;
        for (const QString& name : {u"a.der"_s, u"b.der"_s, u"d.der"_s}) {
            tab.putCertificate(u"trusted"_s, name);
        }
        tab.open();
        tab.trusted().sortByColumn(1, Qt::DescendingOrder);
        tab.select(tab.trusted(), u"b.der"_s);
        tab.putCertificate(u"trusted"_s, u"c.der"_s);
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.rows(tab.trusted()), QStringList({u"Trusted d.der"_s, u"Trusted c.der"_s,
                                                       u"Trusted b.der"_s, u"Trusted a.der"_s}));
        QCOMPARE(tab.currentFile(tab.trusted()), u"b.der"_s);
        QCOMPARE(tab.trusted().selectionModel()->selectedRows().size(), 1);
        QCOMPARE(tab.trusted().selectionModel()->selectedRows().first().row(), 2);
    }

    void reload_without_a_selection_selects_nothing()
    {
        CertificatesTab tab;
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        tab.press(tab.trusted(), Qt::Key_F5);
        QVERIFY(!tab.trusted().selectionModel()->hasSelection());
    }

    void current_row_that_vanished_gives_way_to_the_next()
    {
        CertificatesTab tab;
        for (const QString& name : {u"a.der"_s, u"b.der"_s, u"c.der"_s}) {
            tab.putCertificate(u"trusted"_s, name);
        }
        tab.open();
        tab.trusted().sortByColumn(1, Qt::AscendingOrder);
        tab.select(tab.trusted(), u"b.der"_s);
        QVERIFY(QFile::remove(tab.path(u"trusted"_s, u"b.der"_s)));
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.currentFile(tab.trusted()), u"c.der"_s);
        QVERIFY(QFile::remove(tab.path(u"trusted"_s, u"c.der"_s)));
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.currentFile(tab.trusted()), u"a.der"_s);
        QVERIFY(QFile::remove(tab.path(u"trusted"_s, u"a.der"_s)));
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.currentFile(tab.trusted()), QString());
    }

    void view_stays_where_it_was_scrolled_to()
    {
        CertificatesTab tab;
        for (int i = 0; i < 200; ++i) {
            tab.putCertificate(u"trusted"_s, u"c%1.der"_s.arg(i, 3, 10, QChar(u'0')));
        }
        tab.open();
        tab.trusted().verticalScrollBar()->setValue(100);
        const int position = tab.trusted().verticalScrollBar()->value();
        QVERIFY(position > 50);
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.trusted().verticalScrollBar()->value(), position);
    }

    void names_that_mislead_are_shown_harmless()
    {
        TestCertificate source;
        source.name = u"<h1>Trusted</h1>\nsecond\u202Egnp"_s;
        CertificatesTab tab;
        tab.put(u"trusted"_s, u"a.der"_s, source.der());
        tab.open();
        const QModelIndex index = tab.trusted().model()->index(0, 1);
        QCOMPARE(index.data().toString(), source.name); // whole and as it stands
        QCOMPARE(tab.trusted().itemDelegate()->metaObject()->className(), "VeskListDelegate");
        QCOMPARE(index.data(Qt::AccessibleTextRole).toString(),
                 u"<h1>Trusted</h1> second\ufffdgnp"_s);
        // One line, so the row is no higher than another.
        tab.putCertificate(u"trusted"_s, u"b.der"_s);
        tab.press(tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.trusted().visualRect(tab.trusted().model()->index(0, 0)).height(),
                 tab.trusted().visualRect(tab.trusted().model()->index(1, 0)).height());
    }
};

ZANDREL_TEST_MAIN(VeskCertificateManagerListsTest)

#include "veskcertificatemanager_lists_test.moc"
