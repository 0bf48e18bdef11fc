#include "certificates/veskcertificatemanager.h"

#include "certificates/certificatefiles.h"
#include "certificates/listposition.h"
#include "certificates/veskcertificatemodel.h"
#include "certificates/veskcrlmodel.h"
#include "certificates/vesklistdelegate.h"
#include "certificates/vesklistsortmodel.h"

#include "ui_veskcertificatemanager.h"

#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

namespace {

constexpr int measuredRows = 50; // as many as a page shows; all of them would take long
constexpr int widestColumn = 40; // characters

using Entries = std::vector<VeskCertificateModel::Entry>;

/// Adds what can be read of the files. `ownFile` gets the status of the application certificate.
void loadInto(Entries& entries, const QStringList& files, const QString& ownFile, int status)
{
    entries.reserve(entries.size() + static_cast<std::size_t>(files.size()));
    for (const QString& file : files) {
        UaPkiCertificate certificate = loadCertificate(file);
        if (!certificate.isNull()) {
            entries.push_back({std::move(certificate), file,
                               file == ownFile ? VeskCertificateModel::Own : status});
        }
    }
}

bool hasOwn(const Entries& entries)
{
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto& entry) { return entry.status == VeskCertificateModel::Own; });
}

} // namespace

VeskCertificateManager::VeskCertificateManager(const QString& sCommonName, const QString& sUriPart,
                                               const CertificateLocationInfo& info,
                                               const QIcon& ownIcon, bool bOfferPassword,
                                               QWidget* parent)
    : QWidget(parent)
    , m_sCommonName(sCommonName)
    , m_sUriPart(sUriPart)
    , m_info(info)
    , m_ownIcon(ownIcon)
    , m_bOfferPassword(bOfferPassword)
    , ui(std::make_unique<Ui::CertificateManager>())
{
    ui->setupUi(this);
    makeModels();
    connectForm();
    sltReload();
}

VeskCertificateManager::~VeskCertificateManager() = default;

void VeskCertificateManager::makeModels()
{
    for (const int kind : {VeskCertificateModel::TrustList, VeskCertificateModel::Issuers,
                           VeskCertificateModel::TlsIssuers}) {
        m_pCertificateModels[kind] = new VeskCertificateModel(m_ownIcon, kind, this);
        m_pCertificateProxies[kind] = new VeskListSortModel(this);
        attach(certificateViews()[kind], m_pCertificateProxies[kind], m_pCertificateModels[kind]);
        m_pCRLModels[kind] = new VeskCRLModel(kind, this);
        m_pCRLProxies[kind] = new VeskListSortModel(this);
        attach(revocationListViews()[kind], m_pCRLProxies[kind], m_pCRLModels[kind]);
    }
}

void VeskCertificateManager::attach(QTreeView* view, VeskListSortModel* proxy,
                                    QAbstractItemModel* model)
{
    proxy->setSourceModel(model);
    view->setItemDelegate(new VeskListDelegate(view));
    view->header()->setResizeContentsPrecision(measuredRows);
    view->setModel(proxy);
    view->sortByColumn(0, Qt::AscendingOrder);
}

void VeskCertificateManager::connectForm()
{
    using Self = VeskCertificateManager;
    connect(ui->pushButton_OpenCertLocationTrusted, &QPushButton::clicked, this,
            &Self::sltOpenCertLocationTrusted);
    connect(ui->pushButton_OpenCertLocationIssuers, &QPushButton::clicked, this,
            &Self::sltOpenCertLocationIssuers);
    connect(ui->pushButton_OpenCertLocationTLSIssuers, &QPushButton::clicked, this,
            &Self::sltOpenCertLocationTLSIssuers);
    connect(ui->pushButton_CopyCertificateTo, &QPushButton::clicked, this,
            &Self::sltCopyCertificateTo);
    connect(ui->pushButton_CreateNewCertificate, &QPushButton::clicked, this,
            &Self::sltCreateNewCertificate);
    connect(ui->actionCreateNew, &QAction::triggered, this, &Self::sltCreateNewCertificate);
    for (const QToolButton* button : {ui->toolButton_RefreshTrusted, ui->toolButton_RefreshIssuers,
                                      ui->toolButton_RefreshTLSIssuers}) {
        connect(button, &QToolButton::clicked, this, &Self::sltReload);
    }
    connectCertificateActions();
    connectRevocationListActions();
    installEventFilter(this);
    for (const auto& views : {certificateViews(), revocationListViews()}) {
        for (QTreeView* view : views) {
            connect(view, &QTreeView::customContextMenuRequested, this, &Self::sltViewContextMenu);
            view->installEventFilter(this);
        }
    }
}

