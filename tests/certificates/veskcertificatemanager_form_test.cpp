#include "tests/certificates/certificatestab.h"
#include "tests/support/testmain.h"

#include <QAction>
#include <QGroupBox>
#include <QHeaderView>
#include <QMetaMethod>
#include <QPushButton>
#include <QTabWidget>
#include <QToolButton>

using namespace Qt::StringLiterals;

class VeskCertificateManagerFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pages_hold_the_widgets_data()
    {
        QTest::addColumn<int>("page");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QStringList>("names");
        QTest::newRow("trusted") << 0 << u"Trusted"_s
                                 << QStringList{u"tab_trusted"_s,
                                                u"treeView_trustedCerts"_s,
                                                u"treeView_trustedCRLs"_s,
                                                u"toolButton_RefreshTrusted"_s,
                                                u"pushButton_OpenCertLocationTrusted"_s,
                                                u"pushButton_CopyCertificateTo"_s,
                                                u"pushButton_CreateNewCertificate"_s};
        QTest::newRow("issuers") << 1 << u"Issuers"_s
                                 << QStringList{u"tab_issuers"_s, u"treeView_issuerCerts"_s,
                                                u"treeView_issuerCRLs"_s,
                                                u"toolButton_RefreshIssuers"_s,
                                                u"pushButton_OpenCertLocationIssuers"_s};
        QTest::newRow("TLS issuers")
            << 2 << u"TLS Issuers"_s
            << QStringList{u"tab_tlsIssuers"_s, u"treeView_tlsIssuerCerts"_s,
                           u"treeView_tlsIssuerCRLs"_s, u"toolButton_RefreshTLSIssuers"_s,
                           u"pushButton_OpenCertLocationTLSIssuers"_s};
    }

    void pages_hold_the_widgets()
    {
        QFETCH(const int, page);
        QFETCH(const QString, title);
        QFETCH(const QStringList, names);
        CertificatesTab tab;
        tab.open();
        const auto& pages = tab.child<QTabWidget>("tabWidget");
        QCOMPARE(pages.count(), 3);
        QCOMPARE(pages.tabText(page), title);
        QCOMPARE(pages.widget(page)->objectName(), names.first());
        for (const QString& name : names.mid(1)) {
            QVERIFY2(pages.widget(page)->findChild<QWidget*>(name), qPrintable(name));
        }
        QStringList groups;
        for (const QGroupBox* group : pages.widget(page)->findChildren<QGroupBox*>()) {
            groups.append(group->title());
            QCOMPARE(group->findChildren<QTreeView*>().size(), 1);
        }
        groups.sort();
        QCOMPARE(groups, QStringList({u"Certificate Revocation Lists"_s, u"Certificates"_s}));
    }

    void form_and_buttons_have_their_texts()
    {
        CertificatesTab tab;
        tab.open();
        QCOMPARE(tab.widget->objectName(), u"CertificateManager"_s);
        QCOMPARE(tab.widget->windowTitle(), u"Manage Certificates"_s);
        const auto text = [&tab](const char* name) {
            return tab.child<QAbstractButton>(name).text();
        };
        for (const char* name : {"toolButton_RefreshTrusted", "toolButton_RefreshIssuers",
                                 "toolButton_RefreshTLSIssuers"}) {
            QCOMPARE(text(name), u"Refresh"_s);
        }
        for (const char* name :
             {"pushButton_OpenCertLocationTrusted", "pushButton_OpenCertLocationIssuers",
              "pushButton_OpenCertLocationTLSIssuers"}) {
            QCOMPARE(text(name), u"Open Certificate Location"_s);
        }
        QCOMPARE(text("pushButton_CopyCertificateTo"), u"Copy Application Certificate To..."_s);
        QCOMPARE(text("pushButton_CreateNewCertificate"),
                 u"Create new Application Certificate..."_s);
    }

    void views_are_lists_with_a_name()
    {
        CertificatesTab tab;
        tab.open();
        QStringList names;
        const auto views = tab.widget->findChildren<QTreeView*>();
        QCOMPARE(views.size(), 6);
        for (const QTreeView* view : views) {
            QCOMPARE(view->contextMenuPolicy(), Qt::CustomContextMenu);
            QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
            QVERIFY(view->alternatingRowColors());
            QVERIFY(!view->rootIsDecorated());
            QVERIFY(!view->itemsExpandable());
            QVERIFY(view->isSortingEnabled());
            QVERIFY(!view->accessibleName().isEmpty());
            names.append(view->accessibleName());
        }
        QCOMPARE(names.removeDuplicates(), 0);
    }

    void actions_have_text_and_tooltip_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        const QString openCertificate = u"Open Certificate in External Viewer"_s;
        const QString openList = u"Open CRL in External Viewer"_s;
        QTest::newRow("actionTrust")
            << u"Trust"_s << u"Set the state of this certificate to Trusted"_s;
        QTest::newRow("actionReject")
            << u"Reject"_s << u"Set the state of this certificate to Rejected"_s;
        // Without a tooltip of its own, Qt gives the text.
        QTest::newRow("actionCreateNew") << u"Create New..."_s << u"Create New"_s;
        for (const char* kind : {"Trusted", "Issuer", "TLSIssuer"}) {
            QTest::addRow("actionOpen%s", kind) << u"Open..."_s << openCertificate;
            QTest::addRow("actionDelete%s", kind) << u"Delete"_s << u"Delete the certificate"_s;
            QTest::addRow("actionOpen%sCRL", kind) << u"Open..."_s << openList;
            QTest::addRow("actionDelete%sCRL", kind) << u"Delete"_s << u"Delete the CRL"_s;
        }
    }

    void actions_have_text_and_tooltip()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, toolTip);
        CertificatesTab tab;
        tab.open();
        const auto& action = tab.child<QAction>(QTest::currentDataTag());
        QCOMPARE(action.text(), text);
        QCOMPARE(action.toolTip(), toolTip);
    }

    void slots_are_private_and_the_signal_is_known()
    {
        QStringList names;
        const QMetaObject& meta = VeskCertificateManager::staticMetaObject;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
            QCOMPARE(meta.method(i).access(), meta.method(i).methodType() == QMetaMethod::Signal
                                                  ? QMetaMethod::Public
                                                  : QMetaMethod::Private);
        }
        QCOMPARE(names, QStringList({u"sigNewCertificateCreated(QString,QString)"_s,
                                     u"sltOpenCertLocationTrusted()"_s,
                                     u"sltOpenCertLocationIssuers()"_s,
                                     u"sltOpenCertLocationTLSIssuers()"_s,
                                     u"sltCopyCertificateTo()"_s,
                                     u"sltCreateNewCertificate()"_s,
                                     u"sltViewContextMenu(QPoint)"_s,
                                     u"sltTrustCertificate()"_s,
                                     u"sltRejectCertificate()"_s,
                                     u"sltOpenCertificateTrusted()"_s,
                                     u"sltOpenCertificateIssuer()"_s,
                                     u"sltOpenCertificateTLSIssuer()"_s,
                                     u"sltDeleteCertificateTrusted()"_s,
                                     u"sltDeleteCertificateIssuer()"_s,
                                     u"sltDeleteCertificateTLSIssuer()"_s,
                                     u"sltOpenCRLTrusted()"_s,
                                     u"sltOpenCRLIssuer()"_s,
                                     u"sltOpenCRLTLSIssuer()"_s,
                                     u"sltDeleteCRLTrusted()"_s,
                                     u"sltDeleteCRLIssuer()"_s,
                                     u"sltDeleteCRLTLSIssuer()"_s,
                                     u"sltReload()"_s}));
    }

    void columns_open_at_the_width_of_what_they_hold()
    {
        CertificatesTab tab;
        tab.putCertificate(u"trusted"_s, u"a rather long name of a certificate.der"_s);
        tab.putCertificate(u"trusted"_s, QString(QString(200, u'w') + u".der"_s));
        tab.open();
        const QHeaderView& header = *tab.trusted().header();
        const int character = tab.trusted().fontMetrics().averageCharWidth();
        for (int column = 0; column < header.count(); ++column) {
            QVERIFY(header.sectionSize(column) <= 40 * character);
            QVERIFY(header.sectionSize(column) >=
                    qMin(header.sectionSizeHint(column), 40 * character));
        }
        QCOMPARE(header.sectionSize(1), 40 * character);
        QCOMPARE(header.sectionSize(12), 40 * character);
        QVERIFY(header.sectionSize(8) < 20 * character);
    }

    void width_that_the_operator_chose_stays()
    {
        CertificatesTab tab;
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        tab.trusted().setColumnWidth(1, 77);
        tab.trusted().header()->moveSection(12, 1);
        QTest::keyClick(&tab.trusted(), Qt::Key_F5);
        QCOMPARE(tab.trusted().columnWidth(1), 77);
        QCOMPARE(tab.trusted().header()->visualIndex(12), 1);
    }

    void tab_key_walks_from_list_to_list()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        tab.trusted().setFocus();
        QStringList names;
        for (int i = 0; i < 6; ++i) {
            names.append(QApplication::focusWidget()->objectName());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(
            names,
            QStringList({u"treeView_trustedCerts"_s, u"treeView_trustedCRLs"_s,
                         u"toolButton_RefreshTrusted"_s, u"pushButton_OpenCertLocationTrusted"_s,
                         u"pushButton_CopyCertificateTo"_s, u"pushButton_CreateNewCertificate"_s}));
    }
};

ZANDREL_TEST_MAIN(VeskCertificateManagerFormTest)

#include "veskcertificatemanager_form_test.moc"
