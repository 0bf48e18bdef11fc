#include "console/vesktracesettingswidget.h"

#include "console/configdom.h"
#include "console/configelements.h"
#include "console/configfile.h"
#include "console/traceconfig.h"
#include "widgets/labelalignment.h"
#include "widgets/wheelguard.h"

#include "ui_vesktracesettingswidget.h"

#include <QDesktopServices>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

namespace {

QDomElement traceOf(const ConfigFile& file)
{
    return descend(file.root(), {ConfigElement::UaServerConfig, ConfigElement::Trace});
}

} // namespace

VeskTraceSettingsWidget::VeskTraceSettingsWidget(const QString& configFile,
                                                 const QString& tracePath, QWidget* parent)
    : QWidget(parent)
    , ui(std::make_unique<Ui::VeskTraceSettingsWidget>())
    , m_configFile(configFile)
    , m_tracePath(QString(tracePath).replace(u'\\', u'/'))
{
    ui->setupUi(this);
    // A scroll area paints a background of its own, which differs from that of a tab.
    ui->scrollArea->viewport()->setAutoFillBackground(false);
    ui->scrollAreaContents->setAutoFillBackground(false);
    alignLabels();
    guardWheel(this);
    connectForm();
    setDirty(false);
    sltLoadConfiguration();
}

VeskTraceSettingsWidget::~VeskTraceSettingsWidget() = default;

void VeskTraceSettingsWidget::connectForm()
{
    using Self = VeskTraceSettingsWidget;
    connect(ui->lineEdit_traceFile, &QLineEdit::textEdited, this, &Self::sltTraceFileEdited);
    connect(ui->toolButton_setTraceFile, &QToolButton::clicked, this,
            &Self::sltSetTraceFileClicked);
    connect(ui->pushButton_openTraceFolder, &QPushButton::clicked, this,
            &Self::sltOpenTraceFolderClicked);
    connect(ui->spinBox_maxEntries, &QSpinBox::valueChanged, this, &Self::sltMaxEntriesChanged);
    connect(ui->spinBox_maxBackupFiles, &QSpinBox::valueChanged, this,
            &Self::sltMaxBackupFilesChanged);
    connect(ui->checkBox_appTraceEnabled, &QCheckBox::clicked, this, &Self::sltAppTraceClicked);
    connect(ui->comboBox_appTraceLevel, &QComboBox::textActivated, this,
            &Self::sltAppTraceLevelActivated);
    connect(ui->checkBox_stackTraceEnabled, &QCheckBox::clicked, this, &Self::sltStackTraceClicked);
    connect(ui->comboBox_stackTraceLevel, &QComboBox::textActivated, this,
            &Self::sltStackTraceLevelActivated);
    connect(ui->pushButton_apply, &QPushButton::clicked, this, &Self::sltSaveConfiguration);
    connect(ui->pushButton_revert, &QPushButton::clicked, this, &Self::sltLoadConfiguration);
}

void VeskTraceSettingsWidget::alignLabels()
{
    ::alignLabels(
        {ui->label, ui->label_2, ui->label_3, ui->label_5, ui->label_4, ui->label_6, ui->label_7});
}

void VeskTraceSettingsWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        alignLabels();
    }
}

void VeskTraceSettingsWidget::setDirty(bool bDirty)
{
    m_bDirty = bDirty;
    ui->pushButton_apply->setEnabled(bDirty);
    ui->pushButton_revert->setEnabled(bDirty);
}

void VeskTraceSettingsWidget::sltLoadConfiguration()
{
    ConfigFile file(m_configFile);
    if (file.read() != ConfigFile::ReadResult::Parsed) {
        return;
    }
    const QDomElement trace = traceOf(file);
    if (!trace.isNull()) {
        writeForm(trace);
    }
    setDirty(false); // spin boxes that took another value have set it
}

