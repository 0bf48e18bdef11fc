#include "certificates/vesknewcertificatedlg.h"

#include "certificates/newcertificate.h"
#include "certificates/secrettext.h"
#include "platform/addressresolver.h"
#include "widgets/displaytext.h"
#include "widgets/labelalignment.h"
#include "widgets/plainmessagebox.h"
#include "widgets/wheelguard.h"

#include "ui_vesknewcertificatedlg.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHostAddress>
#include <QIcon>
#include <QInputDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QStyle>

#include <array>

namespace {

constexpr int shortestPassword = 4;
constexpr int longestRecommendedTime = 8; // index of "5 Years"
constexpr int initialTime = 4;            // index of "1 Year"
constexpr int statusPictureSize = 16;

struct Choice
{
    const char* text;
    OpcUa_UInt32 value;
};

constexpr Choice keySizes[] = {
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1024 bits"), 1024},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "2048 bits"), 2048},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "3072 bits"), 3072},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "4096 bits"), 4096},
};

// In seconds. A month has 31 days here and a year 365.
constexpr Choice lifetimes[] = {
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1 Hour"), 3600},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1 Day"), 86400},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1 Week"), 604800},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1 Month"), 2678400},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "1 Year"), 31536000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "2 Years"), 63072000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "3 Years"), 94608000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "4 Years"), 126144000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "5 Years"), 157680000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "10 Years"), 315360000},
    {QT_TRANSLATE_NOOP("VeskNewCertificateDlg", "20 Years"), 630720000},
};

/// Shows the wait cursor as long as it lives.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    Q_DISABLE_COPY_MOVE(WaitCursor)
};

/// Empty when the system doesn't tell it.
QString computerName()
{
    std::array<char, 255> name{};
    const bool isKnown = OpcUa_P_Resolver_Source().computerName(name.data(), name.size());
    return isKnown ? QString::fromLocal8Bit(name.data()) : QString();
}

bool isDnsName(const QString& text)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(^(?=.{1,255}\z)[0-9A-Za-z](?:(?:[0-9A-Za-z]|-){0,61}[0-9A-Za-z])?)"
                       R"((?:\.[0-9A-Za-z](?:(?:[0-9A-Za-z]|-){0,61}[0-9A-Za-z])?)*\.?\z)"));
    return pattern.match(text).hasMatch();
}

bool isIpAddress(const QString& text)
{
    return QHostAddress().setAddress(text);
}

UaString toUaString(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return {bytes.constData(), bytes.size()};
}

UaStringArray textsOf(const QListWidget& list)
{
    UaStringArray texts;
    if (OpcUa_IsNotGood(texts.create(list.count()))) {
        qBadAlloc();
    }
    for (int row = 0; row < list.count(); ++row) {
        UaString text = toUaString(list.item(row)->text());
        if (OpcUa_IsNotGood(text.detach(&texts[static_cast<OpcUa_UInt32>(row)]))) {
            qBadAlloc();
        }
    }
    return texts;
}

/// A list that is cleared doesn't tell.
void fill(QListWidget& list, const QStringList& texts)
{
    list.clear();
    list.addItems(texts);
}

/// How a list is added to.
struct EntryQuestion
{
    QString title;
    QString prompt;
    QString retryPrompt;
    bool (*isValid)(const QString& text);
};

/// Asks until the answer is valid; an empty one, which Cancel gives too, adds nothing.
void addEntry(QListWidget& list, const EntryQuestion& question)
{
    QString prompt = question.prompt;
    for (;;) {
        const QString text = QInputDialog::getText(list.window(), question.title, prompt);
        if (text.isEmpty()) {
            return;
        }
        if (question.isValid(text)) {
            list.addItem(text);
            return;
        }
        prompt = question.retryPrompt;
    }
}

/// Overwrites what is typed into an input. What it has outgrown before is Qt's.
void wipe(QLineEdit& input)
{
    const QSignalBlocker blocker(input);
    QString text = input.text(); // shares the memory
    wipe(text);
    input.clear();
}

} // namespace

