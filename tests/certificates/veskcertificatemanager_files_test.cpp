#include "tests/certificates/certificatestab.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/configsample.h"
#include "tests/support/filedialoganswer.h"
#include "tests/support/messageboxanswer.h"
#include "tests/support/smalldisk.h"
#include "tests/support/testmain.h"
#include "tests/support/unprivileged.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString managerTitle = u"CertificateManager"_s;

MessageBoxAnswer::Expected warning(const QString& text)
{
    return {managerTitle, text, QMessageBox::Ok};
}

QString trustFailure(const QString& file)
{
    return u"Could not move certificate %1 to the trusted directory"_s.arg(file);
}

QString rejectFailure(const QString& file)
{
    return u"Could not move certificate %1 to the rejected directory"_s.arg(file);
}

struct DeletableList
{
    const char* view;
    QString directory;
    bool isOfCertificates;

    [[nodiscard]] QString title() const
    {
        return isOfCertificates ? u"Delete Certificate"_s : u"Delete CRL"_s;
    }
    [[nodiscard]] QString question() const
    {
        return isOfCertificates ? u"Do you really want to delete the selected certificate?"_s
                                : u"Do you really want to delete the selected CRL?"_s;
    }
    [[nodiscard]] QString failure() const
    {
        return isOfCertificates ? u"Could not delete certificate %1"_s
                                : u"Could not delete CRL %1"_s;
    }
    void put(const CertificatesTab& tab, const QString& name) const
    {
        if (isOfCertificates) {
            tab.putCertificate(directory, name);
        } else {
            tab.putRevocationList(directory, name);
        }
    }
};

const DeletableList deletableLists[] = {{"treeView_trustedCerts", u"trusted"_s, true},
                                        {"treeView_issuerCerts", u"issuers"_s, true},
                                        {"treeView_tlsIssuerCerts", u"tls"_s, true},
                                        {"treeView_trustedCRLs", u"crl"_s, false},
                                        {"treeView_issuerCRLs", u"issuersCrl"_s, false},
                                        {"treeView_tlsIssuerCRLs", u"tlsCrl"_s, false}};

void deletableRows()
{
    QTest::addColumn<int>("list");
    for (int i = 0; i < 6; ++i) {
        QTest::newRow(deletableLists[i].view) << i;
    }
}

} // namespace

class VeskCertificateManagerFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trust_and_reject_move_the_file_and_the_current_row_follows()
    {
        CertificatesTab tab;
        for (const QString& name : {u"a.der"_s, u"b.der"_s, u"c.der"_s}) {
            tab.putCertificate(u"rejected"_s, name);
        }
        const QByteArray content = readFile(tab.path(u"rejected"_s, u"b.der"_s));
        tab.open();
        MessageBoxAnswer none({});
        tab.contextMenu(tab.trusted(), u"b.der"_s, u"Trust"_s);
        QCOMPARE(tab.rows(tab.trusted()),
                 QStringList({u"Trusted b.der"_s, u"Untrusted a.der"_s, u"Untrusted c.der"_s}));
        QCOMPARE(readFile(tab.path(u"trusted"_s, u"b.der"_s)), content);
        QVERIFY(!QFile::exists(tab.path(u"rejected"_s, u"b.der"_s)));
        QCOMPARE(tab.currentFile(tab.trusted()), u"b.der"_s);
        QVERIFY(tab.trusted().selectionModel()->isSelected(tab.trusted().currentIndex()));

        tab.contextMenu(tab.trusted(), u"b.der"_s, u"Reject"_s);
        QCOMPARE(tab.currentFile(tab.trusted()), u"b.der"_s);
        QCOMPARE(readFile(tab.path(u"rejected"_s, u"b.der"_s)), content);
        QVERIFY(!QFile::exists(tab.path(u"trusted"_s, u"b.der"_s)));
        QCOMPARE(none.verdict(), QString());
    }

    void trust_keeps_both_files_when_the_target_exists()
    {
        CertificatesTab tab;
        const QString rejected = tab.putCertificate(u"rejected"_s, u"a.der"_s);
        const QString trusted = tab.put(u"trusted"_s, u"a.der"_s, "another file");
        const QByteArray content = readFile(rejected);
        tab.open();
        MessageBoxAnswer answer({warning(trustFailure(rejected))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Trust"_s);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(readFile(rejected), content);
        QCOMPARE(readFile(trusted), "another file");
        QCOMPARE(tab.rows(tab.trusted()), QStringList{u"Untrusted a.der"_s});
        QCOMPARE(tab.currentFile(tab.trusted()), u"a.der"_s);
    }

    void reject_keeps_both_files_when_the_target_exists()
    {
        CertificatesTab tab;
        const QString trusted = tab.putCertificate(u"trusted"_s, u"a.der"_s);
        const QString rejected = tab.put(u"rejected"_s, u"a.der"_s, "another file");
        tab.open();
        MessageBoxAnswer answer({warning(rejectFailure(trusted))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Reject"_s);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(QFile::exists(trusted));
        QCOMPARE(readFile(rejected), "another file");
    }

    void file_that_vanished_cannot_be_moved()
    {
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"rejected"_s, u"a.der"_s);
        tab.open();
        QVERIFY(QFile::remove(file));
        MessageBoxAnswer answer({warning(trustFailure(file))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Trust"_s);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(tab.rows(tab.trusted()), QStringList()); // the list was filled again
        QVERIFY(!QFile::exists(tab.path(u"trusted"_s, u"a.der"_s)));
    }

    void move_without_a_current_row_fails()
    {
        CertificatesTab tab;
        tab.open();
        MessageBoxAnswer answer({warning(trustFailure(QString()))});
        tab.child<QAction>("actionTrust").trigger();
        QCOMPARE(answer.verdict(), QString());
    }

    void missing_trusted_directory_cannot_take_a_file_data()
    {
        QTest::addColumn<bool>("isNamed");
        QTest::newRow("not there") << true;
        QTest::newRow("without a name") << false; // not the working directory
    }

    void missing_trusted_directory_cannot_take_a_file()
    {
        QFETCH(const bool, isNamed);
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"rejected"_s, u"a.der"_s);
        QVERIFY(QDir(tab.directory.path()).rmdir(u"trusted"_s));
        if (!isNamed) {
            tab.info.trustListLocation.clear();
        }
        tab.open();
        MessageBoxAnswer answer({warning(trustFailure(file))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Trust"_s);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(QFile::exists(file));
        QVERIFY(!QFile::exists(tab.path(u"trusted"_s, QString())));
        QVERIFY(!QFile::exists(u"a.der"_s));
    }

    void same_directory_for_both_moves_nothing()
    {
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.info.rejectedCertificatesDirectory = tab.info.trustListLocation;
        tab.open();
        MessageBoxAnswer answer({warning(rejectFailure(file))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Reject"_s);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(QFile::exists(file));
    }

    void read_only_directories_data()
    {
        QTest::addColumn<QString>("directory");
        QTest::addColumn<bool>("isCopied");
        QTest::newRow("the target") << u"trusted"_s << false;
        QTest::newRow("the source") << u"rejected"_s << true;
    }

    void read_only_directories()
    {
        QFETCH(const QString, directory);
        QFETCH(const bool, isCopied);
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"rejected"_s, u"a.der"_s);
        QFile::setPermissions(tab.directory.path(), QFile::Permissions(0x7777));
        for (const QString& name : {u"trusted"_s, u"rejected"_s}) {
            QFile::setPermissions(tab.path(name, QString()),
                                  QFile::Permissions(name == directory ? 0x5555 : 0x7777));
        }
        tab.open();
        MessageBoxAnswer answer({warning(trustFailure(file))});
        {
            const Unprivileged user;
            tab.contextMenu(tab.trusted(), u"a.der"_s, u"Trust"_s);
        }
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(QFile::exists(file));
        QCOMPARE(QFile::exists(tab.path(u"trusted"_s, u"a.der"_s)), isCopied);
        QCOMPARE(tab.trusted().model()->rowCount(), isCopied ? 2 : 1);
        QFile::setPermissions(tab.path(directory, QString()), QFile::Permissions(0x7777));
    }

    void full_disk_keeps_the_file()
    {
        SmallDisk disk(64);
        if (!disk.isMounted()) {
            QSKIP(qPrintable(disk.reason()));
        }
        CertificatesTab tab;
        TestCertificate source;
        source.uri = QString(20000, u'u');
        const QByteArray content = source.der();
        const QString file = tab.put(u"rejected"_s, u"a.der"_s, content);
        tab.info.trustListLocation = disk.filePath(u"./"_s);
        disk.fillUpTo(4);
        tab.open();
        MessageBoxAnswer answer({warning(trustFailure(file))});
        tab.contextMenu(tab.trusted(), u"a.der"_s, u"Trust"_s);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(readFile(file), content);
        QCOMPARE(QDir(tab.info.trustListLocation).entryList(QDir::Files), QStringList{u"filler"_s});
    }

    void unusual_names_are_moved_and_deleted_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("blanks") << u" a  b .der"_s;
        QTest::newRow("umlauts") << u"Größe Ω.der"_s;
        QTest::newRow("outside the basic plane") << u"\U0001F511.der"_s;
        QTest::newRow("255 bytes") << QString(QString(251, u'x') + u".der"_s);
        QTest::newRow("markup") << u"<b>a&amp;<img src=x>.der"_s;
        QTest::newRow("line break") << u"a\nb.der"_s;
        QTest::newRow("right to left") << u"a\u202Ered.der"_s;
        QTest::newRow("percent") << u"%1%2.der"_s;
        QTest::newRow("options") << u"--help.der"_s;
    }

    void unusual_names_are_moved_and_deleted()
    {
        QFETCH(const QString, name);
        CertificatesTab tab;
        tab.putCertificate(u"rejected"_s, name);
        tab.open();
        tab.contextMenu(tab.trusted(), name, u"Trust"_s);
        QVERIFY(QFile::exists(tab.path(u"trusted"_s, name)));
        MessageBoxAnswer answer(
            {{u"Delete Certificate"_s, deletableLists[0].question(), QMessageBox::Ok}});
        tab.contextMenu(tab.trusted(), name, u"Delete"_s);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(!QFile::exists(tab.path(u"trusted"_s, name)));
        QCOMPARE(tab.trusted().model()->rowCount(), 0);
    }

    void boxes_show_unusual_names_as_plain_text()
    {
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"rejected"_s, u"<b>a\nb\u202E%1.der"_s);
        tab.put(u"trusted"_s, QFileInfo(file).fileName(), "in the way");
        tab.open();
        const QString shown = tab.path(u"rejected"_s, u"<b>a b\ufffd%1.der"_s);
        MessageBoxAnswer answer(
            {warning(trustFailure(QString()).replace(u"  "_s, u" %1 "_s).replace(u"%1"_s, shown))});
        Qt::TextFormat format = Qt::AutoText;
        answer.setInspection([&format](QMessageBox& box) { format = box.textFormat(); });
        tab.contextMenu(tab.trusted(), QFileInfo(file).fileName(), u"Trust"_s);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(format, Qt::PlainText);
    }

    void link_is_moved_as_the_file_that_it_names()
    {
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"own"_s, u"a.der"_s);
        QVERIFY(QFile::link(u"../own/a.der"_s, tab.path(u"rejected"_s, u"link.der"_s)));
        tab.open();
        tab.contextMenu(tab.trusted(), u"link.der"_s, u"Trust"_s);
        const QFileInfo moved(tab.path(u"trusted"_s, u"link.der"_s));
        QVERIFY(moved.isFile() && !moved.isSymLink());
        QVERIFY(!QFileInfo(tab.path(u"rejected"_s, u"link.der"_s)).isSymLink());
        QCOMPARE(readFile(moved.filePath()), readFile(file));
    }

    void delete_asks_first_data() { deletableRows(); }

    void delete_asks_first()
    {
        QFETCH(const int, list);
        const DeletableList& what = deletableLists[list];
        CertificatesTab tab;
        for (const QString& name : {u"a.der"_s, u"b.der"_s, u"c.der"_s}) {
            what.put(tab, name);
        }
        tab.open();
        QTreeView& view = tab.view(what.view);
        view.sortByColumn(view.model()->columnCount() - 1, Qt::AscendingOrder);
        tab.showPageOf(view);
        tab.select(view, u"b.der"_s);
        {
            MessageBoxAnswer answer({{what.title(), what.question(), QMessageBox::Cancel}});
            answer.setInspection([](QMessageBox& box) {
                QCOMPARE(box.icon(), QMessageBox::Question);
                QCOMPARE(box.standardButtons(), QMessageBox::Ok | QMessageBox::Cancel);
            });
            tab.press(view, Qt::Key_Delete);
            QCOMPARE(answer.verdict(), QString());
            QVERIFY(QFile::exists(tab.path(what.directory, u"b.der"_s)));
        }
        MessageBoxAnswer answer({{what.title(), what.question(), QMessageBox::Ok}});
        tab.press(view, Qt::Key_Delete);
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(!QFile::exists(tab.path(what.directory, u"b.der"_s)));
        QVERIFY(QFile::exists(tab.path(what.directory, u"c.der"_s)));
        QCOMPARE(view.model()->rowCount(), 2);
        QCOMPARE(tab.currentFile(view), u"c.der"_s); // what came to its place
    }

    void delete_that_fails_is_told_and_keeps_the_list_data() { deletableRows(); }

    void delete_that_fails_is_told_and_keeps_the_list()
    {
        QFETCH(const int, list);
        const DeletableList& what = deletableLists[list];
        CertificatesTab tab;
        what.put(tab, u"a.der"_s);
        tab.open();
        QTreeView& view = tab.view(what.view);
        const QString file = tab.path(what.directory, u"a.der"_s);
        QVERIFY(QFile::remove(file));
        MessageBoxAnswer answer(
            {{what.title(), what.question(), QMessageBox::Ok}, warning(what.failure().arg(file))});
        tab.contextMenu(view, u"a.der"_s, u"Delete"_s);
        QCOMPARE(answer.verdict(), QString());
        QCOMPARE(view.model()->rowCount(), 1);
    }

    void delete_without_a_current_row_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("list");
        QTest::newRow("certificate") << u"actionDeleteTrusted"_s << 0;
        QTest::newRow("list") << u"actionDeleteTrustedCRL"_s << 3;
    }

    void delete_without_a_current_row()
    {
        QFETCH(const QString, action);
        QFETCH(const int, list);
        const DeletableList& what = deletableLists[list];
        CertificatesTab tab;
        tab.open();
        QList<MessageBoxAnswer::Expected> boxes = {
            {what.title(), what.question(), QMessageBox::Ok}};
        if (!what.isOfCertificates) {
            boxes.append(warning(what.failure().arg(QString())));
        }
        MessageBoxAnswer answer(boxes);
        tab.child<QAction>(action.toLatin1().constData()).trigger();
        QCOMPARE(answer.verdict(), QString());
    }

    void delete_key_does_nothing_data()
    {
        QTest::addColumn<QString>("selected");
        QTest::newRow("on the own certificate") << u"server.der"_s;
        QTest::newRow("without a selection") << QString();
    }

    void delete_key_does_nothing()
    {
        QFETCH(const QString, selected);
        CertificatesTab tab;
        tab.putOwn();
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        if (!selected.isEmpty()) {
            tab.select(tab.trusted(), selected);
        }
        MessageBoxAnswer none({});
        tab.press(tab.trusted(), Qt::Key_Delete);
        tab.trusted().selectionModel()->clearSelection();
        tab.press(tab.trusted(), Qt::Key_Delete);
        QCOMPARE(none.verdict(), QString());
        QVERIFY(QFile::exists(tab.info.serverCertificate));
        QCOMPARE(tab.trusted().model()->rowCount(), 2);
    }

    void own_certificate_among_the_issuers_cannot_be_deleted()
    {
        CertificatesTab tab;
        tab.info.serverCertificate = tab.putCertificate(u"issuers"_s, u"own.der"_s);
        tab.open();
        QTreeView& view = tab.view("treeView_issuerCerts");
        tab.showPageOf(view);
        tab.select(view, u"own.der"_s);
        MessageBoxAnswer none({});
        tab.press(view, Qt::Key_Delete);
        QCOMPARE(none.verdict(), QString());
        QVERIFY(QFile::exists(tab.info.serverCertificate));
    }

    void read_only_folder_keeps_the_file_from_deletion()
    {
        CertificatesTab tab;
        const QString file = tab.putCertificate(u"trusted"_s, u"a.der"_s);
        QFile::setPermissions(tab.directory.path(), QFile::Permissions(0x7777));
        QFile::setPermissions(tab.info.trustListLocation, QFile::Permissions(0x5555));
        tab.open();
        MessageBoxAnswer answer(
            {{u"Delete Certificate"_s, deletableLists[0].question(), QMessageBox::Ok},
             warning(u"Could not delete certificate %1"_s.arg(file))});
        {
            const Unprivileged user;
            tab.contextMenu(tab.trusted(), u"a.der"_s, u"Delete"_s);
        }
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(QFile::exists(file));
    }

    void menu_follows_status_and_kind_data()
    {
        QTest::addColumn<QString>("view");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("entries");
        QTest::newRow("rejected") << u"treeView_trustedCerts"_s << u"rejected.der"_s
                                  << QStringList{u"Trust"_s, u"-Reject"_s, u"Delete"_s,
                                                 u"Open..."_s};
        QTest::newRow("trusted") << u"treeView_trustedCerts"_s << u"trusted.der"_s
                                 << QStringList{u"-Trust"_s, u"Reject"_s, u"Delete"_s,
                                                u"Open..."_s};
        QTest::newRow("own") << u"treeView_trustedCerts"_s << u"server.der"_s
                             << QStringList{u"Open..."_s, u"Create New..."_s};
        const QStringList two = {u"Delete"_s, u"Open..."_s};
        QTest::newRow("issuer") << u"treeView_issuerCerts"_s << u"issuer.der"_s << two;
        QTest::newRow("TLS issuer") << u"treeView_tlsIssuerCerts"_s << u"tls.der"_s << two;
        QTest::newRow("list") << u"treeView_trustedCRLs"_s << u"a.crl"_s << two;
        QTest::newRow("issuers' list") << u"treeView_issuerCRLs"_s << u"b.crl"_s << two;
        QTest::newRow("TLS issuers' list") << u"treeView_tlsIssuerCRLs"_s << u"c.crl"_s << two;
    }

    void menu_follows_status_and_kind()
    {
        QFETCH(const QString, view);
        QFETCH(const QString, file);
        QFETCH(const QStringList, entries);
        CertificatesTab tab;
        tab.putOwn();
        tab.putCertificate(u"trusted"_s, u"trusted.der"_s);
        tab.putCertificate(u"rejected"_s, u"rejected.der"_s);
        tab.putCertificate(u"issuers"_s, u"issuer.der"_s);
        tab.putCertificate(u"tls"_s, u"tls.der"_s);
        tab.putRevocationList(u"crl"_s, u"a.crl"_s);
        tab.putRevocationList(u"issuersCrl"_s, u"b.crl"_s);
        tab.putRevocationList(u"tlsCrl"_s, u"c.crl"_s);
        tab.open();
        QTreeView& list = tab.view(view.toLatin1().constData());
        QCOMPARE(tab.contextMenu(list, file), entries);
        // The entry "Open..." is that of the list: it opens this very file.
        const OpenedUrls opened;
        tab.contextMenu(list, file, u"Open..."_s);
        QCOMPARE(opened.paths.size(), 1);
        QCOMPARE(QFileInfo(opened.paths.first()).fileName(), file);
    }

    void own_certificate_among_the_issuers_opens_too()
    {
        CertificatesTab tab;
        tab.info.serverCertificate = tab.putCertificate(u"issuers"_s, u"own.der"_s);
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        tab.select(tab.trusted(), u"a.der"_s);
        const OpenedUrls opened;
        QCOMPARE(tab.contextMenu(tab.view("treeView_issuerCerts"), u"own.der"_s, u"Open..."_s),
                 QStringList({u"Open..."_s, u"Create New..."_s}));
        QCOMPARE(opened.paths, QStringList{tab.info.serverCertificate});
    }

    void missing_rejected_directory_disables_reject()
    {
        CertificatesTab tab;
        QVERIFY(QDir(tab.directory.path()).rmdir(u"rejected"_s));
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        QVERIFY(!tab.child<QAction>("actionReject").isEnabled());
        QCOMPARE(tab.contextMenu(tab.trusted(), u"a.der"_s),
                 QStringList({u"-Trust"_s, u"-Reject"_s, u"Delete"_s, u"Open..."_s}));
    }

    void empty_space_has_no_menu()
    {
        CertificatesTab tab;
        tab.putCertificate(u"trusted"_s, u"a.der"_s);
        tab.open();
        const QPoint below(20, tab.trusted().viewport()->height() - 5);
        QVERIFY(!tab.trusted().indexAt(below).isValid());
        QCOMPARE(tab.contextMenuAt(tab.trusted(), below), QStringList());
    }

    void double_click_opens_the_file_data() { deletableRows(); }

    void double_click_opens_the_file()
    {
        QFETCH(const int, list);
        const DeletableList& what = deletableLists[list];
        CertificatesTab tab;
        what.put(tab, u"ä b#c%20.der"_s);
        tab.open();
        QTreeView& view = tab.view(what.view);
        tab.showPageOf(view);
        tab.select(view, u"ä b#c%20.der"_s);
        const OpenedUrls opened;
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier,
                           view.visualRect(view.currentIndex()).center());
        QCOMPARE(opened.paths, QStringList{tab.path(what.directory, u"ä b#c%20.der"_s)});
    }

    void location_buttons_open_the_directories_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("directory");
        QTest::newRow("trusted") << u"pushButton_OpenCertLocationTrusted"_s << u"trusted"_s;
        QTest::newRow("issuers") << u"pushButton_OpenCertLocationIssuers"_s << u"issuers"_s;
        QTest::newRow("TLS issuers") << u"pushButton_OpenCertLocationTLSIssuers"_s << u"tls"_s;
    }

    void location_buttons_open_the_directories()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, directory);
        CertificatesTab tab;
        tab.open();
        const OpenedUrls opened;
        tab.click(button.toLatin1().constData());
        QCOMPARE(opened.paths, QStringList{tab.directory.filePath(directory)});
    }

    void open_without_a_current_row_opens_nothing()
    {
        CertificatesTab tab;
        tab.open();
        const OpenedUrls opened;
        for (const char* name :
             {"actionOpenTrusted", "actionOpenIssuer", "actionOpenTLSIssuer",
              "actionOpenTrustedCRL", "actionOpenIssuerCRL", "actionOpenTLSIssuerCRL"}) {
            tab.child<QAction>(name).trigger();
        }
        QCOMPARE(opened.paths, QStringList());
    }

    void copy_asks_where_to()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        FileDialogAnswer dialog(u"copy.der"_s);
        MessageBoxAnswer none({});
        tab.click("pushButton_CopyCertificateTo");
        QCOMPARE(dialog.timesShown(), 1);
        QVERIFY(dialog.isForSaving());
        QCOMPARE(dialog.nameFilters(), QStringList{u"Certificates (*.der)"_s});
        QCOMPARE(dialog.directory(), tab.directory.filePath(u"own"_s));
        QCOMPARE(dialog.fileName(), u"server.der"_s);
        QCOMPARE(readFile(tab.path(u"own"_s, u"copy.der"_s)), readFile(tab.info.serverCertificate));
        QVERIFY(!readFile(tab.info.serverCertificate).isEmpty());
        QCOMPARE(none.verdict(), QString());
    }

    void copy_that_is_cancelled_does_nothing()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        const FileDialogAnswer dialog({});
        MessageBoxAnswer none({});
        tab.click("pushButton_CopyCertificateTo");
        QCOMPARE(dialog.timesShown(), 1);
        QCOMPARE(QDir(tab.directory.filePath(u"own"_s)).count(), 4u); // with "." and ".."
        QCOMPARE(none.verdict(), QString());
    }

    void copy_that_fails_is_told()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        QFile::setPermissions(tab.directory.path(), QFile::Permissions(0x7777));
        QFile::setPermissions(tab.directory.filePath(u"own"_s), QFile::Permissions(0x5555));
        const FileDialogAnswer dialog(u"copy.der"_s);
        MessageBoxAnswer answer(u"Could Not Copy Certificate"_s,
                                u"The application certificate could not be copied to '%1'."_s.arg(
                                    tab.path(u"own"_s, u"copy.der"_s)),
                                QMessageBox::Ok);
        answer.setInspection(
            [](QMessageBox& box) { QCOMPARE(box.icon(), QMessageBox::Information); });
        {
            const Unprivileged user;
            tab.click("pushButton_CopyCertificateTo");
        }
        QCOMPARE(answer.verdict(), QString());
        QVERIFY(!QFile::exists(tab.path(u"own"_s, u"copy.der"_s)));
    }

    void copy_of_a_certificate_that_vanished_is_told()
    {
        CertificatesTab tab;
        tab.putOwn();
        tab.open();
        QVERIFY(QFile::remove(tab.info.serverCertificate));
        MessageBoxAnswer answer(
            u"Certificate Not Found"_s,
            u"The application certificate '%1' does not exist."_s.arg(tab.info.serverCertificate),
            QMessageBox::Ok);
        tab.click("pushButton_CopyCertificateTo");
        QCOMPARE(answer.verdict(), QString());
    }
};

ZANDREL_TEST_MAIN(VeskCertificateManagerFilesTest)

#include "veskcertificatemanager_files_test.moc"
