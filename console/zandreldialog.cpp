#include "console/zandreldialog.h"

#include "certificates/veskcertificatemanager.h"
#include "console/configfile.h"
#include "console/configreaders.h"
#include "console/hostname.h"
#include "console/veskserverconfigwidget.h"
#include "console/vesktracesettingswidget.h"
#include "console/windowgeometry.h"
#include "widgets/plainmessagebox.h"

#include "ui_zandreldialog.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHostInfo>

namespace {

constexpr int noFirewallHandling = 0;
constexpr int restartMessageTime = 3000; // milliseconds

/// Asks what to do with the unsaved changes of a tab, and does it.
template <typename Tab>
void settle(Tab& tab, const QString& title, const QString& question)
{
    const QMessageBox::StandardButton answer =
        showPlainMessageBox(tab.window(), QMessageBox::Question, title, question,
                            QMessageBox::Save | QMessageBox::Discard, QMessageBox::Discard);
    if (answer == QMessageBox::Save) {
        tab.save();
    } else {
        tab.reload();
    }
}

} // namespace

ZandrelDialog::ZandrelDialog(const QString& title, const QString& fileName, QWidget* parent,
                             Qt::WindowFlags flags)
    : QMainWindow(parent, flags)
    , ui(std::make_unique<Ui::ZandrelDialog>())
    , m_configFile(fileName.isEmpty() ? tr("ServerConfig.xml") : fileName)
    , m_applicationPath(QCoreApplication::applicationDirPath())
{
    ui->setupUi(this);
    connect(ui->pushButton_close, &QPushButton::clicked, this, &ZandrelDialog::close);
    ConfigFile file(m_configFile);
    expandHostName(file);
    makeConfigurationTabs();
    // Mostly it still holds what was just written, and isn't parsed again.
    const bool isParsed = file.read() == ConfigFile::ReadResult::Parsed;
    if (isParsed) {
        makeCertificatesTab(file.root());
    }
    connectTabs();
    checkFile();
    setWindowTitle(title.isEmpty()
                       ? tr("Zandrel - %1").arg(QFileInfo(m_configFile).absoluteFilePath())
                       : title);
    if (isParsed) {
        restoreWindowGeometry(file.root());
    }
}

ZandrelDialog::~ZandrelDialog()
{
    saveWindowGeometry();
}

void ZandrelDialog::makeConfigurationTabs()
{
    m_pEndpoints =
        new VeskServerConfigWidget(m_configFile, noFirewallHandling, tr("UA Port"), this);
    ui->tabWidget->addTab(m_pEndpoints, tr("UA Endpoints"));
    m_pTrace = new VeskTraceSettingsWidget(m_configFile, m_tracePath, this);
    ui->tabWidget->addTab(m_pTrace, tr("Trace"));
    connect(m_pEndpoints, &VeskServerConfigWidget::changesSaved, this,
            &ZandrelDialog::sltChangesSaved);
    connect(m_pTrace, &VeskTraceSettingsWidget::changesSaved, this,
            &ZandrelDialog::sltChangesSaved);
}

void ZandrelDialog::connectTabs()
{
    // The tabs were made after the button; by Tab it comes last.
    setTabOrder(previousInFocusChain(), ui->pushButton_close);
    connect(ui->tabWidget, &QTabWidget::currentChanged, this, &ZandrelDialog::sltCurrentTabChanged);
}

void ZandrelDialog::makeCertificatesTab(const QDomElement& root)
{
    CertificateLocationInfo info;
    if (!::readCertificateLocations(root, configPaths(), info)) {
        return;
    }
    m_pCertificates = new VeskCertificateManager(
        QString(), QString(), info, QIcon(QStringLiteral(":/images/ua_64x64.png")), false, this);
    ui->tabWidget->addTab(m_pCertificates, tr("Certificates"));
}

void ZandrelDialog::checkFile()
{
    if (!QFileInfo::exists(m_configFile)) {
        disableTabs(tr("Configuration File Not Found"),
                    tr("The configuration file '%1' could not be opened.\n"
                       "Please check if it exists!"));
    } else if (!isConfigFileWritable(m_configFile)) {
        disableTabs(tr("Configuration File Not Writable"),
                    tr("The configuration file '%1' could not be opened for writing.\n"
                       "Please check for sufficient access rights!"));
    }
}