VeskNewCertificateDlg::VeskNewCertificateDlg(const QString& sCommonName, const QString& sUriPart,
                                             bool bMandatory, bool bOfferPassword, QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::NewCertificateDialog>())
    , m_bMandatory(bMandatory)
{
    ui->setupUi(this);
    const QSize size(statusPictureSize, statusPictureSize);
    m_validPixmap =
        QIcon(QStringLiteral(":/veskwidgets/images/on.png")).pixmap(size, devicePixelRatio());
    m_missingPixmap =
        QIcon(QStringLiteral(":/veskwidgets/images/clearlog.png")).pixmap(size, devicePixelRatio());
    if (!bOfferPassword) {
        hidePassword();
    }
    alignLabels();
    fillComboBoxes();
    guardWheel(this);
    connectForm();
    showDefaults(sCommonName, sUriPart);
    showStatuses();
    if (m_bMandatory) {
        makeMandatory();
    }
    fitScreen();
}

VeskNewCertificateDlg::~VeskNewCertificateDlg()
{
    wipe(*ui->txtPassword);
    wipe(*ui->txtPasswordRepeat);
}

void VeskNewCertificateDlg::hidePassword()
{
    QWidget* const widgets[] = {
        ui->chkPassword,       ui->lblPassword,       ui->txtPassword,          ui->lblStatPassword,
        ui->lblPasswordRepeat, ui->txtPasswordRepeat, ui->lblStatPasswordRepeat};
    for (QWidget* widget : widgets) {
        widget->hide();
    }
}

void VeskNewCertificateDlg::alignLabels()
{
    ::alignLabels({ui->lblCommonName, ui->lblOrganization, ui->lblOrganizationUnit, ui->lblLocality,
                   ui->lblState, ui->lblCountry, ui->lblURI, ui->lblDNS, ui->lblIP,
                   ui->lblRSAKeyStrength, ui->lblTime, ui->lblPassword, ui->lblPasswordRepeat});
}

void VeskNewCertificateDlg::fillComboBoxes()
{
    for (const Choice& choice : keySizes) {
        ui->cmbRSAKeyStrength->addItem(tr(choice.text), choice.value);
    }
    for (const Choice& choice : lifetimes) {
        ui->cmbTime->addItem(tr(choice.text), choice.value);
    }
}

void VeskNewCertificateDlg::connectForm()
{
    using Self = VeskNewCertificateDlg;
    connect(ui->txtCommonName, &QLineEdit::textChanged, this, &Self::sltCNChanged);
    connect(ui->txtOrganization, &QLineEdit::textChanged, this, &Self::sltOChanged);
    connect(ui->txtOrganizationUnit, &QLineEdit::textChanged, this, &Self::sltOUChanged);
    connect(ui->txtLocality, &QLineEdit::textChanged, this, &Self::sltLChanged);
    connect(ui->txtState, &QLineEdit::textChanged, this, &Self::sltSChanged);
    connect(ui->txtCountry, &QLineEdit::textChanged, this, &Self::sltCChanged);
    connect(ui->txtURI, &QLineEdit::textChanged, this, &Self::sltURIChanged);
    connectLists();
    connect(ui->cmbTime, &QComboBox::currentIndexChanged, this, &Self::sltTimeChanged);
    connect(ui->chkPassword, &QCheckBox::stateChanged, this, &Self::sltPasswordEnabled);
    connect(ui->txtPassword, &QLineEdit::textChanged, this, &Self::sltPasswordChanged);
    connect(ui->txtPasswordRepeat, &QLineEdit::textChanged, this, &Self::sltPasswordChanged);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &Self::sltCreateCertificate);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &Self::reject);
}

void VeskNewCertificateDlg::connectLists()
{
    using Self = VeskNewCertificateDlg;
    const auto connectList = [this](QListWidget* list, void (Self::*changed)(),
                                    void (Self::*currentChanged)()) {
        connect(list, &QListWidget::itemChanged, this, changed);
        connect(list->model(), &QAbstractItemModel::rowsInserted, this, changed);
        connect(list->model(), &QAbstractItemModel::rowsRemoved, this, changed);
        connect(list, &QListWidget::currentItemChanged, this, currentChanged);
    };
    connectList(ui->lstDNS, &Self::sltDNSChanged, &Self::sltCurrentDNSChanged);
    connectList(ui->lstIP, &Self::sltIPChanged, &Self::sltCurrentIPChanged);
    connect(ui->btnAddDNS, &QPushButton::clicked, this, &Self::sltAddDNS);
    connect(ui->btnRemoveDNS, &QPushButton::clicked, this, &Self::sltRemoveDNS);
    connect(ui->btnAddIP, &QPushButton::clicked, this, &Self::sltAddIP);
    connect(ui->btnRemoveIP, &QPushButton::clicked, this, &Self::sltRemoveIP);
}

