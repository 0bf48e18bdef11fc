#pragma once

#include "certificates/stateicons.h"
#include "certificates/vesklistmodel.h"
#include "pki/uapkirevocationlist.h"

#include <QString>

/// The texts of a revocation list as a list shows them; the names are its issuer's.
struct VeskCRLTexts
{
    int number = -1;
    QString organization;
    QString organizationUnit;
    QString locality;
    QString state;
    QString country;
};

/// One row of VeskCRLModel.
struct VeskCRLItem
{
    VeskCRLItem() = default;
    VeskCRLItem(const UaPkiRevocationList& theCrl, const QString& sTheFilename);
    ~VeskCRLItem() { qDeleteAll(children); }
    Q_DISABLE_COPY_MOVE(VeskCRLItem)

    /// Read from the list when first asked for.
    [[nodiscard]] const VeskCRLTexts& texts() const;

    QString sFilename; ///< Absolute path.
    UaPkiRevocationList crl;
    VeskCRLItem* pParent = nullptr;
    QList<VeskCRLItem*> children; ///< Owned.
    UaDateTime thisUpdate;
    UaDateTime nextUpdate;

private:
    mutable std::unique_ptr<VeskCRLTexts> m_texts;
};

/// The table of revocation lists behind one list of the certificates tab. Like VeskCertificateModel it
/// reads no files, doesn't sort and gives texts whole.
class VeskCRLModel : public VeskListModel<VeskCRLItem>
{
    Q_OBJECT

public:
    enum Column
    {
        NumberColumn, ///< -1 for a list without a number.
        ValidFromColumn,
        NextUpdateColumn,
        OrganizationColumn,
        OrganizationUnitColumn,
        LocalityColumn,
        StateColumn,
        CountryColumn,
        FilenameColumn,
        ColumnCount
    };
    static constexpr int DerRole = Qt::UserRole; ///< The DER form, a QByteArray.

    /// One list for addCRLs.
    struct Entry
    {
        UaPkiRevocationList crl;
        QString sFilename;
    };

    /// The kind is one of VeskCertificateModel::Kind. It tells the tab which actions belong to a row.
    explicit VeskCRLModel(int kind, QObject* parent = nullptr);

    /// 9, below every index.
    [[nodiscard]] int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    /// Texts and local times to show, an icon in column 0, a tooltip unless the list is healthy, and
    /// the role above. The state is that of the moment of asking.
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] std::optional<UaDateTime> dateAt(const QModelIndex& index) const override;

    [[nodiscard]] int kind() const { return m_kind; }

    void addCRL(const UaPkiRevocationList& crl, const QString& sFilename);

    /// The same for many at once, with one signal.
    void addCRLs(const std::vector<Entry>& entries);

private:
    StateIcons m_icons;
    int m_kind;
};