void VeskCertificateManager::connectCertificateActions()
{
    using Self = VeskCertificateManager;
    connect(ui->actionTrust, &QAction::triggered, this, &Self::sltTrustCertificate);
    connect(ui->actionReject, &QAction::triggered, this, &Self::sltRejectCertificate);

    connect(ui->actionOpenTrusted, &QAction::triggered, this, &Self::sltOpenCertificateTrusted);
    connect(ui->actionOpenIssuer, &QAction::triggered, this, &Self::sltOpenCertificateIssuer);
    connect(ui->actionOpenTLSIssuer, &QAction::triggered, this, &Self::sltOpenCertificateTLSIssuer);
    connect(ui->treeView_trustedCerts, &QTreeView::doubleClicked, this,
            &Self::sltOpenCertificateTrusted);
    connect(ui->treeView_issuerCerts, &QTreeView::doubleClicked, this,
            &Self::sltOpenCertificateIssuer);
    connect(ui->treeView_tlsIssuerCerts, &QTreeView::doubleClicked, this,
            &Self::sltOpenCertificateTLSIssuer);

    connect(ui->actionDeleteTrusted, &QAction::triggered, this, &Self::sltDeleteCertificateTrusted);
    connect(ui->actionDeleteIssuer, &QAction::triggered, this, &Self::sltDeleteCertificateIssuer);
    connect(ui->actionDeleteTLSIssuer, &QAction::triggered, this,
            &Self::sltDeleteCertificateTLSIssuer);
}

void VeskCertificateManager::connectRevocationListActions()
{
    using Self = VeskCertificateManager;
    connect(ui->actionOpenTrustedCRL, &QAction::triggered, this, &Self::sltOpenCRLTrusted);
    connect(ui->actionOpenIssuerCRL, &QAction::triggered, this, &Self::sltOpenCRLIssuer);
    connect(ui->actionOpenTLSIssuerCRL, &QAction::triggered, this, &Self::sltOpenCRLTLSIssuer);
    connect(ui->treeView_trustedCRLs, &QTreeView::doubleClicked, this, &Self::sltOpenCRLTrusted);
    connect(ui->treeView_issuerCRLs, &QTreeView::doubleClicked, this, &Self::sltOpenCRLIssuer);
    connect(ui->treeView_tlsIssuerCRLs, &QTreeView::doubleClicked, this,
            &Self::sltOpenCRLTLSIssuer);

    connect(ui->actionDeleteTrustedCRL, &QAction::triggered, this, &Self::sltDeleteCRLTrusted);
    connect(ui->actionDeleteIssuerCRL, &QAction::triggered, this, &Self::sltDeleteCRLIssuer);
    connect(ui->actionDeleteTLSIssuerCRL, &QAction::triggered, this, &Self::sltDeleteCRLTLSIssuer);
}

auto VeskCertificateManager::certificateViews() const -> ByKind<QTreeView*>
{
    return {ui->treeView_trustedCerts, ui->treeView_issuerCerts, ui->treeView_tlsIssuerCerts};
}

auto VeskCertificateManager::revocationListViews() const -> ByKind<QTreeView*>
{
    return {ui->treeView_trustedCRLs, ui->treeView_issuerCRLs, ui->treeView_tlsIssuerCRLs};
}

QString VeskCertificateManager::certificateDirectory(int kind) const
{
    const ByKind<QString> directories = {m_info.trustListLocation,
                                         m_info.issuersCertificatesLocation,
                                         m_info.tlsIssuersCertificatesLocation};
    return directories[kind];
}

QString VeskCertificateManager::revocationListDirectory(int kind) const
{
    const ByKind<QString> directories = {m_info.revocationListLocation,
                                         m_info.issuersRevocationListLocation,
                                         m_info.tlsIssuersRevocationListLocation};
    return directories[kind];
}

void VeskCertificateManager::sltReload()
{
    for (const int kind : {VeskCertificateModel::TrustList, VeskCertificateModel::Issuers,
                           VeskCertificateModel::TlsIssuers}) {
        fillCertificates(kind);
    }
    for (const int kind : {VeskCertificateModel::TrustList, VeskCertificateModel::Issuers,
                           VeskCertificateModel::TlsIssuers}) {
        fillRevocationLists(kind);
    }
    updateActions();
    updateTlsPage();
}