void VeskNewCertificateDlg::showDefaults(const QString& sCommonName, const QString& sUriPart)
{
    const QString host = computerName();
    ui->txtCommonName->setText(sCommonName);
    ui->txtURI->setText(QStringLiteral("urn:%1:%2:%3").arg(host, sUriPart, sCommonName));
    ui->txtURI->setToolTip(plainToolTip(ui->txtURI->text()));
    ui->txtURI->setCursorPosition(0);
    if (!host.isEmpty()) {
        ui->lstDNS->addItem(host);
    }
    ui->cmbTime->setCurrentIndex(initialTime);
    ui->txtOrganization->setFocus();
    sltPasswordEnabled(Qt::Unchecked);
}

/// What has been empty from the beginning has not changed and so not been looked at.
void VeskNewCertificateDlg::showStatuses()
{
    sltCNChanged(ui->txtCommonName->text());
    sltOChanged(ui->txtOrganization->text());
    sltOUChanged(ui->txtOrganizationUnit->text());
    sltLChanged(ui->txtLocality->text());
    sltSChanged(ui->txtState->text());
    sltCChanged(ui->txtCountry->text());
    sltURIChanged(ui->txtURI->text());
    sltDNSChanged();
    sltIPChanged();
}

void VeskNewCertificateDlg::makeMandatory()
{
    setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    ui->buttonBox->button(QDialogButtonBox::Cancel)->hide();
}

/// As high as the form where the screen has room for it and for the frame around the window.
void VeskNewCertificateDlg::fitScreen()
{
    ensurePolished();
    const int frame = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    const QSize available = screen()->availableSize() - QSize(frame, 2 * frame);
    resize(sizeHint().boundedTo(available));
}

void VeskNewCertificateDlg::setCommonName(const QString& sCommonName)
{
    ui->txtCommonName->setText(sCommonName);
}

void VeskNewCertificateDlg::setOrganization(const QString& sOrganization)
{
    ui->txtOrganization->setText(sOrganization);
}

void VeskNewCertificateDlg::setOrganizationUnit(const QString& sOrganizationUnit)
{
    ui->txtOrganizationUnit->setText(sOrganizationUnit);
}

void VeskNewCertificateDlg::setLocality(const QString& sLocality)
{
    ui->txtLocality->setText(sLocality);
}

void VeskNewCertificateDlg::setState(const QString& sState)
{
    ui->txtState->setText(sState);
}

void VeskNewCertificateDlg::setCountry(const QString& sCountry)
{
    ui->txtCountry->setText(sCountry);
}

void VeskNewCertificateDlg::setIPAddresses(const QStringList& ipAddresses)
{
    fill(*ui->lstIP, ipAddresses);
    sltIPChanged();
}

void VeskNewCertificateDlg::setDNSNames(const QStringList& dnsNames)
{
    fill(*ui->lstDNS, dnsNames);
    sltDNSChanged();
}

void VeskNewCertificateDlg::setKeySize(int iBits)
{
    ui->cmbRSAKeyStrength->setCurrentIndex(std::max(ui->cmbRSAKeyStrength->findData(iBits), 0));
}

void VeskNewCertificateDlg::setSignatureAlgorithm(int iSignatureAlgorithm)
{
    m_iSignatureAlgorithm = iSignatureAlgorithm;
}

QString VeskNewCertificateDlg::password() const
{
    return ui->chkPassword->isChecked() ? unsharedCopy(ui->txtPassword->text()) : QString();
}

void VeskNewCertificateDlg::sltCNChanged(const QString& sText)
{
    showStatus(ui->lblStatCN, ui->txtCommonName,
               sText.isEmpty() ? tr("The common name is missing.") : QString());
}

void VeskNewCertificateDlg::sltOChanged(const QString& sText)
{
    showStatus(ui->lblStatO, ui->txtOrganization,
               sText.isEmpty() ? tr("The organization is missing.") : QString());
}

