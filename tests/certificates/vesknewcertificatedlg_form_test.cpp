#include "tests/certificates/newcertificatedialog.h"
#include "tests/support/messageboxanswer.h"

#include <QGroupBox>
#include <QMetaMethod>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

// What the dialog shows and how it is worked with keys, mouse and wheel.

namespace {

QStringList itemsOf(const QComboBox& combo)
{
    QStringList items;
    for (int i = 0; i < combo.count(); ++i) {
        items.append(combo.itemText(i));
    }
    return items;
}

void turnWheel(QWidget& widget)
{
    const QPointF center = QRectF(widget.rect()).center();
    QWheelEvent event(center, widget.mapToGlobal(center), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

const char* const passwordWidgets[] = {
    "chkPassword",       "lblPassword",       "txtPassword",          "lblStatPassword",
    "lblPasswordRepeat", "txtPasswordRepeat", "lblStatPasswordRepeat"};

} // namespace

class VeskNewCertificateDlgFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void widgets_carry_their_texts_data();
    static void widgets_carry_their_texts();
    static void labels_name_their_inputs_data();
    static void labels_name_their_inputs();
    static void buttons_of_both_lists_can_be_told_apart();
    static void choices_have_their_order_and_initial_values();
    static void slots_are_public_and_keep_their_order();
    static void host_name_stands_in_uri_and_names_data();
    static void host_name_stands_in_uri_and_names();
    static void uri_shows_texts_as_they_stand();
    static void uri_does_not_follow_the_common_name();
    static void password_is_hidden_unless_offered();
    static void focus_begins_at_the_organization();
    static void tab_key_walks_in_reading_order();
    static void mnemonics_reach_the_buttons_of_the_lists();
    static void wheel_changes_only_what_has_the_focus();
    static void setters_fill_the_form();
    static void setter_selects_the_key_size_data();
    static void setter_selects_the_key_size();
    static void setters_replace_the_lists();
    static void long_lifetimes_warn_and_stay_data();
    static void long_lifetimes_warn_and_stay();
    static void cancel_and_close_reject_data();
    static void cancel_and_close_reject();
    static void mandatory_dialog_stays_open_data();
    static void mandatory_dialog_stays_open();
    static void nothing_is_cut_data();
    static void nothing_is_cut();
    static void small_dialog_scrolls_to_the_focus();
    static void inputs_of_all_groups_stand_in_one_line_when_the_font_grows();
};

void VeskNewCertificateDlgFormTest::widgets_carry_their_texts_data()
{
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<QString>("text");

    const QByteArray label = "QLabel";
    const QByteArray group = "QGroupBox";
    QTest::newRow("groupBox_Subject") << group << u"Subject:"_s;
    QTest::newRow("lblCommonName") << label << u"Common Name:"_s;
    QTest::newRow("lblOrganization") << label << u"Organization:"_s;
    QTest::newRow("lblOrganizationUnit") << label << u"Organization Unit:"_s;
    QTest::newRow("lblLocality") << label << u"Locality:"_s;
    QTest::newRow("lblState") << label << u"State:"_s;
    QTest::newRow("lblCountry") << label << u"Country:"_s;
    QTest::newRow("lblCountryHint") << label << u"(Two letter code, e.g. DE, US, ...)"_s;
    QTest::newRow("groupBox_OpcUaInformation") << group << u"OPC UA Information"_s;
    QTest::newRow("lblURI") << label << u"Application URI:"_s;
    QTest::newRow("lblDNS") << label << u"Domain Names:"_s;
    QTest::newRow("lblIP") << label << u"IP Addresses:"_s;
    QTest::newRow("groupBox_CertSettings") << group << u"Certificate Settings"_s;
    QTest::newRow("lblRSAKeyStrength") << label << u"RSA Key Strength:"_s;
    QTest::newRow("lblTime") << label << u"Certificate Validity:"_s;
    QTest::newRow("chkPassword") << QByteArray("QCheckBox") << u"Password protect private key"_s;
    QTest::newRow("lblPassword") << label << u"Password:"_s;
    QTest::newRow("lblPasswordRepeat") << label << u"Password (repeat):"_s;
}

void VeskNewCertificateDlgFormTest::widgets_carry_their_texts()
{
    QFETCH(const QByteArray, className);
    QFETCH(const QString, text);

    const NewCertificateDialog form;
    const auto& widget = form.child<QWidget>(QTest::currentDataTag());
    QCOMPARE(QByteArray(widget.metaObject()->className()), className);
    QCOMPARE(widget.property(className == "QGroupBox" ? "title" : "text").toString(), text);

    QCOMPARE(form.dialog->objectName(), u"NewCertificateDialog"_s);
    QCOMPARE(form.dialog->windowTitle(), u"New Application Instance Certificate"_s);
    QCOMPARE(form.line("txtCountry").maxLength(), 2);
    QCOMPARE(form.line("txtPassword").echoMode(), QLineEdit::Password);
    QCOMPARE(form.line("txtPasswordRepeat").echoMode(), QLineEdit::Password);
    QVERIFY(!form.line("txtURI").isEnabled());
    QCOMPARE(form.protect().whatsThis(),
             u"You can protect the access to your private key with a password. Enabling this "
             "causes the veskwidgets to prompt you with a password dialog at startup."_s);
}

void VeskNewCertificateDlgFormTest::labels_name_their_inputs_data()
{
    QTest::addColumn<QByteArray>("input");

    QTest::newRow("lblCommonName") << QByteArray("txtCommonName");
    QTest::newRow("lblOrganization") << QByteArray("txtOrganization");
    QTest::newRow("lblOrganizationUnit") << QByteArray("txtOrganizationUnit");
    QTest::newRow("lblLocality") << QByteArray("txtLocality");
    QTest::newRow("lblState") << QByteArray("txtState");
    QTest::newRow("lblCountry") << QByteArray("txtCountry");
    QTest::newRow("lblURI") << QByteArray("txtURI");
    QTest::newRow("lblDNS") << QByteArray("lstDNS");
    QTest::newRow("lblIP") << QByteArray("lstIP");
    QTest::newRow("lblRSAKeyStrength") << QByteArray("cmbRSAKeyStrength");
    QTest::newRow("lblTime") << QByteArray("cmbTime");
    QTest::newRow("lblPassword") << QByteArray("txtPassword");
    QTest::newRow("lblPasswordRepeat") << QByteArray("txtPasswordRepeat");
}

void VeskNewCertificateDlgFormTest::labels_name_their_inputs()
{
    QFETCH(const QByteArray, input);

    const NewCertificateDialog form;
    QVERIFY(form.child<QLabel>(QTest::currentDataTag()).buddy() ==
            &form.child<QWidget>(input.constData()));
}

void VeskNewCertificateDlgFormTest::buttons_of_both_lists_can_be_told_apart()
{
    const NewCertificateDialog form;
    QCOMPARE(form.child<QPushButton>("btnAddDNS").accessibleName(), u"Add Domain Name"_s);
    QCOMPARE(form.child<QPushButton>("btnRemoveDNS").accessibleName(), u"Remove Domain Name"_s);
    QCOMPARE(form.child<QPushButton>("btnAddIP").accessibleName(), u"Add IP Address"_s);
    QCOMPARE(form.child<QPushButton>("btnRemoveIP").accessibleName(), u"Remove IP Address"_s);
}

void VeskNewCertificateDlgFormTest::choices_have_their_order_and_initial_values()
{
    const NewCertificateDialog form;
    QCOMPARE(itemsOf(form.keySize()),
             QStringList({u"1024 bits"_s, u"2048 bits"_s, u"3072 bits"_s, u"4096 bits"_s}));
    QCOMPARE(form.keySize().currentIndex(), 0);
    QCOMPARE(
        itemsOf(form.time()),
        QStringList({u"1 Hour"_s, u"1 Day"_s, u"1 Week"_s, u"1 Month"_s, u"1 Year"_s, u"2 Years"_s,
                     u"3 Years"_s, u"4 Years"_s, u"5 Years"_s, u"10 Years"_s, u"20 Years"_s}));
    QCOMPARE(form.time().currentIndex(), 4);
}

void VeskNewCertificateDlgFormTest::slots_are_public_and_keep_their_order()
{
    const QMetaObject& meta = VeskNewCertificateDlg::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        methods.append(meta.method(i).methodSignature());
    }
    QCOMPARE(methods, QByteArrayList({"sltCNChanged(QString)",
                                      "sltOChanged(QString)",
                                      "sltLChanged(QString)",
                                      "sltSChanged(QString)",
                                      "sltURIChanged(QString)",
                                      "sltOUChanged(QString)",
                                      "sltCChanged(QString)",
                                      "sltDNSChanged()",
                                      "sltIPChanged()",
                                      "sltCurrentDNSChanged()",
                                      "sltCurrentIPChanged()",
                                      "sltAddDNS()",
                                      "sltAddIP()",
                                      "sltRemoveDNS()",
                                      "sltRemoveIP()",
                                      "sltPasswordChanged(QString)",
                                      "sltPasswordEnabled(int)",
                                      "sltTimeChanged(int)",
                                      "sltCreateCertificate()",
                                      "reject()"}));
}

