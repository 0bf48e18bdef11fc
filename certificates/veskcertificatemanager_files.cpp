#include "certificates/certificatefiles.h"
#include "certificates/veskcertificatemanager.h"
#include "certificates/veskcertificatemodel.h"
#include "certificates/veskcrlmodel.h"
#include "certificates/vesklistsortmodel.h"
#include "widgets/displaytext.h"
#include "widgets/plainmessagebox.h"

#include "ui_veskcertificatemanager.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QUrl>

namespace {

/// Shows a file or directory with the desktop's program for it; without one nothing happens.
void openPath(const QString& path)
{
    if (!path.isEmpty()) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(QDir(path).absolutePath()));
    }
}

QString currentFile(const QTreeView& view, int fileColumn)
{
    return view.currentIndex().siblingAtColumn(fileColumn).data().toString();
}

QString currentCertificate(const QTreeView& view)
{
    return currentFile(view, VeskCertificateModel::FilenameColumn);
}

QString currentRevocationList(const QTreeView& view)
{
    return currentFile(view, VeskCRLModel::FilenameColumn);
}

const QAbstractItemModel* sourceOf(const QTreeView& view)
{
    return static_cast<const VeskListSortModel*>(view.model())->sourceModel();
}

} // namespace

void VeskCertificateManager::warn(const QString& text, const QString& file)
{
    showPlainMessageBox(this, QMessageBox::Warning, tr("CertificateManager"),
                        text.arg(lineForDisplay(file)));
}

void VeskCertificateManager::sltOpenCertLocationTrusted()
{
    openPath(m_info.trustListLocation);
}

void VeskCertificateManager::sltOpenCertLocationIssuers()
{
    openPath(m_info.issuersCertificatesLocation);
}

void VeskCertificateManager::sltOpenCertLocationTLSIssuers()
{
    openPath(m_info.tlsIssuersCertificatesLocation);
}

void VeskCertificateManager::sltOpenCertificateTrusted()
{
    openPath(currentCertificate(*ui->treeView_trustedCerts));
}

void VeskCertificateManager::sltOpenCertificateIssuer()
{
    openPath(currentCertificate(*ui->treeView_issuerCerts));
}

void VeskCertificateManager::sltOpenCertificateTLSIssuer()
{
    openPath(currentCertificate(*ui->treeView_tlsIssuerCerts));
}

void VeskCertificateManager::sltOpenCRLTrusted()
{
    openPath(currentRevocationList(*ui->treeView_trustedCRLs));
}

void VeskCertificateManager::sltOpenCRLIssuer()
{
    openPath(currentRevocationList(*ui->treeView_issuerCRLs));
}

void VeskCertificateManager::sltOpenCRLTLSIssuer()
{
    openPath(currentRevocationList(*ui->treeView_tlsIssuerCRLs));
}

void VeskCertificateManager::sltTrustCertificate()
{
    moveCertificate(m_info.trustListLocation,
                    tr("Could not move certificate %1 to the trusted directory"));
}

void VeskCertificateManager::sltRejectCertificate()
{
    moveCertificate(m_info.rejectedCertificatesDirectory,
                    tr("Could not move certificate %1 to the rejected directory"));
}

void VeskCertificateManager::moveCertificate(const QString& directory, const QString& failure)
{
    const QString source = currentCertificate(*ui->treeView_trustedCerts);
    const QString target = directory + QFileInfo(source).fileName();
    // A directory of no name would be the working directory.
    const bool isMoved = !source.isEmpty() && !directory.isEmpty() && QFile::copy(source, target) &&
                         QFile::remove(source);
    if (!isMoved) {
        warn(failure, source);
    }
    fillCertificates(VeskCertificateModel::TrustList, isMoved ? absoluteFile(target) : QString());
}

void VeskCertificateManager::sltDeleteCertificateTrusted()
{
    deleteCertificate(VeskCertificateModel::TrustList);
}

void VeskCertificateManager::sltDeleteCertificateIssuer()
{
    deleteCertificate(VeskCertificateModel::Issuers);
}

void VeskCertificateManager::sltDeleteCertificateTLSIssuer()
{
    deleteCertificate(VeskCertificateModel::TlsIssuers);
}

void VeskCertificateManager::deleteCertificate(int kind)
{
    if (showPlainMessageBox(this, QMessageBox::Question, tr("Delete Certificate"),
                            tr("Do you really want to delete the selected certificate?"),
                            QMessageBox::Ok | QMessageBox::Cancel) != QMessageBox::Ok) {
        return;
    }
    const QString file = currentCertificate(*certificateViews()[kind]);
    if (!file.isEmpty() && !QFile::remove(file)) {
        warn(tr("Could not delete certificate %1"), file);
        return;
    }
    fillCertificates(kind);
}

void VeskCertificateManager::sltDeleteCRLTrusted()
{
    deleteRevocationList(VeskCertificateModel::TrustList);
}

void VeskCertificateManager::sltDeleteCRLIssuer()
{
    deleteRevocationList(VeskCertificateModel::Issuers);
}

void VeskCertificateManager::sltDeleteCRLTLSIssuer()
{
    deleteRevocationList(VeskCertificateModel::TlsIssuers);
}