void VeskNewCertificateDlg::sltLChanged(const QString& sText)
{
    showStatus(ui->lblStatL, ui->txtLocality,
               sText.isEmpty() ? tr("The locality is missing.") : QString());
}

void VeskNewCertificateDlg::sltSChanged(const QString& sText)
{
    showStatus(ui->lblStatS, ui->txtState,
               sText.isEmpty() ? tr("The state is missing.") : QString());
}

void VeskNewCertificateDlg::sltURIChanged(const QString& sText)
{
    showStatus(ui->lblStatURI, ui->txtURI,
               sText.isEmpty() ? tr("The application URI is missing.") : QString());
}

void VeskNewCertificateDlg::sltOUChanged(const QString& sText)
{
    ui->lblStatOU->setEnabled(!sText.isEmpty());
    showStatus(ui->lblStatOU, ui->txtOrganizationUnit,
               sText.isEmpty() ? tr("The organization unit may be left empty.") : QString());
}

void VeskNewCertificateDlg::sltCChanged(const QString& sText)
{
    showStatus(ui->lblStatC, ui->txtCountry,
               sText.size() != 2 ? tr("The two letters of the country are missing.") : QString());
}

void VeskNewCertificateDlg::sltDNSChanged()
{
    if (ui->lstDNS->count() == 0) {
        ui->btnRemoveDNS->setEnabled(false);
    }
    showNameStatuses();
}

void VeskNewCertificateDlg::sltIPChanged()
{
    if (ui->lstIP->count() == 0) {
        ui->btnRemoveIP->setEnabled(false);
    }
    showNameStatuses();
}

void VeskNewCertificateDlg::sltCurrentDNSChanged()
{
    ui->btnRemoveDNS->setEnabled(ui->lstDNS->currentRow() != -1);
}

void VeskNewCertificateDlg::sltCurrentIPChanged()
{
    ui->btnRemoveIP->setEnabled(ui->lstIP->currentRow() != -1);
}

void VeskNewCertificateDlg::sltAddDNS()
{
    addEntry(*ui->lstDNS, {.title = tr("Add DNS Name"),
                           .prompt = tr("Enter the DNS name to add:"),
                           .retryPrompt = tr("Please ensure to enter a valid DNS name!\n"
                                             "Enter the DNS name to add:"),
                           .isValid = isDnsName});
}

void VeskNewCertificateDlg::sltAddIP()
{
    addEntry(*ui->lstIP, {.title = tr("Add IP Address"),
                          .prompt = tr("Enter the IP address to add:"),
                          .retryPrompt = tr("Please ensure to enter a valid IPv4 or IPv6 address!\n"
                                            "Enter the IP address to add:"),
                          .isValid = isIpAddress});
}

void VeskNewCertificateDlg::sltRemoveDNS()
{
    delete ui->lstDNS->takeItem(ui->lstDNS->currentRow());
}

void VeskNewCertificateDlg::sltRemoveIP()
{
    delete ui->lstIP->takeItem(ui->lstIP->currentRow());
}

void VeskNewCertificateDlg::sltPasswordChanged(const QString& /*sText*/)
{
    showStatus(ui->lblStatPassword, ui->txtPassword,
               ui->txtPassword->text().size() < shortestPassword
                   ? tr("The password needs at least four characters.")
                   : QString());
    showStatus(ui->lblStatPasswordRepeat, ui->txtPasswordRepeat,
               ui->txtPasswordRepeat->text() != ui->txtPassword->text()
                   ? tr("The repeated password differs.")
                   : QString());
}

void VeskNewCertificateDlg::sltPasswordEnabled(int state)
{
    QWidget* const widgets[] = {ui->lblPassword,       ui->txtPassword,
                                ui->lblStatPassword,   ui->lblPasswordRepeat,
                                ui->txtPasswordRepeat, ui->lblStatPasswordRepeat};
    for (QWidget* widget : widgets) {
        widget->setEnabled(state == Qt::Checked);
    }
    sltPasswordChanged(ui->txtPassword->text());
}