void VeskNewCertificateDlgFormTest::host_name_stands_in_uri_and_names_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<QString>("commonName");
    QTest::addColumn<QString>("uriPart");
    QTest::addColumn<QString>("uri");
    QTest::addColumn<QStringList>("dnsNames");

    QTest::newRow("as in the console")
        << u"plant7"_s << QString() << QString() << u"urn:plant7::"_s << QStringList{u"plant7"_s};
    QTest::newRow("with defaults") << u"plant7"_s << u"Press"_s << u"Hall"_s
                                   << u"urn:plant7:Hall:Press"_s << QStringList{u"plant7"_s};
    const QString longest(254, u'h');
    QTest::newRow("longest name that the buffer takes")
        << longest << QString() << QString() << u"urn:%1::"_s.arg(longest) << QStringList{longest};
    QTest::newRow("no name") << QString() << QString() << QString() << u"urn:::"_s << QStringList();
}

void VeskNewCertificateDlgFormTest::host_name_stands_in_uri_and_names()
{
    QFETCH(const QString, host);
    QFETCH(const QString, commonName);
    QFETCH(const QString, uriPart);
    QFETCH(const QString, uri);
    QFETCH(const QStringList, dnsNames);

    NewCertificateOptions options{.commonName = commonName, .uriPart = uriPart};
    options.host = host.isNull() ? std::nullopt : std::optional(host.toStdString());
    const NewCertificateDialog form(options);
    QCOMPARE(form.line("txtCommonName").text(), commonName);
    QCOMPARE(form.line("txtURI").text(), uri);
    QCOMPARE(NewCertificateDialog::textsOf(form.dns()), dnsNames);
    QCOMPARE(form.ip().count(), 0);
}

