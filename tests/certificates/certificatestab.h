#pragma once

#include "certificates/certificatelocationinfo.h"
#include "certificates/veskcertificatemanager.h"

#include <QAbstractButton>
#include <QStringList>
#include <QTemporaryDir>
#include <QTreeView>

#include <memory>

/// The tab "Certificates" on PKI directories of its own, with its widgets by their object names.
/// Directories are there and empty; a test fills them and opens the tab.
class CertificatesTab
{
public:
    CertificatesTab();

    /// The path of a file in one of the directories "trusted", "rejected", "issuers", "tls", "crl",
    /// "issuersCrl", "tlsCrl" and "own".
    [[nodiscard]] QString path(const QString& directory, const QString& name) const;
    QString put(const QString& directory, const QString& name, const QByteArray& content) const;
    /// A certificate that bears the file's name up to the first point.
    QString putCertificate(const QString& directory, const QString& name) const;
    QString putRevocationList(const QString& directory, const QString& name) const;
    /// The application certificate with its key, where the configuration has them.
    void putOwn() const;

    /// Makes and shows the tab.
    void open();

    template <typename T>
    [[nodiscard]] T& child(const char* name) const
    {
        T* found = widget->findChild<T*>(QLatin1StringView(name));
        if (!found) {
            qFatal("no %s in the form", name);
        }
        return *found;
    }
    [[nodiscard]] QTreeView& view(const char* name) const { return child<QTreeView>(name); }
    [[nodiscard]] QTreeView& trusted() const { return view("treeView_trustedCerts"); }

    /// Brings the page with a view or button to the front.
    void showPageOf(const QWidget& part) const;
    void click(const char* button) const;
    /// Presses a key in a view.
    void press(QTreeView& view, Qt::Key key) const;

    /// The rows of a view from the top as "Status name" or "Number name", name being the file's without
    /// its directory.
    [[nodiscard]] static QStringList rows(const QTreeView& view);
    /// The file of the current row without its directory; empty without one.
    [[nodiscard]] static QString currentFile(const QTreeView& view);
    /// Clicks on the row of a file, which must be there.
    static void select(QTreeView& view, const QString& name);

    /// Right-clicks on the row of a file, and triggers an entry of the menu unless that is empty.
    /// Returns the entries, with a "-" before one that is disabled.
    QStringList contextMenu(QTreeView& view, const QString& name,
                            const QString& entry = QString()) const;
    /// The same at a place in the view.
    static QStringList contextMenuAt(QTreeView& view, const QPoint& position,
                                     const QString& entry = QString());

    QTemporaryDir directory;
    CertificateLocationInfo info;
    std::unique_ptr<VeskCertificateManager> widget;
};

/// Takes in what the desktop should open, while it lives.
class OpenedUrls : public QObject
{
    Q_OBJECT

public:
    OpenedUrls();
    ~OpenedUrls() override;

    /// Local paths, in their order.
    QStringList paths;

public Q_SLOTS:
    void open(const QUrl& url);
};
