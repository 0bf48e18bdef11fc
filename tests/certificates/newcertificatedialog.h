#pragma once

#include "certificates/vesknewcertificatedlg.h"
#include "tests/support/fakeresolver.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include <memory>
#include <optional>

/// How a NewCertificateDialog is made.
struct NewCertificateOptions
{
    std::optional<std::string> host =
        "plant7"; ///< The computer's name; none when it can't be told.
    QString commonName = {};
    QString uriPart = {};
    bool isMandatory = false;
    bool offersPassword = false;
};

/// The dialog "New Application Instance Certificate" on a computer of its own, shown, with its
/// widgets by their object names.
class NewCertificateDialog
{
public:
    explicit NewCertificateDialog(const NewCertificateOptions& options = {})
    {
        m_resolver.name = options.host;
        dialog = std::make_unique<VeskNewCertificateDlg>(
            options.commonName, options.uriPart, options.isMandatory, options.offersPassword);
        dialog->show();
    }

    template <typename T>
    [[nodiscard]] T& child(const char* name) const
    {
        T* found = dialog->findChild<T*>(QLatin1StringView(name));
        if (!found) {
            qFatal("no %s in the form", name);
        }
        return *found;
    }

    [[nodiscard]] QLineEdit& line(const char* name) const { return child<QLineEdit>(name); }
    [[nodiscard]] QListWidget& dns() const { return child<QListWidget>("lstDNS"); }
    [[nodiscard]] QListWidget& ip() const { return child<QListWidget>("lstIP"); }
    [[nodiscard]] QComboBox& keySize() const { return child<QComboBox>("cmbRSAKeyStrength"); }
    [[nodiscard]] QComboBox& time() const { return child<QComboBox>("cmbTime"); }
    [[nodiscard]] QCheckBox& protect() const { return child<QCheckBox>("chkPassword"); }
    [[nodiscard]] QPushButton& ok() const { return button(QDialogButtonBox::Ok); }
    [[nodiscard]] QPushButton& cancel() const { return button(QDialogButtonBox::Cancel); }

    /// Types a text in place of what an input holds.
    void type(const char* name, const QString& text) const
    {
        QLineEdit& input = line(name);
        input.selectAll();
        if (text.isEmpty()) {
            QTest::keyClick(&input, Qt::Key_Delete);
        }
        for (const QChar character : text) {
            // QTest's own keys are those of ASCII.
            QTest::sendKeyEvent(QTest::Click, &input, Qt::Key_unknown, QString(character),
                                Qt::NoModifier);
        }
    }

    /// Fills in all that is needed, and the unit.
    void fillIn() const
    {
        type("txtCommonName", QStringLiteral("Press 12"));
        type("txtOrganization", QStringLiteral("Example Works"));
        type("txtOrganizationUnit", QStringLiteral("Hall 3"));
        type("txtLocality", QStringLiteral("Erlangen"));
        type("txtState", QStringLiteral("Bavaria"));
        type("txtCountry", QStringLiteral("DE"));
    }

    static void click(QAbstractButton& button)
    {
        const QPoint center = button.rect().center();
        // A check box takes a click on its indicator, which stands at its left.
        const bool isCheckBox = qobject_cast<QCheckBox*>(&button) != nullptr;
        QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier,
                          isCheckBox ? QPoint(8, center.y()) : center);
    }
    void click(const char* name) const { click(child<QAbstractButton>(name)); }

    /// Clicks on a row of a list.
    static void select(QListWidget& list, int row)
    {
        QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                          list.visualItemRect(list.item(row)).center());
    }

    /// Opens the list of a combo box and goes down to an entry.
    static void choose(QComboBox& combo, const QString& text)
    {
        QTest::keyClick(&combo, Qt::Key_Down, Qt::AltModifier);
        QAbstractItemView* entries = combo.view();
        QTest::keyClick(entries, Qt::Key_Home);
        for (int i = 0; i < combo.findText(text); ++i) {
            QTest::keyClick(entries, Qt::Key_Down);
        }
        QTest::keyClick(entries, Qt::Key_Enter);
    }

    /// What a status picture shows: "valid", "missing" or "nothing"; "off" is added while it is
    /// disabled.
    [[nodiscard]] QString status(const char* name) const
    {
        const auto& label = child<QLabel>(name);
        const QImage shown = label.pixmap().toImage();
        const QString state = shown == picture("on")         ? QStringLiteral("valid")
                              : shown == picture("clearlog") ? QStringLiteral("missing")
                                                             : QStringLiteral("nothing");
        return label.isEnabled() ? state : state + QStringLiteral(" off");
    }

    [[nodiscard]] static QStringList textsOf(const QListWidget& list)
    {
        QStringList texts;
        for (int row = 0; row < list.count(); ++row) {
            texts.append(list.item(row)->text());
        }
        return texts;
    }

private:
    FakeResolver m_resolver;

    [[nodiscard]] QPushButton& button(QDialogButtonBox::StandardButton which) const
    {
        return *child<QDialogButtonBox>("buttonBox").button(which);
    }

    [[nodiscard]] QImage picture(const char* name) const
    {
        return QIcon(QStringLiteral(":/veskwidgets/images/%1.png").arg(QLatin1StringView(name)))
            .pixmap(QSize(16, 16), dialog->devicePixelRatio())
            .toImage();
    }

public:
    std::unique_ptr<VeskNewCertificateDlg> dialog;
};