void VeskNewCertificateDlgFormTest::uri_shows_texts_as_they_stand()
{
    const NewCertificateDialog form(
        {.host = "%3", .commonName = u"<b>%1</b>"_s, .uriPart = u"%2"_s});
    QCOMPARE(form.line("txtURI").text(), u"urn:%3:%2:<b>%1</b>"_s);
    QVERIFY(form.line("txtURI").toolTip().contains(u"&lt;b&gt;"_s));
    QCOMPARE(form.line("txtURI").cursorPosition(), 0); // its beginning is seen
}

void VeskNewCertificateDlgFormTest::uri_does_not_follow_the_common_name()
{
    const NewCertificateDialog form({.commonName = u"Press"_s});
    form.type("txtCommonName", u"Crane"_s);
    QCOMPARE(form.line("txtURI").text(), u"urn:plant7::Press"_s);
}

void VeskNewCertificateDlgFormTest::password_is_hidden_unless_offered()
{
    const NewCertificateDialog plain;
    for (const char* name : passwordWidgets) {
        QVERIFY2(!plain.child<QWidget>(name).isVisible(), name);
    }
    plain.fillIn();
    QVERIFY(plain.ok().isEnabled());
    QVERIFY(plain.dialog->password().isEmpty());

    const NewCertificateDialog offering({.offersPassword = true});
    for (const char* name : passwordWidgets) {
        QVERIFY2(offering.child<QWidget>(name).isVisible(), name);
        QCOMPARE(offering.child<QWidget>(name).isEnabled(), QByteArray(name) == "chkPassword");
    }
}

void VeskNewCertificateDlgFormTest::focus_begins_at_the_organization()
{
    const NewCertificateDialog form;
    QVERIFY(QTest::qWaitForWindowActive(form.dialog.get()));
    QVERIFY(form.line("txtOrganization").hasFocus());
}