void VeskTraceSettingsWidget::sltSaveConfiguration()
{
    ConfigFile file(m_configFile);
    if (file.read() != ConfigFile::ReadResult::Parsed) {
        return;
    }
    const QDomElement trace = traceOf(file);
    if (trace.isNull()) {
        return;
    }
    readForm(trace);
    if (!file.write()) {
        return;
    }
    setDirty(false);
    Q_EMIT changesSaved();
}

void VeskTraceSettingsWidget::writeForm(const QDomElement& trace)
{
    const TraceConfig config = readTraceConfig(trace, m_tracePath);
    ui->lineEdit_traceFile->setText(config.appTraceFile);
    ui->spinBox_maxEntries->setValue(config.appTraceMaxEntries);
    ui->spinBox_maxBackupFiles->setValue(config.appTraceMaxBackup);
    ui->checkBox_appTraceEnabled->setChecked(config.isAppTraceEnabled);
    ui->comboBox_appTraceLevel->setCurrentIndex(
        ui->comboBox_appTraceLevel->findText(config.appTraceLevel));
    ui->checkBox_stackTraceEnabled->setChecked(config.isStackTraceEnabled);
    ui->comboBox_stackTraceLevel->setCurrentIndex(
        ui->comboBox_stackTraceLevel->findText(config.stackTraceLevel));
}

void VeskTraceSettingsWidget::readForm(const QDomElement& trace) const
{
    TraceConfig config;
    config.appTraceFile = ui->lineEdit_traceFile->text();
    config.appTraceMaxEntries = ui->spinBox_maxEntries->value();
    config.appTraceMaxBackup = ui->spinBox_maxBackupFiles->value();
    config.isAppTraceEnabled = ui->checkBox_appTraceEnabled->isChecked();
    config.appTraceLevel = ui->comboBox_appTraceLevel->currentText();
    config.isStackTraceEnabled = ui->checkBox_stackTraceEnabled->isChecked();
    config.stackTraceLevel = ui->comboBox_stackTraceLevel->currentText();
    writeTraceConfig(trace, config, m_tracePath);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot is known by this signature.
void VeskTraceSettingsWidget::sltTraceFileEdited(QString /*sFileName*/)
{
    setDirty(true);
}

void VeskTraceSettingsWidget::sltMaxEntriesChanged(int /*iValue*/)
{
    setDirty(true);
}

void VeskTraceSettingsWidget::sltMaxBackupFilesChanged(int /*iValue*/)
{
    setDirty(true);
}

void VeskTraceSettingsWidget::sltAppTraceClicked(bool bEnabled)
{
    if (!bEnabled) {
        ui->checkBox_stackTraceEnabled->setChecked(false);
    }
    setDirty(true);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot is known by this signature.
void VeskTraceSettingsWidget::sltAppTraceLevelActivated(QString /*sValue*/)
{
    setDirty(true);
}

void VeskTraceSettingsWidget::sltStackTraceClicked(bool bEnabled)
{
    if (bEnabled) {
        ui->checkBox_appTraceEnabled->setChecked(true);
    }
    setDirty(true);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the slot is known by this signature.
void VeskTraceSettingsWidget::sltStackTraceLevelActivated(QString /*sValue*/)
{
    setDirty(true);
}

void VeskTraceSettingsWidget::sltSetTraceFileClicked()
{
    const QString fileName =
        QFileDialog::getSaveFileName(this, tr("Choose Trace File Location"),
                                     QFileInfo(ui->lineEdit_traceFile->text()).absoluteFilePath(),
                                     tr("Logfiles (*.log);;All Files (*.*)"));
    if (fileName.isEmpty()) {
        return;
    }
    ui->lineEdit_traceFile->setText(fileName);
    sltTraceFileEdited(fileName);
}

void VeskTraceSettingsWidget::sltOpenTraceFolderClicked()
{
    const QFileInfo traceFile(ui->lineEdit_traceFile->text());
    QDesktopServices::openUrl(QUrl::fromLocalFile(traceFile.absolutePath()));
}
