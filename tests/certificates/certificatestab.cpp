#include "tests/certificates/certificatestab.h"

#include "certificates/veskcertificatemodel.h"
#include "pki/uapkirsakeypair.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/configsample.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

const QString directories[] = {u"trusted"_s, u"rejected"_s,   u"issuers"_s, u"tls"_s,
                               u"crl"_s,     u"issuersCrl"_s, u"tlsCrl"_s,  u"own"_s};

QString cell(const QTreeView& view, int row, int column)
{
    return view.model()->index(row, column).data().toString();
}

QString fileOf(const QTreeView& view, int row)
{
    return QFileInfo(cell(view, row, view.model()->columnCount() - 1)).fileName();
}

QModelIndex indexOf(const QTreeView& view, const QString& name)
{
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        if (fileOf(view, row) == name) {
            return view.model()->index(row, 0);
        }
    }
    qFatal("no file %s in %s", qPrintable(name), qPrintable(view.objectName()));
}

} // namespace

CertificatesTab::CertificatesTab()
{
    for (const QString& name : directories) {
        QDir(directory.path()).mkdir(name);
    }
    info.trustListLocation = path(u"trusted"_s, QString());
    info.rejectedCertificatesDirectory = path(u"rejected"_s, QString());
    info.issuersCertificatesLocation = path(u"issuers"_s, QString());
    info.tlsIssuersCertificatesLocation = path(u"tls"_s, QString());
    info.revocationListLocation = path(u"crl"_s, QString());
    info.issuersRevocationListLocation = path(u"issuersCrl"_s, QString());
    info.tlsIssuersRevocationListLocation = path(u"tlsCrl"_s, QString());
    info.serverCertificate = path(u"own"_s, u"server.der"_s);
    info.serverPrivateKey = path(u"own"_s, u"server.pem"_s);
}

QString CertificatesTab::path(const QString& where, const QString& name) const
{
    return directory.path() + u'/' + where + u'/' + name;
}

QString CertificatesTab::put(const QString& where, const QString& name,
                             const QByteArray& content) const
{
    return writeFile(path(where, name), content);
}

QString CertificatesTab::putCertificate(const QString& where, const QString& name) const
{
    TestCertificate certificate;
    certificate.name = name.section(u'.', 0, 0);
    return put(where, name, certificate.der());
}

QString CertificatesTab::putRevocationList(const QString& where, const QString& name) const
{
    return put(where, name, TestRevocationList().der());
}

void CertificatesTab::putOwn() const
{
    UaPkiIdentity subject;
    subject.commonName = "Own server";
    subject.organization = "Own organization";
    subject.organizationUnit = "Own unit";
    subject.locality = "Own locality";
    subject.state = "Own state";
    subject.country = "CH";
    UaPkiCertificateInfo content;
    content.uri = "urn:own";
    content.validTime = 86400 * 100;
    if (content.ipAddresses.create(1) != OpcUa_Good ||
        UaString("192.168.0.7").copyTo(&content.ipAddresses[0]) != OpcUa_Good) {
        qFatal("no memory");
    }
    const UaPkiRSAKeyPair keyPair(1024);
    const UaPkiCertificate certificate(content, subject, keyPair, false,
                                       UaPkiCertificate::Sha256WithRsa);
    if (certificate.toDERFile(qPrintable(info.serverCertificate)) != 0 ||
        keyPair.toPEMFile(qPrintable(info.serverPrivateKey), nullptr) != 0) {
        qFatal("no own certificate");
    }
}

void CertificatesTab::open()
{
    widget = std::make_unique<VeskCertificateManager>(QString(), QString(), info,
                                                      QIcon(u":/images/ua_64x64.png"_s), false);
    widget->resize(900, 600);
    widget->show();
    if (!QTest::qWaitForWindowActive(widget.get())) {
        qFatal("the tab isn't shown");
    }
}

void CertificatesTab::showPageOf(const QWidget& part) const
{
    auto& pages = child<QTabWidget>("tabWidget");
    for (int i = 0; i < pages.count(); ++i) {
        if (pages.widget(i)->isAncestorOf(&part)) {
            pages.setCurrentIndex(i);
        }
    }
}

void CertificatesTab::click(const char* button) const
{
    auto& target = child<QAbstractButton>(button);
    showPageOf(target);
    QTest::mouseClick(&target, Qt::LeftButton);
}

void CertificatesTab::press(QTreeView& view, Qt::Key key) const
{
    showPageOf(view);
    view.setFocus();
    // No window manager gives back what a box took that was just closed.
    widget->activateWindow();
    if (!QTest::qWaitForWindowActive(widget.get())) {
        qFatal("the tab isn't active");
    }
    QTest::keyClick(&view, key);
}

QStringList CertificatesTab::rows(const QTreeView& view)
{
    QStringList result;
    for (int row = 0; row < view.model()->rowCount(); ++row) {
        result.append(cell(view, row, 0) + u' ' + fileOf(view, row));
    }
    return result;
}

QString CertificatesTab::currentFile(const QTreeView& view)
{
    return view.currentIndex().isValid() ? fileOf(view, view.currentIndex().row()) : QString();
}

void CertificatesTab::select(QTreeView& view, const QString& name)
{
    const QModelIndex index = indexOf(view, name);
    view.scrollTo(index);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier,
                      view.visualRect(index).center());
}

QStringList CertificatesTab::contextMenu(QTreeView& view, const QString& name,
                                         const QString& entry) const
{
    showPageOf(view);
    const QModelIndex index = indexOf(view, name);
    view.scrollTo(index);
    return contextMenuAt(view, view.visualRect(index).center(), entry);
}

QStringList CertificatesTab::contextMenuAt(QTreeView& view, const QPoint& position,
                                           const QString& entry)
{
    QStringList entries;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu) {
            return;
        }
        timer.stop();
        for (QAction* action : menu->actions()) {
            entries.append((action->isEnabled() ? QString() : u"-"_s) + action->text());
            if (action->text() == entry) {
                menu->setActiveAction(action);
            }
        }
        QTest::keyClick(menu, entry.isEmpty() ? Qt::Key_Escape : Qt::Key_Return);
    });
    timer.start(5);
    QTest::mouseClick(view.viewport(), Qt::RightButton, Qt::NoModifier, position);
    QContextMenuEvent event(QContextMenuEvent::Mouse, position,
                            view.viewport()->mapToGlobal(position));
    QApplication::sendEvent(view.viewport(), &event);
    return entries;
}

OpenedUrls::OpenedUrls()
{
    QDesktopServices::setUrlHandler(u"file"_s, this, "open");
}

OpenedUrls::~OpenedUrls()
{
    QDesktopServices::unsetUrlHandler(u"file"_s);
}

void OpenedUrls::open(const QUrl& url)
{
    paths.append(url.toLocalFile());
}