void VeskNewCertificateDlgFormTest::tab_key_walks_in_reading_order()
{
    const NewCertificateDialog form({.offersPassword = true});
    QVERIFY(QTest::qWaitForWindowActive(form.dialog.get()));
    form.dialog->setIPAddresses({u"::1"_s});
    form.fillIn();
    NewCertificateDialog::click(form.protect());
    form.type("txtPassword", u"abcd"_s);
    form.type("txtPasswordRepeat", u"abcd"_s);
    form.line("txtCommonName").setFocus();
    for (const char* name :
         {"txtCommonName", "txtOrganization", "txtOrganizationUnit", "txtLocality", "txtState",
          "txtCountry", "lstDNS", "btnAddDNS", "btnRemoveDNS", "lstIP", "btnAddIP", "btnRemoveIP",
          "cmbRSAKeyStrength", "cmbTime", "chkPassword", "txtPassword", "txtPasswordRepeat"}) {
        QCOMPARE(QApplication::focusWidget()->objectName(), QLatin1StringView(name));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QVERIFY(form.ok().hasFocus());
    QTest::keyClick(&form.ok(), Qt::Key_Tab);
    QVERIFY(form.cancel().hasFocus());
    QTest::keyClick(&form.cancel(), Qt::Key_Tab);
    QVERIFY(form.line("txtCommonName").hasFocus());
}

void VeskNewCertificateDlgFormTest::mnemonics_reach_the_buttons_of_the_lists()
{
    const NewCertificateDialog form;
    QSet<QString> keys;
    for (const char* name : {"btnAddDNS", "btnRemoveDNS", "btnAddIP", "btnRemoveIP"}) {
        keys.insert(form.child<QPushButton>(name).shortcut().toString());
    }
    keys.remove(QString());
    QCOMPARE(keys.size(), 4);
}

void VeskNewCertificateDlgFormTest::wheel_changes_only_what_has_the_focus()
{
    const NewCertificateDialog form;
    QVERIFY(QTest::qWaitForWindowActive(form.dialog.get()));
    turnWheel(form.keySize());
    turnWheel(form.time());
    QCOMPARE(form.keySize().currentIndex(), 0);
    QCOMPARE(form.time().currentIndex(), 4);
    form.keySize().setFocus();
    turnWheel(form.keySize());
    QCOMPARE(form.keySize().currentIndex(), 1);
    form.time().setFocus();
    turnWheel(form.time());
    QCOMPARE(form.time().currentIndex(), 5);
}

void VeskNewCertificateDlgFormTest::setters_fill_the_form()
{
    const NewCertificateDialog form;
    form.dialog->setCommonName(u"Press"_s);
    form.dialog->setOrganization(u"Works"_s);
    form.dialog->setOrganizationUnit(u"Hall"_s);
    form.dialog->setLocality(u"Erlangen"_s);
    form.dialog->setState(u"Bavaria"_s);
    form.dialog->setCountry(u"DE"_s);
    QCOMPARE(form.line("txtCommonName").text(), u"Press"_s);
    QCOMPARE(form.line("txtOrganization").text(), u"Works"_s);
    QCOMPARE(form.line("txtOrganizationUnit").text(), u"Hall"_s);
    QCOMPARE(form.line("txtLocality").text(), u"Erlangen"_s);
    QCOMPARE(form.line("txtState").text(), u"Bavaria"_s);
    QCOMPARE(form.line("txtCountry").text(), u"DE"_s);
    QVERIFY(form.ok().isEnabled());
}

void VeskNewCertificateDlgFormTest::setter_selects_the_key_size_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("index");

    QTest::newRow("1024") << 1024 << 0;
    QTest::newRow("2048") << 2048 << 1;
    QTest::newRow("3072") << 3072 << 2;
    QTest::newRow("4096") << 4096 << 3;
    QTest::newRow("another size") << 2047 << 0;
    QTest::newRow("no key") << -1 << 0;
    QTest::newRow("zero") << 0 << 0;
}

void VeskNewCertificateDlgFormTest::setter_selects_the_key_size()
{
    QFETCH(const int, bits);
    QFETCH(const int, index);

    const NewCertificateDialog form;
    form.dialog->setKeySize(3072);
    form.dialog->setKeySize(bits);
    QCOMPARE(form.keySize().currentIndex(), index);
}

