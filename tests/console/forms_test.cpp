#include "console/zandreldialog.h"
#include "tests/support/configsample.h"
#include "tests/support/testmain.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QToolButton>

using namespace Qt::StringLiterals;

// Walks over all widgets of the window and its tabs. CTest runs it at 100, 150 and 200 percent.

namespace {

bool isInput(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QAbstractItemView*>(widget);
}

QString textOf(const QWidget* widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button ? button->text() : QString();
}

/// Widgets that Qt makes inside others, such as the line edit of a spin box, are not.
bool isOurs(const QWidget* widget)
{
    for (const QWidget* parent = widget->parentWidget(); parent; parent = parent->parentWidget()) {
        if (qobject_cast<const QAbstractItemView*>(parent) ||
            qobject_cast<const QComboBox*>(parent) ||
            qobject_cast<const QAbstractSpinBox*>(parent)) {
            return false;
        }
    }
    return !widget->objectName().startsWith(u"qt_");
}

QByteArray nameOf(const QWidget* widget)
{
    return (widget->objectName().isEmpty() ? textOf(widget) : widget->objectName()).toUtf8();
}

QList<QWidget*> inputsOf(const QWidget* form)
{
    QList<QWidget*> inputs;
    for (QWidget* widget : form->findChildren<QWidget*>()) {
        if (isInput(widget) && isOurs(widget) && widget->isVisible()) {
            inputs.append(widget);
        }
    }
    return inputs;
}

bool isBuddy(const QWidget* form, const QWidget* input)
{
    const auto labels = form->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [input](const QLabel* label) { return label->buddy() == input; });
}

/// The place of a widget in reading order: by group from the top, then from the left.
QPoint placeIn(const QWidget* form, const QWidget* widget)
{
    return widget->mapTo(form, QPoint(0, 0));
}

} // namespace

class FormsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        // What the certificates tab leads to is there, so that all of its buttons are enabled.
        for (const QString& name :
             {u"trusted/certs"_s, u"rejected"_s, u"issuers/certs"_s, u"own/certs"_s}) {
            QVERIFY(QDir(m_dir->path()).mkpath(u"pki/"_s + name));
        }
        writeFile(m_dir->filePath(u"pki/own/certs/server.der"_s), "a certificate");
        const QByteArray config = sampleConfig().replace("[ApplicationPath]", "[ConfigPath]");
        m_window = std::make_unique<ZandrelDialog>(
            QString(), writeFile(m_dir->filePath(u"ServerConfig.xml"_s), config));
        m_tabs = m_window->findChild<QTabWidget*>(u"tabWidget"_s);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    }

    void every_input_has_a_name_and_a_tooltip_data() { tabRows(); }

    void every_input_has_a_name_and_a_tooltip()
    {
        const QWidget* form = showTab();
        const QList<QWidget*> inputs = inputsOf(form);
        QVERIFY(inputs.size() > 5);
        for (const QWidget* input : inputs) {
            const bool isNamed = isBuddy(form, input) || !input->accessibleName().isEmpty() ||
                                 !textOf(input).isEmpty();
            QVERIFY2(isNamed, nameOf(input).constData());
            if (const auto* tool = qobject_cast<const QToolButton*>(input)) {
                QVERIFY2(!tool->accessibleName().isEmpty(), qPrintable(tool->objectName()));
                QVERIFY2(!tool->toolTip().isEmpty(), qPrintable(tool->objectName()));
            }
        }
    }

    void every_label_beside_an_input_is_its_buddy_data() { tabRows(); }

    void every_label_beside_an_input_is_its_buddy()
    {
        const QWidget* form = showTab();
        for (const QLabel* label : form->findChildren<QLabel*>()) {
            const bool isCaption = label->objectName() != u"label_endpointUrl"_s && isOurs(label) &&
                                   label->text() != u"Endpoint URL"_s;
            QVERIFY2(!isCaption || label->buddy(), qPrintable(label->objectName()));
        }
    }

    void tab_reaches_every_enabled_input_in_reading_order_data() { tabRows(); }

    void tab_reaches_every_enabled_input_in_reading_order()
    {
        const QWidget* form = showTab();
        QList<QWidget*> expected;
        for (QWidget* input : inputsOf(form)) {
            if (input->isEnabled() && (input->focusPolicy() & Qt::TabFocus)) {
                expected.append(input);
            } else {
                QVERIFY2(!input->isEnabled(), nameOf(input).constData());
            }
        }

        m_tabs->tabBar()->setFocus();
        QList<QWidget*> reached;
        QTest::keyClick(m_tabs->tabBar(), Qt::Key_Tab);
        while (form->isAncestorOf(QApplication::focusWidget()) && reached.size() < 100) {
            if (!qobject_cast<QTabBar*>(QApplication::focusWidget())) { // the pages within a tab
                reached.append(QApplication::focusWidget());
            }
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(QApplication::focusWidget()->objectName(), u"pushButton_close"_s);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QVERIFY(QApplication::focusWidget() == m_tabs->tabBar());
        for (const QWidget* input : expected) {
            QVERIFY2(reached.contains(input), nameOf(input).constData());
        }
        QCOMPARE(reached.size(), expected.size());

        // In one group the order goes down and to the right.
        for (qsizetype i = 1; i < reached.size(); ++i) {
            if (reached[i]->parentWidget() != reached[i - 1]->parentWidget()) {
                continue;
            }
            const QPoint before = placeIn(form, reached[i - 1]);
            const QPoint after = placeIn(form, reached[i]);
            const bool isBelow = after.y() > before.y() + reached[i - 1]->height() / 2;
            const bool isBeside =
                after.x() > before.x() && after.y() + reached[i]->height() > before.y();
            QVERIFY2(isBelow || isBeside, qPrintable(reached[i - 1]->objectName() + u" -> "_s +
                                                     reached[i]->objectName()));
        }
    }

    void nothing_is_cut_data()
    {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QSize>("size");
        for (const QSize size : {QSize(704, 538), QSize(800, 600), QSize(1600, 1000)}) {
            QTest::addRow("endpoints %dx%d", size.width(), size.height()) << 0 << size;
            QTest::addRow("trace %dx%d", size.width(), size.height()) << 1 << size;
            QTest::addRow("certificates %dx%d", size.width(), size.height()) << 2 << size;
        }
    }

    void nothing_is_cut()
    {
        QFETCH(const QSize, size);
        const QWidget* form = showTab();
        m_window->resize(size);
        QTRY_COMPARE(m_window->size(), size);
        QCoreApplication::processEvents(); // the layouts settle
        for (const QWidget* widget : form->findChildren<QWidget*>()) {
            if (!widget->isVisible() || !isOurs(widget)) {
                continue;
            }
            const QByteArray name = nameOf(widget);
            if (isInput(widget) || qobject_cast<const QLabel*>(widget)) {
                // What a scroll area doesn't show counts as cut.
                QVERIFY2(widget->visibleRegion().boundingRect() == widget->rect(),
                         name.constData());
            }
            if (qobject_cast<const QAbstractButton*>(widget) ||
                qobject_cast<const QComboBox*>(widget) ||
                qobject_cast<const QAbstractSpinBox*>(widget)) {
                QVERIFY2(widget->height() >= widget->minimumSizeHint().height(), name.constData());
                QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), name.constData());
            }
            if (qobject_cast<const QAbstractButton*>(widget)) {
                QVERIFY2(widget->width() >= widget->sizeHint().width(), name.constData());
            }
            if (const auto* label = qobject_cast<const QLabel*>(widget);
                label && label->objectName() != u"label_endpointUrl"_s) {
                QVERIFY2(label->width() >= label->sizeHint().width(), name.constData());
                QVERIFY2(label->height() >= label->sizeHint().height(), name.constData());
            }
        }
    }

    void window_fits_small_screens()
    {
        QVERIFY(m_window->minimumSizeHint().width() <= 704);
        QVERIFY(m_window->minimumSizeHint().height() <= 538);
    }

private:
    static void tabRows()
    {
        QTest::addColumn<int>("tab");
        QTest::newRow("endpoints") << 0;
        QTest::newRow("trace") << 1;
        QTest::newRow("certificates") << 2;
    }

    const QWidget* showTab()
    {
        QFETCH(const int, tab);
        m_tabs->setCurrentIndex(tab);
        return m_tabs->currentWidget();
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<ZandrelDialog> m_window;
    QTabWidget* m_tabs = nullptr;
};

ZANDREL_TEST_MAIN(FormsTest)

#include "forms_test.moc"
