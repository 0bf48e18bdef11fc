#include "certificates/certificatefiles.h"
#include "certificates/certificatereplacement.h"
#include "certificates/certificatetext.h"
#include "certificates/secrettext.h"
#include "certificates/veskcertificatemanager.h"
#include "certificates/veskcertificatemodel.h"
#include "certificates/vesknewcertificatedlg.h"
#include "widgets/displaytext.h"
#include "widgets/plainmessagebox.h"

#include <QFile>

void VeskCertificateManager::sltCreateNewCertificate()
{
    VeskNewCertificateDlg dialog(m_sCommonName, m_sUriPart, false, m_bOfferPassword, this);
    prefill(dialog);
    if (dialog.exec() == QDialog::Accepted) {
        storeNewCertificate(dialog);
    }
}

/// Takes over what the old certificate says, but for its URI and its DNS names: those are the
/// computer's.
void VeskCertificateManager::prefill(VeskNewCertificateDlg& dialog) const
{
    const UaPkiCertificate old =
        UaPkiCertificate::fromDERFile(QFile::encodeName(m_info.serverCertificate).constData());
    if (old.isNull()) {
        return;
    }
    const UaPkiIdentity issuer = old.issuer();
    dialog.setCommonName(toQString(old.commonName()));
    dialog.setOrganization(toQString(issuer.organization));
    dialog.setOrganizationUnit(toQString(issuer.organizationUnit));
    dialog.setLocality(toQString(issuer.locality));
    dialog.setState(toQString(issuer.state));
    dialog.setCountry(toQString(issuer.country));
    dialog.setIPAddresses(toQStringList(old.info().ipAddresses));
    dialog.setKeySize(old.publicKey().keySize());
    dialog.setSignatureAlgorithm(old.signatureAlgorithm());
}

void VeskCertificateManager::storeNewCertificate(const VeskNewCertificateDlg& dialog)
{
    const UaPkiCertificate old = loadCertificate(m_info.serverCertificate);
    const QString oldThumbprint = toQString(old.thumbPrint().toHex());
    QString password = dialog.password();
    CertificateReplacement replacement{dialog.certificate(), dialog.keyPair(), password.toUtf8(),
                                       m_info.serverCertificate, m_info.serverPrivateKey};
    const bool isReplaced = replaceCertificate(replacement);
    wipe(password);
    wipe(replacement.password);
    if (!isReplaced) {
        showPlainMessageBox(
            this, QMessageBox::Critical, tr("CertificateManager"),
            tr("Could not create certificate %1").arg(lineForDisplay(m_info.serverCertificate)));
        return;
    }
    Q_EMIT sigNewCertificateCreated(oldThumbprint, m_info.serverCertificate);
    fillCertificates(VeskCertificateModel::TrustList);
}
