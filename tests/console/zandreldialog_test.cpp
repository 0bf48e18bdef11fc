
#include "certificates/certificatelocationinfo.h"
#include "certificates/veskcertificatemanager.h"
#include "console/configdom.h"
#include "console/configelements.h"
#include "console/configfile.h"
#include "console/zandreldialog.h"
#include "tests/support/configsample.h"
#include "tests/support/messageboxanswer.h"
#include "tests/support/testmain.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QDir>
#include <QHostInfo>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

const QString restartText = u"Please restart UA server in order to apply the changes"_s;
const QString endpointsQuestion = u"You have unsaved changes in the Endpoints tab.\n"
                                  "Do you want to save or discard them?"_s;
const QString traceQuestion = u"You have unsaved changes in the Trace Settings tab.\n"
                              "Do you want to save or discard them?"_s;
const QString hostNameWarning =
    u"The hostname of the computer was changed.\n\n"
    "Please check the following settings and adjust them if necessary:\n"
    "- Endpoint URLs of the UA Endpoints\n"
    "- The Application Instance Certificate of UA Server"_s;

template <typename Widget>
Widget* find(const QWidget& window, const QString& name)
{
    auto* widget = window.findChild<Widget*>(name);
    if (!widget) {
        qFatal("no widget %s", qPrintable(name));
    }
    return widget;
}

QString elementText(const QString& file, std::initializer_list<QString> path)
{
    ConfigFile config(file);
    return config.read() == ConfigFile::ReadResult::Parsed ? descend(config.root(), path).text()
                                                           : QString();
}

QString storedHostName(const QString& file)
{
    return elementText(
        file, {ConfigElement::ConfigTools, ConfigElement::ZandrelDialog, ConfigElement::Hostname});
}

QString storedGeometry(const QString& file)
{
    return elementText(
        file, {ConfigElement::ConfigTools, ConfigElement::ZandrelDialog, ConfigElement::Geometry});
}

void makeEndpointsDirty(const QWidget& window)
{
    QTest::mouseClick(find<QCheckBox>(window, u"checkBox_allowLocalUsers"_s), Qt::LeftButton, {},
                      QPoint(8, 8));
}

void makeTraceDirty(const QWidget& window)
{
    QTest::keyClicks(find<QLineEdit>(window, u"lineEdit_traceFile"_s), u"x"_s);
}

} // namespace

class ZandrelDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_file = writeFile(m_dir->filePath(u"ServerConfig.xml"_s), sampleConfig());
    }

    void has_the_tabs_in_order_and_the_form_of_its_own()
    {
        ZandrelDialog window(QString(), m_file);
        const auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        QCOMPARE(tabs->count(), 3);
        QCOMPARE(tabs->tabText(0), u"UA Endpoints"_s);
        QCOMPARE(tabs->tabText(1), u"Trace"_s);
        QCOMPARE(tabs->tabText(2), u"Certificates"_s);
        QCOMPARE(tabs->currentIndex(), 0);
        QVERIFY(tabs->isEnabled());
        QCOMPARE(window.size(), QSize(704, 538));
        QCOMPARE(find<QPushButton>(window, u"pushButton_close"_s)->text(), u"Close"_s);
        QVERIFY(find<QWidget>(window, u"centralwidget"_s) == window.centralWidget());
        QVERIFY(find<QStatusBar>(window, u"statusbar"_s) == window.statusBar());
        QVERIFY(
            find<QLayout>(window, u"verticalLayout"_s)->findChild<QLayout*>(u"horizontalLayout"_s));
        QVERIFY(!window.windowIcon().pixmap(48).isNull());
    }

    void title_is_the_given_one_or_names_the_file()
    {
        QCOMPARE(ZandrelDialog(u"My title"_s, m_file).windowTitle(), u"My title"_s);
        QCOMPARE(ZandrelDialog(QString(), m_file).windowTitle(), u"Zandrel - "_s + m_file);
    }

    void empty_file_name_selects_the_default_in_the_working_directory()
    {
        const QString before = QDir::currentPath();
        QDir::setCurrent(m_dir->path());
        {
            ZandrelDialog window{QString(), QString()};
            QCOMPARE(window.windowTitle(), u"Zandrel - "_s + m_file);
            QVERIFY(find<QTabWidget>(window, u"tabWidget"_s)->isEnabled());
        }
        QDir::setCurrent(before);
    }

    void missing_file_is_told_and_disables_the_tabs()
    {
        const QString missing = m_dir->filePath(u"<b>no</b>.xml"_s);
        MessageBoxAnswer answer(u"Configuration File Not Found"_s,
                                u"The configuration file '%1' could not be opened.\n"
                                "Please check if it exists!"_s.arg(missing),
                                QMessageBox::Ok);
        answer.setInspection([](QMessageBox& box) {
            QCOMPARE(box.icon(), QMessageBox::Critical);
            QCOMPARE(box.standardButtons(), QMessageBox::Ok);
            QCOMPARE(box.textFormat(), Qt::PlainText);
        });
        {
            ZandrelDialog window(QString(), missing);
            QCOMPARE(answer.verdict(), QString());
            QVERIFY(!find<QTabWidget>(window, u"tabWidget"_s)->isEnabled());
            QCOMPARE(window.windowTitle(), u"Zandrel - "_s + missing);
            window.show();
            auto* close = find<QPushButton>(window, u"pushButton_close"_s);
            QVERIFY(close->isEnabled());
            QTest::mouseClick(close, Qt::LeftButton);
            QVERIFY(!window.isVisible());
        }
        QVERIFY(!QFileInfo::exists(missing));
        QCOMPARE(answer.verdict(), QString());
    }

    void file_that_cannot_be_written_is_told_and_disables_the_tabs()
    {
        // A folder can't be opened for writing by anybody, not even by root.
        const QString folder = m_dir->filePath(u"folder.xml"_s);
        QVERIFY(QDir().mkdir(folder));
        MessageBoxAnswer answer(u"Configuration File Not Writable"_s,
                                u"The configuration file '%1' could not be opened for writing.\n"
                                "Please check for sufficient access rights!"_s.arg(folder),
                                QMessageBox::Ok);
        ZandrelDialog window(QString(), folder);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(!find<QTabWidget>(window, u"tabWidget"_s)->isEnabled());
        QVERIFY(find<QPushButton>(window, u"pushButton_close"_s)->isEnabled());
    }

    void unparsable_file_shows_empty_tabs_and_is_emptied_by_the_start()
    {
        writeFile(m_file, "<a><b></a>");
        MessageBoxAnswer none(QList<MessageBoxAnswer::Expected>{});
        {
            ZandrelDialog window(QString(), m_file);
            QCOMPARE(readFile(m_file), QByteArray());
            QVERIFY(find<QTabWidget>(window, u"tabWidget"_s)->isEnabled());
            window.show();
            window.close();
        }
        QCOMPARE(readFile(m_file), QByteArray());
        QCOMPARE(none.verdict(), QString());
    }

    void refused_file_is_neither_shown_nor_written()
    {
        QByteArray deep =
            serverConfig("<UaEndpoint><Url>opc.tcp://[NodeName]:1</Url></UaEndpoint>" +
                         QByteArray("<x>").repeated(600) + QByteArray("</x>").repeated(600));
        writeFile(m_file, deep);
        {
            ZandrelDialog window(QString(), m_file);
            window.show();
            QCOMPARE(find<QAbstractItemView>(window, u"treeView_endpoints"_s)->model()->rowCount(),
                     0);
            window.close();
        }
        QCOMPARE(readFile(m_file), deep);
    }

    void save_and_discard_settle_the_endpoints_on_a_tab_change()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        for (const auto button : {QMessageBox::Discard, QMessageBox::Save}) {
            tabs->setCurrentIndex(0);
            makeEndpointsDirty(window);
            QVERIFY(find<QCheckBox>(window, u"checkBox_allowLocalUsers"_s)->isChecked());
            MessageBoxAnswer answer(u"Endpoints"_s, endpointsQuestion, button);
            answer.setInspection([](QMessageBox& box) {
                QCOMPARE(box.icon(), QMessageBox::Question);
                QCOMPARE(box.standardButtons(), QMessageBox::Save | QMessageBox::Discard);
                QVERIFY(box.defaultButton() == box.button(QMessageBox::Discard));
            });
            tabs->setCurrentIndex(1);
            QCOMPARE(answer.verdict(), QString());
            QCOMPARE(tabs->currentIndex(), 1);
            const bool isSaved = button == QMessageBox::Save;
            QCOMPARE(find<QCheckBox>(window, u"checkBox_allowLocalUsers"_s)->isChecked(), isSaved);
            QCOMPARE(elementText(m_file,
                                 {ConfigElement::UaServerConfig, ConfigElement::UserIdentityTokens,
                                  ConfigElement::EnableUserPw}),
                     isSaved ? u"true"_s : u"false"_s);
            QCOMPARE(window.statusBar()->currentMessage(), isSaved ? restartText : QString());
            QVERIFY(!find<QPushButton>(*tabs->widget(0), u"pushButton_apply"_s)->isEnabled());
        }
    }

    void leaving_two_dirty_tabs_asks_twice_endpoints_first()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        makeEndpointsDirty(window);
        makeTraceDirty(window);
        MessageBoxAnswer answer(QList<MessageBoxAnswer::Expected>{
            {u"Endpoints"_s, endpointsQuestion, QMessageBox::Discard},
            {u"Trace Settings"_s, traceQuestion, QMessageBox::Save}});
        QTest::mouseClick(find<QPushButton>(window, u"pushButton_close"_s), Qt::LeftButton);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(!window.isVisible());
        QCOMPARE(
            elementText(m_file, {ConfigElement::UaServerConfig, ConfigElement::UserIdentityTokens,
                                 ConfigElement::EnableUserPw}),
            u"false"_s);
        QVERIFY(elementText(m_file, {ConfigElement::UaServerConfig, ConfigElement::Trace,
                                     ConfigElement::UaAppTraceFile})
                    .contains(u'x'));
    }

    void tab_that_comes_into_view_shows_what_the_file_holds()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        writeFile(m_file, readFile(m_file)
                              .replace("<UaAppTraceMaxBackup>3<", "<UaAppTraceMaxBackup>17<")
                              .replace(":4841</Url>", ":4999</Url>"));
        tabs->setCurrentIndex(1);
        QCOMPARE(find<QSpinBox>(window, u"spinBox_maxBackupFiles"_s)->value(), 17);
        const auto* view = find<QAbstractItemView>(window, u"treeView_endpoints"_s);
        QVERIFY(view->model()->index(1, 2).data().toString().endsWith(u":4841"_s));
        tabs->setCurrentIndex(0);
        QVERIFY(view->model()->index(1, 2).data().toString().endsWith(u":4999"_s));
    }

    void tab_change_by_keyboard_works()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        QTest::keyClick(tabs, Qt::Key_Tab, Qt::ControlModifier);
        QCOMPARE(tabs->currentIndex(), 1);
    }

    void closing_with_a_file_that_vanished_asks_nothing_and_writes_nothing()
    {
        MessageBoxAnswer none(QList<MessageBoxAnswer::Expected>{});
        {
            ZandrelDialog window(QString(), m_file);
            window.show();
            makeEndpointsDirty(window);
            QVERIFY(QFile::remove(m_file));
            window.close();
            QVERIFY(!window.isVisible());
        }
        QVERIFY(!QFileInfo::exists(m_file));
        QCOMPARE(none.verdict(), QString());
    }

    void restart_text_stays_three_seconds_and_a_new_save_starts_it_anew()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        QElapsedTimer time;
        time.start();
        window.sltChangesSaved();
        QCOMPARE(window.statusBar()->currentMessage(), restartText);
        QTest::qWait(1500);
        window.sltChangesSaved();
        QTest::qWait(2000); // 3.5 seconds after the first save
        QCOMPARE(window.statusBar()->currentMessage(), restartText);
        QTRY_COMPARE_WITH_TIMEOUT(window.statusBar()->currentMessage(), QString(), 3000);
        QVERIFY(time.elapsed() >= 4300); // the bar's timer is coarse by a twentieth
    }

    void apply_of_either_tab_shows_the_restart_text()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        const auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        makeEndpointsDirty(window);
        QTest::mouseClick(find<QPushButton>(*tabs->widget(0), u"pushButton_apply"_s),
                          Qt::LeftButton);
        QCOMPARE(window.statusBar()->currentMessage(), restartText);
        window.statusBar()->clearMessage();
        makeTraceDirty(window);
        QTest::mouseClick(find<QPushButton>(*tabs->widget(1), u"pushButton_apply"_s),
                          Qt::LeftButton);
        QCOMPARE(window.statusBar()->currentMessage(), restartText);
    }

    void geometry_is_saved_at_the_end_and_restored_at_the_start()
    {
        {
            ZandrelDialog window(QString(), m_file);
            window.resize(760, 590);
            window.show();
        }
        QVERIFY(!storedGeometry(m_file).isEmpty());
        ZandrelDialog again(QString(), m_file);
        QCOMPARE(again.size(), QSize(760, 590));
    }

    void geometry_without_use_leaves_the_initial_size_data()
    {
        QTest::addColumn<QByteArray>("geometry");
        QTest::newRow("empty element") << QByteArray("<Geometry/>");
        QTest::newRow("no element") << QByteArray();
        QTest::newRow("no base 64") << QByteArray("<Geometry>&#228;!!</Geometry>");
        QTest::newRow("garbage") << QByteArray("<Geometry>QUJDREVGR0g=</Geometry>");
    }

    void geometry_without_use_leaves_the_initial_size()
    {
        QFETCH(const QByteArray, geometry);
        writeFile(m_file, sampleConfig().replace(
                              "</ServerConfiguration>",
                              "<ConfigTools><ZandrelDialog>" + geometry +
                                  "</ZandrelDialog></ConfigTools></ServerConfiguration>"));
        {
            ZandrelDialog window(QString(), m_file);
            QCOMPARE(window.size(), QSize(704, 538));
        }
        QCOMPARE(readFile(m_file).count("<Geometry>"), 1);
        QCOMPARE(readFile(m_file).count("<ConfigTools>"), 1);
    }

    void start_and_end_without_a_change_give_the_same_bytes_twice()
    {
        QByteArray attributes;
        for (int i = 0; i < 40; ++i) {
            attributes += " name" + QByteArray::number(i * 7919) + "=\"v\"";
        }
        writeFile(m_file,
                  sampleConfig().replace("<UaServerConfig>", "<UaServerConfig" + attributes + ">"));
        QByteArray bytes[2];
        for (QByteArray& after : bytes) {
            {
                ZandrelDialog window(QString(), m_file);
                window.show();
                window.close();
            }
            // The platform of the tests has a frame of its own, which moves the window.
            static const QRegularExpression geometry(u"<Geometry>[^<]*"_s);
            after = QString::fromUtf8(readFile(m_file)).remove(geometry).toUtf8();
        }
        QCOMPARE(bytes[1], bytes[0]);
        QCOMPARE(bytes[0].count(" name"), 40);
    }

    void host_name_goes_into_the_file_before_the_tabs_read_it()
    {
        const QString host = QHostInfo::localHostName();
        ZandrelDialog window(QString(), m_file);
        const auto* view = find<QAbstractItemView>(window, u"treeView_endpoints"_s);
        QCOMPARE(view->model()->index(0, 2).data().toString(), u"opc.tcp://%1:4840"_s.arg(host));
        QVERIFY(readFile(m_file).contains("<Url>opc.tcp://" + host.toUtf8() + ":4840</Url>"));
        QVERIFY(readFile(m_file).contains("<GroupHost>" + host.toUtf8() + "</GroupHost>"));
        QVERIFY(readFile(m_file).contains("<ServerName>Sample@[NodeName]</ServerName>"));
    }

    void first_show_stores_the_host_name_without_a_warning()
    {
        MessageBoxAnswer none(QList<MessageBoxAnswer::Expected>{});
        ZandrelDialog window(QString(), m_file);
        QCOMPARE(storedHostName(m_file), QString());
        window.show();
        QVERIFY(window.isVisible());
        QCOMPARE(storedHostName(m_file), QHostInfo::localHostName());
        QCOMPARE(none.verdict(), QString());
    }

    void new_host_name_warns_once()
    {
        writeFile(m_file, sampleConfig().replace("</ServerConfiguration>",
                                                 "<ConfigTools><ZandrelDialog><Hostname>former"
                                                 "</Hostname></ZandrelDialog></ConfigTools>"
                                                 "</ServerConfiguration>"));
        ZandrelDialog window(QString(), m_file);
        {
            MessageBoxAnswer answer(u"Change in Hostname Detected"_s, hostNameWarning,
                                    QMessageBox::Ok);
            answer.setInspection([this, &window](QMessageBox& box) {
                QCOMPARE(box.icon(), QMessageBox::Warning);
                QVERIFY(window.isVisible());
                QVERIFY(box.parentWidget() == &window);
                QCOMPARE(storedHostName(m_file), QHostInfo::localHostName());
            });
            window.show();
            QCOMPARE(answer.verdict(), QString());
        }
        MessageBoxAnswer none(QList<MessageBoxAnswer::Expected>{});
        window.hide();
        window.show();
        QCOMPARE(none.verdict(), QString());
    }

    void certificate_locations_are_read_with_their_placeholders()
    {
        const ZandrelDialog window(QString(), m_file);
        CertificateLocationInfo info;
        QVERIFY(window.readCertificateLocations(info));
        QCOMPARE(info.trustListLocation,
                 QCoreApplication::applicationDirPath() + u"/pki/trusted/certs/"_s);
        QCOMPARE(info.rejectedCertificatesDirectory, m_dir->path() + u"/pki/rejected/"_s);
        QCOMPARE(info.serverCertificate, m_dir->path() + u"/pki/own/certs/server.der"_s);
        QCOMPARE(info.tlsIssuersCertificatesLocation, QString());
        QCOMPARE(info.tlsIssuersRevocationListLocation, QString());
    }

    void certificate_settings_are_read_with_the_server_name()
    {
        const ZandrelDialog window(QString(), m_file);
        QString texts[6];
        QVERIFY(window.readCertificateSettings(texts[0], texts[1], texts[2], texts[3], texts[4],
                                               texts[5]));
        QCOMPARE(texts[0], u"Sample@"_s + QHostInfo::localHostName());
        QCOMPARE(texts[5], u"DE"_s);
    }

    void file_without_certificate_locations_has_two_tabs_and_both_guards()
    {
        writeFile(m_file, sampleConfig()
                              .replace("RejectedCertificatesDirectory", "Other")
                              .replace("DefaultApplicationCertificateStore", "OtherStore"));
        ZandrelDialog window(QString(), m_file);
        CertificateLocationInfo info;
        QVERIFY(!window.readCertificateLocations(info));
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        QCOMPARE(tabs->count(), 2);
        {
            makeEndpointsDirty(window);
            MessageBoxAnswer answer(u"Endpoints"_s, endpointsQuestion, QMessageBox::Discard);
            tabs->setCurrentIndex(1);
            QCOMPARE(answer.verdict(), QString());
        }
        makeTraceDirty(window);
        MessageBoxAnswer answer(u"Trace Settings"_s, traceQuestion, QMessageBox::Discard);
        tabs->setCurrentIndex(0);
        QCOMPARE(answer.verdict(), QString());
    }

    void certificates_tab_needs_all_locations_data()
    {
        QTest::addColumn<QByteArray>("element");
        for (const char* element :
             {"RejectedCertificatesDirectory", "CertificateTrustListLocation",
              "CertificateRevocationListLocation", "IssuersCertificatesLocation",
              "IssuersRevocationListLocation", "ServerPrivateKey"}) {
            QTest::newRow(element) << QByteArray(element);
        }
    }

    void certificates_tab_needs_all_locations()
    {
        QFETCH(const QByteArray, element);
        writeFile(m_file, sampleConfig()
                              .replace('<' + element + '>', "<Other>")
                              .replace("</" + element + '>', "</Other>"));
        const ZandrelDialog window(QString(), m_file);
        QCOMPARE(find<QTabWidget>(window, u"tabWidget"_s)->count(), 2);
        QVERIFY(!window.findChild<VeskCertificateManager*>());
    }

    void certificates_tab_shows_the_two_pages_of_the_file()
    {
        makeCertificateDirectories();
        ZandrelDialog window(QString(), m_file);
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        tabs->setCurrentIndex(2);
        auto* manager = qobject_cast<VeskCertificateManager*>(tabs->currentWidget());
        QVERIFY(manager);
        const auto* pages = find<QTabWidget>(*manager, u"tabWidget"_s);
        QCOMPARE(pages->count(), 2);
        QCOMPARE(pages->tabText(0), u"Trusted"_s);
        QCOMPARE(pages->tabText(1), u"Issuers"_s);
        QVERIFY(find<QPushButton>(*manager, u"pushButton_CreateNewCertificate"_s)->isEnabled());
    }

    void certificates_tab_is_not_reloaded_when_it_comes_into_view()
    {
        makeCertificateDirectories();
        ZandrelDialog window(QString(), m_file);
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        auto* copy = find<QPushButton>(window, u"pushButton_CopyCertificateTo"_s);
        QVERIFY(copy->isEnabled());
        QVERIFY(QFile::remove(m_dir->filePath(u"pki/own/certs/server.der"_s)));
        tabs->setCurrentIndex(2);
        QVERIFY(copy->isEnabled());
        QTest::keyClick(find<QTreeView>(window, u"treeView_trustedCerts"_s), Qt::Key_F5);
        QVERIFY(!copy->isEnabled());
    }

    void leaving_a_dirty_tab_for_the_certificates_asks_and_keeps_the_other_tabs()
    {
        ZandrelDialog window(QString(), m_file);
        window.show();
        auto* tabs = find<QTabWidget>(window, u"tabWidget"_s);
        makeEndpointsDirty(window);
        MessageBoxAnswer answer(u"Endpoints"_s, endpointsQuestion, QMessageBox::Discard);
        tabs->setCurrentIndex(2);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(tabs->currentIndex(), 2);
        QCOMPARE(window.statusBar()->currentMessage(), QString());
    }

private:
    /// The directories that the file names beside itself, and a file for the own certificate.
    void makeCertificateDirectories() const
    {
        for (const QString& name : {u"pki/rejected"_s, u"pki/own/certs"_s, u"pki/own/private"_s}) {
            QVERIFY(QDir(m_dir->path()).mkpath(name));
        }
        writeFile(m_dir->filePath(u"pki/own/certs/server.der"_s), "a certificate");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_file;
};

ZANDREL_TEST_MAIN(ZandrelDialogTest)

#include "zandreldialog_test.moc"