void VeskNewCertificateDlgFormTest::setters_replace_the_lists()
{
    const NewCertificateDialog form;
    form.dialog->setDNSNames({u"a"_s, u"b"_s});
    form.dialog->setIPAddresses({u"::1"_s, u"10.0.0.1"_s});
    QCOMPARE(NewCertificateDialog::textsOf(form.dns()), QStringList({u"a"_s, u"b"_s}));
    QCOMPARE(NewCertificateDialog::textsOf(form.ip()), QStringList({u"::1"_s, u"10.0.0.1"_s}));
    QCOMPARE(form.status("lblStatIP"), u"valid"_s);

    form.dialog->setIPAddresses({u"::2"_s});
    QCOMPARE(NewCertificateDialog::textsOf(form.ip()), QStringList({u"::2"_s}));
    NewCertificateDialog::select(form.dns(), 1);
    QVERIFY(form.child<QPushButton>("btnRemoveDNS").isEnabled());
    form.dialog->setDNSNames({});
    QCOMPARE(form.dns().count(), 0);
    QCOMPARE(form.status("lblStatDNS"), u"missing off"_s);
    QVERIFY(!form.child<QPushButton>("btnRemoveDNS").isEnabled());
    form.dialog->setIPAddresses({});
    QCOMPARE(form.status("lblStatDNS"), u"missing"_s);
    QCOMPARE(form.status("lblStatIP"), u"missing"_s);
}

void VeskNewCertificateDlgFormTest::long_lifetimes_warn_and_stay_data()
{
    QTest::addColumn<bool>("warns");
    const NewCertificateDialog form;
    for (int i = 0; i < form.time().count(); ++i) {
        QTest::addRow("%s", qPrintable(form.time().itemText(i))) << (i > 8);
    }
}

void VeskNewCertificateDlgFormTest::long_lifetimes_warn_and_stay()
{
    QFETCH(const bool, warns);

    const NewCertificateDialog form;
    const QString choice = QString::fromLatin1(QTest::currentDataTag());
    QList<MessageBoxAnswer::Expected> boxes;
    if (warns) {
        boxes.append({u"Security Warning"_s,
                      u"It is not recommended to use certificates with a lifetime greater than 5 "
                      "years."_s,
                      QMessageBox::Ok});
    }
    MessageBoxAnswer answer(boxes);
    answer.setInspection(
        [](const QMessageBox& box) { QCOMPARE(box.icon(), QMessageBox::Warning); });
    NewCertificateDialog::choose(form.time(), choice);
    QCOMPARE(form.time().currentText(), choice);
    QCOMPARE(answer.verdict(), QString());
}

void VeskNewCertificateDlgFormTest::cancel_and_close_reject_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("Cancel") << 0;
    QTest::newRow("Escape") << 1;
    QTest::newRow("close") << 2;
}

void VeskNewCertificateDlgFormTest::cancel_and_close_reject()
{
    QFETCH(const int, way);

    const NewCertificateDialog form;
    form.fillIn();
    if (way == 0) {
        NewCertificateDialog::click(form.cancel());
    } else if (way == 1) {
        QTest::keyClick(form.dialog.get(), Qt::Key_Escape);
    } else {
        QVERIFY(form.dialog->close());
    }
    QVERIFY(!form.dialog->isVisible());
    QCOMPARE(form.dialog->result(), int(QDialog::Rejected));
    QVERIFY(form.dialog->certificate().isNull());
    QCOMPARE(form.dialog->keyPair().publicKey().keySize(), -1);
}

void VeskNewCertificateDlgFormTest::mandatory_dialog_stays_open_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("Escape") << 1;
    QTest::newRow("close") << 2;
}

void VeskNewCertificateDlgFormTest::mandatory_dialog_stays_open()
{
    QFETCH(const int, way);

    const NewCertificateDialog form({.isMandatory = true});
    QVERIFY(form.cancel().isHidden());
    QVERIFY(form.ok().isVisible());
    const Qt::WindowFlags flags = form.dialog->windowFlags();
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Dialog);
    QVERIFY(flags.testFlag(Qt::WindowTitleHint));
    QVERIFY(flags.testFlag(Qt::CustomizeWindowHint));
    QVERIFY(!flags.testFlag(Qt::WindowCloseButtonHint));
    if (way == 1) {
        QTest::keyClick(form.dialog.get(), Qt::Key_Escape);
    } else {
        QVERIFY(!form.dialog->close());
    }
    QVERIFY(form.dialog->isVisible());
}