/// Fills a list of certificates; the current row follows a file that was moved to `movedFile`.
void VeskCertificateManager::fillCertificates(int kind, const QString& movedFile)
{
    QTreeView* view = certificateViews()[kind];
    ListPosition position(*view, VeskCertificateModel::FilenameColumn);
    if (!movedFile.isEmpty()) {
        position.follow(movedFile);
    }
    const QString ownFile = absoluteFile(m_info.serverCertificate);
    Entries entries;
    loadInto(entries,
             certificateFiles(certificateDirectory(kind), kind == VeskCertificateModel::TlsIssuers),
             ownFile, VeskCertificateModel::Trusted);
    if (kind == VeskCertificateModel::TrustList) {
        loadInto(entries, certificateFiles(m_info.rejectedCertificatesDirectory, false), QString(),
                 VeskCertificateModel::Rejected);
        if (!hasOwn(entries)) {
            loadInto(entries, {ownFile}, ownFile, VeskCertificateModel::Own);
        }
    }
    m_pCertificateModels[kind]->clear();
    m_pCertificateModels[kind]->addCertificates(entries);
    fitColumns(view);
    position.restore(*view);
}

void VeskCertificateManager::fillRevocationLists(int kind)
{
    QTreeView* view = revocationListViews()[kind];
    const ListPosition position(*view, VeskCRLModel::FilenameColumn);
    std::vector<VeskCRLModel::Entry> entries;
    for (const QString& file : revocationListFiles(revocationListDirectory(kind))) {
        UaPkiRevocationList crl = loadRevocationList(file);
        if (!crl.isNull()) {
            entries.push_back({std::move(crl), file});
        }
    }
    m_pCRLModels[kind]->clear();
    m_pCRLModels[kind]->addCRLs(entries);
    fitColumns(view);
    position.restore(*view);
}

/// Gives the columns of a list that is seen the width of what they hold: of the headers first, and once
/// of the rows. Later widths are the operator's. Measuring lists that nobody sees would make the
/// console's start slow.
void VeskCertificateManager::fitColumns(QTreeView* view)
{
    const Fit fit = view->model()->rowCount() > 0 ? FittedToRows : FittedToHeaders;
    if (!view->isVisible() || m_fits.value(view, NotFitted) >= fit) {
        return;
    }
    m_fits.insert(view, fit);
    const int limit = widestColumn * view->fontMetrics().averageCharWidth();
    for (int column = 0; column < view->model()->columnCount(); ++column) {
        view->resizeColumnToContents(column);
        view->setColumnWidth(column, qMin(view->columnWidth(column), limit));
    }
}

void VeskCertificateManager::updateActions()
{
    ui->actionReject->setEnabled(directoryExists(m_info.rejectedCertificatesDirectory));
    ui->pushButton_OpenCertLocationTrusted->setEnabled(directoryExists(m_info.trustListLocation));
    ui->pushButton_OpenCertLocationIssuers->setEnabled(
        directoryExists(m_info.issuersCertificatesLocation));
    ui->pushButton_OpenCertLocationTLSIssuers->setEnabled(
        directoryExists(m_info.tlsIssuersCertificatesLocation));
    // A new certificate only ever replaces one that is there.
    const bool hasCertificate = QFile::exists(m_info.serverCertificate);
    ui->pushButton_CopyCertificateTo->setEnabled(hasCertificate);
    ui->pushButton_CreateNewCertificate->setEnabled(hasCertificate);
}

void VeskCertificateManager::updateTlsPage()
{
    const bool isWanted = !m_info.tlsIssuersCertificatesLocation.isEmpty() ||
                          !m_info.tlsIssuersRevocationListLocation.isEmpty();
    const int page = ui->tabWidget->indexOf(ui->tab_tlsIssuers);
    if (!isWanted && page >= 0) {
        ui->tabWidget->removeTab(page);
    } else if (isWanted && page < 0) {
        ui->tabWidget->addTab(ui->tab_tlsIssuers, tr("TLS Issuers"));
    }
}

bool VeskCertificateManager::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show) {
        if (auto* view = qobject_cast<QTreeView*>(watched)) {
            fitColumns(view);
        }
    } else if (event->type() == QEvent::KeyPress &&
               handleKey(watched, static_cast<const QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool VeskCertificateManager::handleKey(QObject* watched, const QKeyEvent& event)
{
    if (event.key() == Qt::Key_F5) {
        sltReload();
        return true;
    }
    const auto* view = qobject_cast<const QTreeView*>(watched);
    return event.key() == Qt::Key_Delete && view && deleteSelected(*view);
}
