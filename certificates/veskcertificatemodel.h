#pragma once

#include "certificates/stateicons.h"
#include "certificates/vesklistmodel.h"
#include "pki/uapkicertificate.h"

#include <QString>

#include <array>

/// The texts of a certificate as a list shows them.
struct VeskCertificateTexts
{
    QString name; ///< The subject's commonName; the names below are the issuer's.
    QString organization;
    QString organizationUnit;
    QString locality;
    QString state;
    QString country;
    QString uri;
    QString domainNames;
    QString ipAddresses;
};

/// One row of VeskCertificateModel.
struct VeskCertificateItem
{
    VeskCertificateItem() = default;
    VeskCertificateItem(const UaPkiCertificate& theCertificate, const QString& sTheFilename,
                        int theStatus);
    ~VeskCertificateItem() { qDeleteAll(children); }
    Q_DISABLE_COPY_MOVE(VeskCertificateItem)

    /// Replaces what the row shows.
    void set(const UaPkiCertificate& theCertificate, const QString& sTheFilename);

    /// Read from the certificate when first asked for.
    [[nodiscard]] const VeskCertificateTexts& texts() const;

    int status = 0;
    QString sFilename; ///< Absolute path.
    UaPkiCertificate certificate;
    VeskCertificateItem* pParent = nullptr;
    QList<VeskCertificateItem*> children; ///< Owned.
    UaDateTime validFrom;
    UaDateTime validTo;

private:
    mutable std::unique_ptr<VeskCertificateTexts> m_texts;
};

/// The table of certificates behind one list of the certificates tab. It reads no files and doesn't
/// sort. Columns 4 to 8 show the issuer's names although column 1 shows the subject's; for self-signed
/// certificates they are the same.
///
/// Texts of the certificates are given whole and as they stand, whatever they hold. Roles and columns
/// that aren't listed here give an invalid value.
class VeskCertificateModel : public VeskListModel<VeskCertificateItem>
{
    Q_OBJECT

public:
    enum Kind
    {
        TrustList = 0, ///< Trusted, rejected and own certificates.
        Issuers = 1,
        TlsIssuers = 2
    };
    enum Status
    {
        Rejected = 0,
        Trusted = 1,
        Own = 2 ///< The application certificate.
    };
    enum Column
    {
        StatusColumn,
        NameColumn,
        ValidFromColumn,
        ValidToColumn,
        OrganizationColumn,
        OrganizationUnitColumn,
        LocalityColumn,
        StateColumn,
        CountryColumn,
        AppUriColumn,
        DomainNameColumn,
        IpColumn,
        FilenameColumn,
        ColumnCount
    };
    static constexpr int StatusRole = Qt::UserRole;         ///< The status as a number.
    static constexpr int DerRole = Qt::UserRole + 1;        ///< The DER form, a QByteArray.
    static constexpr int ThumbprintRole = Qt::UserRole + 2; ///< 40 upper case digits.

    /// One certificate for addCertificates.
    struct Entry
    {
        UaPkiCertificate certificate;
        QString sFilename;
        int status;
    };

    /// `ownIcon` marks the application certificate.
    VeskCertificateModel(const QIcon& ownIcon, int kind, QObject* parent = nullptr);

    /// 13, below every index.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Texts and local times to show, an icon in column 0, a tooltip unless the certificate is healthy,
    /// and the roles above. The state is that of the moment of asking.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] std::optional<UaDateTime> dateAt(const QModelIndex& index) const override;

    [[nodiscard]] int kind() const { return m_kind; }

    /// Appends a certificate. One with status Own takes the place of the first own one, if there is.
    void addCertificate(const UaPkiCertificate& certificate, const QString& sFilename, int status);

    /// The same for many at once, with one signal for all rows that are new.
    void addCertificates(const std::vector<Entry>& entries);

private:
    [[nodiscard]] QVariant displayValue(const VeskCertificateItem& item, int column) const;
    [[nodiscard]] bool replaceOwn(const Entry& entry);

    std::array<StateIcons, 3> m_icons; ///< By status.
    std::array<QString, 3> m_statusTexts;
    int m_kind;
};
