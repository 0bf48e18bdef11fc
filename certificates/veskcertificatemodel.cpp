#include "certificates/veskcertificatemodel.h"

#include "certificates/certificatetext.h"

#include <algorithm>

namespace {

constexpr int roleLimit = Qt::UserRole + 3;

const char* const headers[VeskCertificateModel::ColumnCount] = {
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Status"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Name"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Valid From"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Valid To"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Organization"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "OrganizationUnit"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Locality"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "State"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Country"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "AppURI"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "DomainName"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "IP"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "Filename"),
};

const char* const toolTips[validityStateCount] = {
    nullptr,
    QT_TRANSLATE_NOOP("VeskCertificateModel", "The certificate is not yet valid"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "The certificate will expire soon"),
    QT_TRANSLATE_NOOP("VeskCertificateModel", "The certificate has expired"),
};

VeskCertificateTexts readTexts(const UaPkiCertificate& certificate)
{
    const UaPkiIdentity issuer = certificate.issuer();
    const UaPkiCertificateInfo info = certificate.info();
    return {toQString(certificate.commonName()),
            toQString(issuer.organization),
            toQString(issuer.organizationUnit),
            toQString(issuer.locality),
            toQString(issuer.state),
            toQString(issuer.country),
            toQString(info.uri),
            toJoinedText(info.dnsNames),
            toJoinedText(info.ipAddresses)};
}

/// What column 0 says, by status. The sorting asks for it often.
std::array<QString, 3> statusTexts(int kind)
{
    switch (kind) {
    case VeskCertificateModel::TrustList:
        return {VeskCertificateModel::tr("Untrusted"), VeskCertificateModel::tr("Trusted"),
                VeskCertificateModel::tr("Own Certificate")};
    case VeskCertificateModel::Issuers: {
        const QString issuer = VeskCertificateModel::tr("Known Issuer");
        return {issuer, issuer, issuer};
    }
    default: {
        const QString trusted = VeskCertificateModel::tr("Trusted");
        return {trusted, trusted, trusted};
    }
    }
}

ValidityState stateOf(const VeskCertificateItem& item)
{
    return certificateState(item.validFrom, item.validTo, UaDateTime::now());
}

} // namespace

VeskCertificateItem::VeskCertificateItem(const UaPkiCertificate& theCertificate,
                                         const QString& sTheFilename, int theStatus)
    : status(std::clamp<int>(theStatus, VeskCertificateModel::Rejected, VeskCertificateModel::Own))
{
    set(theCertificate, sTheFilename);
}

void VeskCertificateItem::set(const UaPkiCertificate& theCertificate, const QString& sTheFilename)
{
    sFilename = sTheFilename;
    certificate = theCertificate;
    validFrom = certificate.validFrom();
    validTo = certificate.validTo();
    m_texts.reset();
}

const VeskCertificateTexts& VeskCertificateItem::texts() const
{
    if (!m_texts) {
        m_texts = std::make_unique<VeskCertificateTexts>(readTexts(certificate));
    }
    return *m_texts;
}

VeskCertificateModel::VeskCertificateModel(const QIcon& ownIcon, int kind, QObject* parent)
    : VeskListModel(parent)
    , m_icons{StateIcons(QStringLiteral(":/veskwidgets/images/clearlog.png")),
              StateIcons(QStringLiteral(":/veskwidgets/images/on.png")), StateIcons(ownIcon)}
    , m_statusTexts(statusTexts(kind))
    , m_kind(kind)
{
}

int VeskCertificateModel::columnCount(const QModelIndex& /*parent*/) const
{
    return ColumnCount;
}

QVariant VeskCertificateModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.column() >= ColumnCount || role >= roleLimit) {
        return {};
    }
    const VeskCertificateItem& item = *itemAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return displayValue(item, index.column());
    case Qt::DecorationRole:
        return index.column() == StatusColumn
                   ? m_icons[static_cast<std::size_t>(item.status)].icon(stateOf(item))
                   : QVariant();
    case Qt::ToolTipRole: {
        const char* const toolTip = toolTips[static_cast<int>(stateOf(item))];
        return toolTip ? tr(toolTip) : QVariant();
    }
    case StatusRole:
        return item.status;
    case DerRole: {
        const UaByteArray der = item.certificate.toDER();
        return QByteArray(reinterpret_cast<const char*>(der.data()), der.size());
    }
    case ThumbprintRole:
        return toQString(item.certificate.thumbPrint().toHex());
    default:
        return {};
    }
}

QVariant VeskCertificateModel::displayValue(const VeskCertificateItem& item, int column) const
{
    switch (column) {
    case StatusColumn:
        return m_statusTexts[static_cast<std::size_t>(item.status)];
    case NameColumn:
        return item.texts().name;
    case ValidFromColumn:
        return toLocalDateTime(item.validFrom);
    case ValidToColumn:
        return toLocalDateTime(item.validTo);
    case OrganizationColumn:
        return item.texts().organization;
    case OrganizationUnitColumn:
        return item.texts().organizationUnit;
    case LocalityColumn:
        return item.texts().locality;
    case StateColumn:
        return item.texts().state;
    case CountryColumn:
        return item.texts().country;
    case AppUriColumn:
        return item.texts().uri;
    case DomainNameColumn:
        return item.texts().domainNames;
    case IpColumn:
        return item.texts().ipAddresses;
    default:
        return item.sFilename;
    }
}

QVariant VeskCertificateModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isHeader = orientation == Qt::Horizontal && role == Qt::DisplayRole &&
                          section >= 0 && section < ColumnCount;
    return isHeader ? tr(headers[section]) : QVariant();
}

std::optional<UaDateTime> VeskCertificateModel::dateAt(const QModelIndex& index) const
{
    switch (index.column()) {
    case ValidFromColumn:
        return itemAt(index)->validFrom;
    case ValidToColumn:
        return itemAt(index)->validTo;
    default:
        return {};
    }
}

void VeskCertificateModel::addCertificate(const UaPkiCertificate& certificate,
                                          const QString& sFilename, int status)
{
    addCertificates({{certificate, sFilename, status}});
}

void VeskCertificateModel::addCertificates(const std::vector<Entry>& entries)
{
    std::vector<std::unique_ptr<VeskCertificateItem>> newItems;
    newItems.reserve(entries.size());
    VeskCertificateItem* newOwn = nullptr;
    for (const Entry& entry : entries) {
        if (entry.status == Own && newOwn) {
            newOwn->set(entry.certificate, entry.sFilename);
        } else if (entry.status != Own || !replaceOwn(entry)) {
            newItems.push_back(std::make_unique<VeskCertificateItem>(
                entry.certificate, entry.sFilename, entry.status));
            newOwn = entry.status == Own ? newItems.back().get() : newOwn;
        }
    }
    append(std::move(newItems));
}

bool VeskCertificateModel::replaceOwn(const Entry& entry)
{
    const auto own = std::find_if(items().begin(), items().end(),
                                  [](const auto* item) { return item->status == Own; });
    if (own == items().end()) {
        return false;
    }
    (*own)->set(entry.certificate, entry.sFilename);
    const int row = static_cast<int>(own - items().begin());
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    return true;
}
