#pragma once

#include <QMainWindow>
#include <QString>

#include <memory>

class ConfigFile;
class QDomElement;
class VeskCertificateManager;
class VeskServerConfigWidget;
class VeskTraceSettingsWidget;
struct CertificateLocationInfo;
struct ConfigPaths;

namespace Ui {
class ZandrelDialog;
}

/// The one top-level window of the console. It decides which configuration file is edited, makes the
/// tabs (that for certificates only when the file tells all of their places), keeps them from being
/// left with unsaved changes and remembers its geometry in the file. It holds no configuration data:
/// each tab reads and writes the file by itself.
class ZandrelDialog : public QMainWindow
{
    Q_OBJECT

public:
    /// Puts the host name into the file, makes the tabs and tells the operator when the file is
    /// missing or can't be written. An empty title selects "Zandrel - " with the file's absolute
    /// path, an empty file name "ServerConfig.xml" in the working directory.
    explicit ZandrelDialog(const QString& title, const QString& fileName, QWidget* parent = nullptr,
                           Qt::WindowFlags flags = Qt::WindowFlags());

    /// Saves the geometry into the configuration file.
    ~ZandrelDialog() override;

    /// Reads where the server keeps its certificates. Returns whether all of it was found.
    [[nodiscard]] bool readCertificateLocations(CertificateLocationInfo& info) const;

    /// Reads the names for a new certificate from the first endpoint. Returns whether all six were
    /// found; otherwise nothing is changed.
    [[nodiscard]] bool readCertificateSettings(QString& commonName, QString& organization,
                                               QString& organizationUnit, QString& locality,
                                               QString& state, QString& country) const;

    /// Puts the host name into the file in place of "[NodeName]". The file is rewritten in any case;
    /// one that isn't well-formed is left empty.
    void expandHostName();

    /// Stores the host name in the file. Returns whether another one was stored there before.
    [[nodiscard]] bool hostNameChanged();

public Q_SLOTS:
    /// Shows the window, then warns when the computer's name has changed since the last start.
    void show();

    /// Asks what to do with unsaved changes of each tab, and reloads the tab that is now current. An
    /// index of -1 asks without the reload.
    void sltCurrentTabChanged(int iCurrentIndex);

    /// Tells for three seconds that the server wants a restart.
    void sltChangesSaved();

protected:
    /// Asks what to do with unsaved changes, as long as the file exists. Closing can't be refused.
    void closeEvent(QCloseEvent* event) override;

private:
    static void expandHostName(ConfigFile& file);
    void makeConfigurationTabs();
    void makeCertificatesTab(const QDomElement& root);
    void connectTabs();
    [[nodiscard]] ConfigPaths configPaths() const;
    void checkFile();
    void disableTabs(const QString& title, const QString& text);
    void restoreWindowGeometry(const QDomElement& root);
    void saveWindowGeometry();

    std::unique_ptr<Ui::ZandrelDialog> ui;
    QString m_configFile;
    QString m_tracePath; ///< Stays empty: "[TracePath]" is shown and written as it stands.
    QString m_applicationPath;
    VeskServerConfigWidget* m_pEndpoints = nullptr;
    VeskTraceSettingsWidget* m_pTrace = nullptr;
    VeskCertificateManager* m_pCertificates = nullptr; ///< Null without certificate locations.
};
