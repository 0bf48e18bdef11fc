#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkirsakeypair.h"

#include <QDialog>
#include <QPixmap>
#include <QString>
#include <QStringList>

#include <memory>

class QLabel;

struct NewCertificateOrder;

namespace Ui {
class NewCertificateDialog;
}

/// Asks for what a new application instance certificate needs, checks it field by field, and makes the
/// key pair and the self-signed certificate in memory. It writes no files.
///
/// A picture beside each field tells whether it is filled in; OK is enabled when all of them are. The
/// tooltips of the pictures and of OK, and the accessible descriptions of the fields, name what is
/// missing.
///
/// OK makes the key pair on the GUI thread, which may take seconds for a large one; the cursor shows it.
/// When the key pair or the certificate can't be made, or the certificate would not say exactly what
/// stands in the form, a critical box tells why and the dialog stays open.
class VeskNewCertificateDlg : public QDialog
{
    Q_OBJECT

public:
    /// The application's URI is "urn:", the computer's name, sUriPart and sCommonName, joined by ":"; it
    /// can't be edited and doesn't follow the common name. The computer's name is the first DNS name too.
    ///
    /// A mandatory dialog can't be left but by OK. Without bOfferPassword the fields of the password
    /// are hidden.
    VeskNewCertificateDlg(const QString& sCommonName, const QString& sUriPart, bool bMandatory,
                          bool bOfferPassword, QWidget* parent = nullptr);
    /// Overwrites the password.
    ~VeskNewCertificateDlg() override;

    void setCommonName(const QString& sCommonName);
    void setOrganization(const QString& sOrganization);
    void setOrganizationUnit(const QString& sOrganizationUnit);
    void setLocality(const QString& sLocality);
    void setState(const QString& sState);
    void setCountry(const QString& sCountry);

    /// Replace the lists. Unlike what is typed, these texts aren't looked at before OK.
    void setIPAddresses(const QStringList& ipAddresses);
    void setDNSNames(const QStringList& dnsNames);

    /// Selects the strength of the key, 1024 bits for any size that isn't offered.
    void setKeySize(int iBits);
    /// UaPkiCertificate::Sha1WithRsa, which is the initial value, or Sha256WithRsa.
    void setSignatureAlgorithm(int iSignatureAlgorithm);

    /// The password for the private key, empty when there shall be none. A text of its own, which the
    /// caller may overwrite with wipe().
    [[nodiscard]] QString password() const;

    /// What was made. The certificate is null and the key pair empty until the dialog was accepted.
    [[nodiscard]] const UaPkiCertificate& certificate() const { return m_certificate; }
    [[nodiscard]] const UaPkiRSAKeyPair& keyPair() const { return m_keyPair; }

public Q_SLOTS:
    void sltCNChanged(const QString& sText);
    void sltOChanged(const QString& sText);
    void sltLChanged(const QString& sText);
    void sltSChanged(const QString& sText);
    void sltURIChanged(const QString& sText);

    /// The unit may be missing: its picture is enabled only while there is one.
    void sltOUChanged(const QString& sText);
    /// A country has two characters.
    void sltCChanged(const QString& sText);

    /// One of both lists may be empty: its picture is disabled then.
    void sltDNSChanged();
    void sltIPChanged();
    void sltCurrentDNSChanged();
    void sltCurrentIPChanged();

    /// Ask for a name or an address, again and again until it is valid or empty.
    void sltAddDNS();
    void sltAddIP();
    void sltRemoveDNS();
    void sltRemoveIP();

    /// A password has at least four characters and is repeated alike.
    void sltPasswordChanged(const QString& sText);
    void sltPasswordEnabled(int state);

    /// Warns of a lifetime over five years.
    void sltTimeChanged(int index);

    /// Makes the key pair and the certificate and accepts the dialog; see the class.
    void sltCreateCertificate();

    /// Leaves a mandatory dialog open.
    void reject() override;

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void alignLabels();
    void fillComboBoxes();
    void connectForm();
    void connectLists();
    void showDefaults(const QString& sCommonName, const QString& sUriPart);
    void showStatuses();
    void hidePassword();
    void makeMandatory();
    void fitScreen();

    void showStatus(QLabel* label, QWidget* input, const QString& problem);
    void showNameStatuses();
    void updateOkButton();
    [[nodiscard]] NewCertificateOrder order() const;

    std::unique_ptr<Ui::NewCertificateDialog> ui;
    UaPkiCertificate m_certificate;
    UaPkiRSAKeyPair m_keyPair;
    bool m_bMandatory;
    QPixmap m_validPixmap;
    QPixmap m_missingPixmap;
    int m_iSignatureAlgorithm = UaPkiCertificate::Sha1WithRsa;
};
