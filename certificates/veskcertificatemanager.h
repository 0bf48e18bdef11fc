#pragma once

#include "certificates/certificatelocationinfo.h"

#include <QHash>
#include <QIcon>
#include <QString>
#include <QWidget>

#include <array>
#include <memory>

class QAbstractItemModel;
class QKeyEvent;
class QMenu;
class QPoint;
class QTreeView;
class VeskCertificateModel;
class VeskCRLModel;
class VeskListSortModel;
class VeskNewCertificateDlg;

namespace Ui {
class CertificateManager;
}

/// The tab "Certificates": lists the server's PKI directories, moves certificates between the trusted
/// and the rejected directory, deletes and opens files, copies the application certificate elsewhere
/// and replaces it with a new one.
///
/// All its work is on files; a file is trusted or rejected by the directory in which it lies. The lists
/// are filled from the disk when the tab is made, by F5 and the Refresh buttons, and after each change.
/// A refill keeps the sort order, the current row and its selection; the current row follows a file that
/// was moved. Files that are no certificates or lists aren't shown, without a word.
///
/// Message boxes tell what could not be moved, deleted, copied or written. Nothing is created but files:
/// a directory that isn't there lists nothing, and the buttons that lead to it are disabled.
class VeskCertificateManager : public QWidget
{
    Q_OBJECT

public:
    /// sCommonName and sUriPart go into the dialog for a new certificate (VeskNewCertificateDlg), as does
    /// bOfferPassword. The icon marks the application certificate. Without the two directories of TLS
    /// issuers there is no page for them.
    VeskCertificateManager(const QString& sCommonName, const QString& sUriPart,
                           const CertificateLocationInfo& info, const QIcon& ownIcon,
                           bool bOfferPassword, QWidget* parent = nullptr);
    ~VeskCertificateManager() override;

    /// F5 reads all directories again; Delete deletes the current file, unless it is the application
    /// certificate.
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// A new application certificate and its key stand on the disk: the old certificate's thumbprint in
    /// upper case hexadecimal, empty if there was none, and the path of the certificate.
    void sigNewCertificateCreated(QString sOldThumbprint, QString sFilename);

private Q_SLOTS:
    void sltOpenCertLocationTrusted();
    void sltOpenCertLocationIssuers();
    void sltOpenCertLocationTLSIssuers();

    /// Asks where to save a copy of the application certificate.
    void sltCopyCertificateTo();
    /// Asks for a new application certificate and puts it and its key in place of the old ones.
    void sltCreateNewCertificate();

    void sltViewContextMenu(const QPoint& position);

    /// Move the current certificate of the trusted list to the other directory. A file of its name that
    /// is there already stays, and the move fails.
    void sltTrustCertificate();
    void sltRejectCertificate();

    void sltOpenCertificateTrusted();
    void sltOpenCertificateIssuer();
    void sltOpenCertificateTLSIssuer();
    void sltDeleteCertificateTrusted();
    void sltDeleteCertificateIssuer();
    void sltDeleteCertificateTLSIssuer();

    void sltOpenCRLTrusted();
    void sltOpenCRLIssuer();
    void sltOpenCRLTLSIssuer();
    void sltDeleteCRLTrusted();
    void sltDeleteCRLIssuer();
    void sltDeleteCRLTLSIssuer();

    /// Reads all directories again.
    void sltReload();

private:
    /// By VeskCertificateModel::Kind.
    template <typename T>
    using ByKind = std::array<T, 3>;

    /// What the widths of a list's columns were taken from.
    enum Fit
    {
        NotFitted,
        FittedToHeaders,
        FittedToRows
    };

    void makeModels();
    void attach(QTreeView* view, VeskListSortModel* proxy, QAbstractItemModel* model);
    void connectForm();
    void connectCertificateActions();
    void connectRevocationListActions();

    [[nodiscard]] ByKind<QTreeView*> certificateViews() const;
    [[nodiscard]] ByKind<QTreeView*> revocationListViews() const;
    [[nodiscard]] QString certificateDirectory(int kind) const;
    [[nodiscard]] QString revocationListDirectory(int kind) const;

    void fillCertificates(int kind, const QString& movedFile = QString());
    void fillRevocationLists(int kind);
    void fitColumns(QTreeView* view);
    void updateActions();
    void updateTlsPage();

    void moveCertificate(const QString& directory, const QString& failure);
    void deleteCertificate(int kind);
    void deleteRevocationList(int kind);
    [[nodiscard]] bool deleteSelected(const QTreeView& view);
    [[nodiscard]] bool handleKey(QObject* watched, const QKeyEvent& event);
    void warn(const QString& text, const QString& file);

    void addCertificateActions(QMenu& menu, int kind, int status) const;
    void addRevocationListActions(QMenu& menu, int kind) const;
    void selectOwnCertificate() const;

    void prefill(VeskNewCertificateDlg& dialog) const;
    void storeNewCertificate(const VeskNewCertificateDlg& dialog);

    QString m_sCommonName;
    QString m_sUriPart;
    CertificateLocationInfo m_info;
    QIcon m_ownIcon;
    bool m_bOfferPassword;
    std::unique_ptr<Ui::CertificateManager> ui;
    ByKind<VeskCertificateModel*> m_pCertificateModels{};
    ByKind<VeskListSortModel*> m_pCertificateProxies{};
    ByKind<VeskCRLModel*> m_pCRLModels{};
    ByKind<VeskListSortModel*> m_pCRLProxies{};
    QHash<const QTreeView*, Fit> m_fits;
};