void VeskNewCertificateDlgFormTest::nothing_is_cut_data()
{
    QTest::addColumn<bool>("offersPassword");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("size");

    for (const bool offersPassword : {false, true}) {
        const char* form = offersPassword ? "with password" : "plain";
        QTest::addRow("%s, 800x600", form) << offersPassword << 1.0 << QSize(800, 560);
        QTest::addRow("%s, 800x600 at 150 percent", form)
            << offersPassword << 1.5 << QSize(800, 560);
        QTest::addRow("%s, 800x600 at 200 percent", form)
            << offersPassword << 2.0 << QSize(800, 560);
        QTest::addRow("%s, small", form) << offersPassword << 1.0 << QSize(400, 280);
    }
}

void VeskNewCertificateDlgFormTest::nothing_is_cut()
{
    QFETCH(const bool, offersPassword);
    QFETCH(const double, scale);
    QFETCH(const QSize, size);

    const NewCertificateDialog form({.offersPassword = offersPassword});
    QFont font = form.dialog->font();
    font.setPointSizeF(font.pointSizeF() * scale);
    form.dialog->setFont(font);
    form.dialog->resize(size);
    QVERIFY(QTest::qWaitForWindowExposed(form.dialog.get()));
    QTRY_COMPARE(form.dialog->size(), size); // it is no larger at its smallest

    auto& scrollArea = form.child<QScrollArea>("scrollArea");
    QCOMPARE(scrollArea.horizontalScrollBar()->maximum(), 0);
    const QWidget* content = scrollArea.widget();
    for (QWidget* widget : content->findChildren<QWidget*>()) {
        const bool isOurs =
            !widget->objectName().isEmpty() && !widget->objectName().startsWith(u"qt_"_s);
        if (!widget->isVisible() || !isOurs) {
            continue;
        }
        const QByteArray name = widget->objectName().toUtf8();
        const auto* label = qobject_cast<const QLabel*>(widget);
        const QSize needed =
            label && !label->wordWrap() ? label->sizeHint() : widget->minimumSizeHint();
        QVERIFY2(widget->width() >= needed.width(), name.constData());
        QVERIFY2(widget->height() >= needed.height() || name.startsWith("lst"), name.constData());
        if (label && label->wordWrap()) {
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), name.constData());
        }
        // Whatever has no room can be scrolled to.
        if (!qobject_cast<const QGroupBox*>(widget)) {
            scrollArea.ensureWidgetVisible(widget, 0, 0);
            QVERIFY2(widget->visibleRegion().boundingRect().size() == widget->size(),
                     name.constData());
        }
    }
    for (const QListWidget* list : {&form.dns(), &form.ip()}) {
        QVERIFY(list->height() >= 2 * list->fontMetrics().height());
    }
    for (const QPushButton* button : {&form.ok(), &form.cancel()}) {
        QVERIFY(button->width() >= button->minimumSizeHint().width());
        QCOMPARE(button->visibleRegion().boundingRect().size(), button->size());
    }
}

void VeskNewCertificateDlgFormTest::small_dialog_scrolls_to_the_focus()
{
    const NewCertificateDialog form;
    form.dialog->resize(400, 240);
    QVERIFY(QTest::qWaitForWindowActive(form.dialog.get()));
    QVERIFY(form.time().visibleRegion().isEmpty());
    while (!form.time().hasFocus()) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(!form.cancel().hasFocus());
    }
    QCOMPARE(form.time().visibleRegion().boundingRect().size(), form.time().size());
}

void VeskNewCertificateDlgFormTest::inputs_of_all_groups_stand_in_one_line_when_the_font_grows()
{
    const NewCertificateDialog form({.offersPassword = true});
    const auto left = [&form](const char* name) {
        return form.child<QWidget>(name).mapTo(form.dialog.get(), QPoint(0, 0)).x();
    };
    QFont font = form.dialog->font();
    for (const int growth : {0, 4, 8}) {
        font.setPointSize(font.pointSize() + growth);
        form.dialog->setFont(font);
        QApplication::processEvents();
        for (const char* name :
             {"txtOrganization", "txtCountry", "txtURI", "lstDNS", "lstIP", "cmbRSAKeyStrength",
              "cmbTime", "txtPassword", "txtPasswordRepeat"}) {
            QCOMPARE(left(name), left("txtCommonName"));
        }
    }
}

ZANDREL_TEST_MAIN(VeskNewCertificateDlgFormTest)

#include "vesknewcertificatedlg_form_test.moc"
