#include "certificates/veskcrlmodel.h"

#include "certificates/certificatetext.h"
#include "pki/uapkiidentity.h"

namespace {

constexpr int roleLimit = Qt::UserRole + 1;

const char* const headers[VeskCRLModel::ColumnCount] = {
    QT_TRANSLATE_NOOP("VeskCRLModel", "Number"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Valid From"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Next Update"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Organization"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "OrganizationUnit"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Locality"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "State"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Country"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "Filename"),
};

const char* const toolTips[validityStateCount] = {
    nullptr,
    QT_TRANSLATE_NOOP("VeskCRLModel", "The CRL is not yet valid"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "The CRL will expire soon"),
    QT_TRANSLATE_NOOP("VeskCRLModel", "The CRL has expired"),
};

VeskCRLTexts readTexts(const UaPkiRevocationList& crl)
{
    const UaPkiIdentity issuer = crl.issuer();
    return {crl.crlNumber(),
            toQString(issuer.organization),
            toQString(issuer.organizationUnit),
            toQString(issuer.locality),
            toQString(issuer.state),
            toQString(issuer.country)};
}

ValidityState stateOf(const VeskCRLItem& item)
{
    return revocationListState(item.thisUpdate, item.nextUpdate, UaDateTime::now());
}

QVariant displayValue(const VeskCRLItem& item, int column)
{
    switch (column) {
    case VeskCRLModel::NumberColumn:
        return item.texts().number;
    case VeskCRLModel::ValidFromColumn:
        return toLocalDateTime(item.thisUpdate);
    case VeskCRLModel::NextUpdateColumn:
        return toLocalDateTime(item.nextUpdate);
    case VeskCRLModel::OrganizationColumn:
        return item.texts().organization;
    case VeskCRLModel::OrganizationUnitColumn:
        return item.texts().organizationUnit;
    case VeskCRLModel::LocalityColumn:
        return item.texts().locality;
    case VeskCRLModel::StateColumn:
        return item.texts().state;
    case VeskCRLModel::CountryColumn:
        return item.texts().country;
    default:
        return item.sFilename;
    }
}

} // namespace

VeskCRLItem::VeskCRLItem(const UaPkiRevocationList& theCrl, const QString& sTheFilename)
    : sFilename(sTheFilename)
    , crl(theCrl)
    , thisUpdate(crl.thisUpdate())
    , nextUpdate(crl.nextUpdate())
{
}

const VeskCRLTexts& VeskCRLItem::texts() const
{
    if (!m_texts) {
        m_texts = std::make_unique<VeskCRLTexts>(readTexts(crl));
    }
    return *m_texts;
}

VeskCRLModel::VeskCRLModel(int kind, QObject* parent)
    : VeskListModel(parent)
    , m_icons(QStringLiteral(":/veskwidgets/images/on.png"))
    , m_kind(kind)
{
}

int VeskCRLModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QVariant VeskCRLModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.column() >= ColumnCount || role >= roleLimit) {
        return {};
    }
    const VeskCRLItem& item = *itemAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return displayValue(item, index.column());
    case Qt::DecorationRole:
        return index.column() == NumberColumn ? m_icons.icon(stateOf(item)) : QVariant();
    case Qt::ToolTipRole: {
        const char* const toolTip = toolTips[static_cast<int>(stateOf(item))];
        return toolTip ? tr(toolTip) : QVariant();
    }
    case DerRole: {
        const UaByteArray der = item.crl.toDER();
        return QByteArray(reinterpret_cast<const char*>(der.data()), der.size());
    }
    default:
        return {};
    }
}

QVariant VeskCRLModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isHeader = orientation == Qt::Horizontal && role == Qt::DisplayRole &&
                          section >= 0 && section < ColumnCount;
    return isHeader ? tr(headers[section]) : QVariant();
}

std::optional<UaDateTime> VeskCRLModel::dateAt(const QModelIndex& index) const
{
    switch (index.column()) {
    case ValidFromColumn:
        return itemAt(index)->thisUpdate;
    case NextUpdateColumn:
        return itemAt(index)->nextUpdate;
    default:
        return {};
    }
}

void VeskCRLModel::addCRL(const UaPkiRevocationList& crl, const QString& sFilename)
{
    addCRLs({{crl, sFilename}});
}

void VeskCRLModel::addCRLs(const std::vector<Entry>& entries)
{
    std::vector<std::unique_ptr<VeskCRLItem>> newItems;
    newItems.reserve(entries.size());
    for (const Entry& entry : entries) {
        newItems.push_back(std::make_unique<VeskCRLItem>(entry.crl, entry.sFilename));
    }
    append(std::move(newItems));
}