void VeskCertificateManager::deleteRevocationList(int kind)
{
    if (showPlainMessageBox(this, QMessageBox::Question, tr("Delete CRL"),
                            tr("Do you really want to delete the selected CRL?"),
                            QMessageBox::Ok | QMessageBox::Cancel) != QMessageBox::Ok) {
        return;
    }
    const QString file = currentRevocationList(*revocationListViews()[kind]);
    if (file.isEmpty() || !QFile::remove(file)) {
        warn(tr("Could not delete CRL %1"), file);
        return;
    }
    fillRevocationLists(kind);
}

/// Deletes what is current and selected in a view, as the Delete key does. False when there is nothing
/// that may be deleted.
bool VeskCertificateManager::deleteSelected(const QTreeView& view)
{
    if (!view.currentIndex().isValid() || !view.selectionModel()->hasSelection() ||
        !isActiveWindow()) {
        return false;
    }
    if (const auto* lists = qobject_cast<const VeskCRLModel*>(sourceOf(view))) {
        deleteRevocationList(lists->kind());
        return true;
    }
    const auto* certificates = qobject_cast<const VeskCertificateModel*>(sourceOf(view));
    const int status = view.currentIndex().data(VeskCertificateModel::StatusRole).toInt();
    if (!certificates || status == VeskCertificateModel::Own) {
        return false;
    }
    deleteCertificate(certificates->kind());
    return true;
}

void VeskCertificateManager::sltViewContextMenu(const QPoint& position)
{
    const auto* view = qobject_cast<const QTreeView*>(sender());
    const QModelIndex index = view ? view->indexAt(position) : QModelIndex();
    if (!index.isValid()) {
        return;
    }
    QMenu menu(this);
    if (const auto* certificates = qobject_cast<const VeskCertificateModel*>(sourceOf(*view))) {
        addCertificateActions(menu, certificates->kind(),
                              index.data(VeskCertificateModel::StatusRole).toInt());
    } else if (const auto* lists = qobject_cast<const VeskCRLModel*>(sourceOf(*view))) {
        addRevocationListActions(menu, lists->kind());
    }
    menu.exec(QCursor::pos());
}

void VeskCertificateManager::addCertificateActions(QMenu& menu, int kind, int status) const
{
    if (status == VeskCertificateModel::Own) {
        selectOwnCertificate();
        menu.addActions({ui->actionOpenTrusted, ui->actionCreateNew});
        return;
    }
    switch (kind) {
    case VeskCertificateModel::Issuers:
        menu.addActions({ui->actionDeleteIssuer, ui->actionOpenIssuer});
        break;
    case VeskCertificateModel::TlsIssuers:
        menu.addActions({ui->actionDeleteTLSIssuer, ui->actionOpenTLSIssuer});
        break;
    default:
        ui->actionTrust->setEnabled(status == VeskCertificateModel::Rejected);
        ui->actionReject->setEnabled(status == VeskCertificateModel::Trusted &&
                                     directoryExists(m_info.rejectedCertificatesDirectory));
        menu.addActions(
            {ui->actionTrust, ui->actionReject, ui->actionDeleteTrusted, ui->actionOpenTrusted});
        break;
    }
}

/// Open acts on the current row of the trusted list, whichever list shows the application certificate.
void VeskCertificateManager::selectOwnCertificate() const
{
    const QAbstractItemModel* model = ui->treeView_trustedCerts->model();
    const QModelIndexList own = model->match(model->index(0, 0), VeskCertificateModel::StatusRole,
                                             VeskCertificateModel::Own, 1, Qt::MatchExactly);
    if (!own.isEmpty()) {
        ui->treeView_trustedCerts->setCurrentIndex(own.first());
    }
}

void VeskCertificateManager::addRevocationListActions(QMenu& menu, int kind) const
{
    switch (kind) {
    case VeskCertificateModel::Issuers:
        menu.addActions({ui->actionDeleteIssuerCRL, ui->actionOpenIssuerCRL});
        break;
    case VeskCertificateModel::TlsIssuers:
        menu.addActions({ui->actionDeleteTLSIssuerCRL, ui->actionOpenTLSIssuerCRL});
        break;
    default:
        menu.addActions({ui->actionDeleteTrustedCRL, ui->actionOpenTrustedCRL});
        break;
    }
}

void VeskCertificateManager::sltCopyCertificateTo()
{
    if (!QFile::exists(m_info.serverCertificate)) {
        showPlainMessageBox(this, QMessageBox::Information, tr("Certificate Not Found"),
                            tr("The application certificate '%1' does not exist.")
                                .arg(lineForDisplay(m_info.serverCertificate)));
        return;
    }
    const QString target = QFileDialog::getSaveFileName(
        this, QString(), QDir::home().absoluteFilePath(m_info.serverCertificate),
        tr("Certificates (*.der)"));
    if (!target.isEmpty() && !QFile::copy(m_info.serverCertificate, target)) {
        showPlainMessageBox(this, QMessageBox::Information, tr("Could Not Copy Certificate"),
                            tr("The application certificate could not be copied to '%1'.")
                                .arg(lineForDisplay(target)));
    }
}