void ZandrelDialog::disableTabs(const QString& title, const QString& text)
{
    ui->tabWidget->setEnabled(false);
    showPlainMessageBox(this, QMessageBox::Critical, title, text.arg(m_configFile));
}

ConfigPaths ZandrelDialog::configPaths() const
{
    return {m_applicationPath, QFileInfo(m_configFile).absolutePath()};
}

bool ZandrelDialog::readCertificateLocations(CertificateLocationInfo& info) const
{
    ConfigFile file(m_configFile);
    return file.read() == ConfigFile::ReadResult::Parsed &&
           ::readCertificateLocations(file.root(), configPaths(), info);
}

bool ZandrelDialog::readCertificateSettings(QString& commonName, QString& organization,
                                            QString& organizationUnit, QString& locality,
                                            QString& state, QString& country) const
{
    ConfigFile file(m_configFile);
    return file.read() == ConfigFile::ReadResult::Parsed &&
           ::readCertificateSettings(file.root(), QHostInfo::localHostName(), commonName,
                                     organization, organizationUnit, locality, state, country);
}

void ZandrelDialog::expandHostName()
{
    ConfigFile file(m_configFile);
    expandHostName(file);
}

void ZandrelDialog::expandHostName(ConfigFile& file)
{
    switch (file.read()) {
    case ConfigFile::ReadResult::NotOpened:
    case ConfigFile::ReadResult::Refused:
        return;
    case ConfigFile::ReadResult::Parsed:
        ::expandHostName(file.document(), QHostInfo::localHostName());
        break;
    case ConfigFile::ReadResult::NotParsed:
        break; // A damaged file is emptied by the write below; it is meant so.
    }
    // A file that can't be written is told by checkFile().
    static_cast<void>(file.write());
}

bool ZandrelDialog::hostNameChanged()
{
    ConfigFile file(m_configFile);
    if (file.read() != ConfigFile::ReadResult::Parsed) {
        return false;
    }
    const HostNameCheck check = checkHostName(file.document(), QHostInfo::localHostName());
    if (check.isStored) {
        // When the name can't be stored, the warning comes again at the next start.
        static_cast<void>(file.write());
    }
    return check.isChanged;
}

void ZandrelDialog::show()
{
    QWidget::show();
    if (hostNameChanged()) {
        showPlainMessageBox(this, QMessageBox::Warning, tr("Change in Hostname Detected"),
                            tr("The hostname of the computer was changed.\n\n"
                               "Please check the following settings and adjust them if necessary:\n"
                               "- Endpoint URLs of the UA Endpoints\n"
                               "- The Application Instance Certificate of UA Server"));
    }
}

void ZandrelDialog::sltCurrentTabChanged(int iCurrentIndex)
{
    if (m_pEndpoints->m_bDirty) {
        settle(*m_pEndpoints, tr("Endpoints"),
               tr("You have unsaved changes in the Endpoints tab.\n"
                  "Do you want to save or discard them?"));
    }
    if (m_pTrace->m_bDirty) {
        settle(*m_pTrace, tr("Trace Settings"),
               tr("You have unsaved changes in the Trace Settings tab.\n"
                  "Do you want to save or discard them?"));
    }
    if (iCurrentIndex == -1) {
        return;
    }
    const QWidget* current = ui->tabWidget->currentWidget();
    if (current == m_pEndpoints) {
        m_pEndpoints->reload();
    } else if (current == m_pTrace) {
        m_pTrace->reload();
    }
}

void ZandrelDialog::closeEvent(QCloseEvent* event)
{
    if (QFileInfo::exists(m_configFile)) {
        sltCurrentTabChanged(-1);
    }
    QMainWindow::closeEvent(event);
}

void ZandrelDialog::sltChangesSaved()
{
    if (QStatusBar* bar = statusBar()) {
        bar->showMessage(tr("Please restart UA server in order to apply the changes"),
                         restartMessageTime);
    }
}

void ZandrelDialog::restoreWindowGeometry(const QDomElement& root)
{
    const QByteArray geometry = readWindowGeometry(root);
    if (!geometry.isEmpty()) {
        restoreGeometry(geometry);
    }
}

void ZandrelDialog::saveWindowGeometry()
{
    ConfigFile file(m_configFile);
    if (file.read() != ConfigFile::ReadResult::Parsed) {
        return;
    }
    writeWindowGeometry(file.document(), saveGeometry());
    // There is nobody left to tell.
    static_cast<void>(file.write());
}