void VeskNewCertificateDlg::sltTimeChanged(int index)
{
    if (index > longestRecommendedTime) {
        showPlainMessageBox(this, QMessageBox::Warning, tr("Security Warning"),
                            tr("It is not recommended to use certificates with a lifetime greater "
                               "than 5 years."));
    }
}

void VeskNewCertificateDlg::sltCreateCertificate()
{
    NewCertificate made;
    {
        const WaitCursor cursor;
        made = makeNewCertificate(order());
    }
    if (!made.failure.isEmpty()) {
        showPlainMessageBox(this, QMessageBox::Critical, tr("Could Not Create Certificate"),
                            made.failure);
        return;
    }
    m_keyPair = std::move(made.keyPair);
    m_certificate = std::move(made.certificate);
    accept();
}

void VeskNewCertificateDlg::reject()
{
    // The Escape key comes here, too.
    if (!m_bMandatory) {
        QDialog::reject();
    }
}

void VeskNewCertificateDlg::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        alignLabels();
    }
}

void VeskNewCertificateDlg::closeEvent(QCloseEvent* event)
{
    if (m_bMandatory) {
        event->ignore();
    } else {
        QDialog::closeEvent(event);
    }
}

NewCertificateOrder VeskNewCertificateDlg::order() const
{
    NewCertificateOrder order;
    order.subject.commonName = toUaString(ui->txtCommonName->text());
    order.subject.organization = toUaString(ui->txtOrganization->text());
    order.subject.organizationUnit = toUaString(ui->txtOrganizationUnit->text());
    order.subject.locality = toUaString(ui->txtLocality->text());
    order.subject.state = toUaString(ui->txtState->text());
    order.subject.country = toUaString(ui->txtCountry->text());
    order.info.uri = toUaString(ui->txtURI->text());
    order.info.ipAddresses = textsOf(*ui->lstIP);
    order.info.dnsNames = textsOf(*ui->lstDNS);
    order.info.validTime = ui->cmbTime->currentData().toUInt();
    order.keySize = ui->cmbRSAKeyStrength->currentData().toInt();
    order.signatureAlgorithm = m_iSignatureAlgorithm;
    return order;
}

void VeskNewCertificateDlg::showStatus(QLabel* label, QWidget* input, const QString& problem)
{
    label->setPixmap(problem.isEmpty() ? m_validPixmap : m_missingPixmap);
    label->setToolTip(problem);
    label->setAccessibleName(problem.isEmpty() ? tr("Valid") : problem);
    input->setAccessibleDescription(problem);
    updateOkButton();
}

/// One of both lists is enough; the picture of an empty one is disabled then.
void VeskNewCertificateDlg::showNameStatuses()
{
    const bool bHasDNS = ui->lstDNS->count() > 0;
    const bool bHasIP = ui->lstIP->count() > 0;
    const QString missing = tr("A domain name or an IP address is missing.");
    ui->lblStatDNS->setEnabled(bHasDNS || !bHasIP);
    ui->lblStatIP->setEnabled(bHasIP || !bHasDNS);
    showStatus(ui->lblStatDNS, ui->lstDNS,
               bHasDNS  ? QString()
               : bHasIP ? tr("The IP address is enough.")
                        : missing);
    showStatus(ui->lblStatIP, ui->lstIP,
               bHasIP    ? QString()
               : bHasDNS ? tr("The domain name is enough.")
                         : missing);
}

/// OK is enabled when no enabled picture shows that something is missing.
void VeskNewCertificateDlg::updateOkButton()
{
    const QLabel* const labels[] = {ui->lblStatCN,
                                    ui->lblStatO,
                                    ui->lblStatOU,
                                    ui->lblStatL,
                                    ui->lblStatS,
                                    ui->lblStatC,
                                    ui->lblStatURI,
                                    ui->lblStatDNS,
                                    ui->lblStatIP,
                                    ui->lblStatPassword,
                                    ui->lblStatPasswordRepeat};
    QStringList problems;
    for (const QLabel* label : labels) {
        if (label->isEnabledTo(this) && !label->toolTip().isEmpty()) {
            problems.append(label->toolTip());
        }
    }
    problems.removeDuplicates();
    QPushButton* ok = ui->buttonBox->button(QDialogButtonBox::Ok);
    ok->setEnabled(problems.isEmpty());
    ok->setToolTip(problems.join(QLatin1Char('\n')));
}
