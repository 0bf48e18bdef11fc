#include "tests/support/testmain.h"
#include "widgets/wheelguard.h"

#include <QComboBox>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

using namespace Qt::StringLiterals;

namespace {

/// A form that counts the wheel events which its inputs leave to it.
class Form : public QWidget
{
public:
    Form()
        : spin(new QSpinBox(this))
        , combo(new QComboBox(this))
        , slider(new QSlider(this))
    {
        auto* column = new QVBoxLayout(this);
        combo->addItems({u"a"_s, u"b"_s, u"c"_s});
        spin->setValue(50);
        slider->setValue(50);
        column->addWidget(spin);
        column->addWidget(combo);
        column->addWidget(slider);
    }

    QSpinBox* spin;
    QComboBox* combo;
    QSlider* slider;
    int wheelCount = 0;

protected:
    void wheelEvent(QWheelEvent* event) override
    {
        ++wheelCount;
        event->accept();
    }
};

void turnWheel(QWidget* widget)
{
    const QPointF center = QRectF(widget->rect()).center();
    QWheelEvent event(center, widget->mapToGlobal(center), QPoint(), QPoint(0, -120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    // As from the system: an event that a program sends goes to no parent.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(widget, &event);
}

} // namespace

class WheelGuardTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void without_the_focus_the_wheel_goes_to_the_form()
    {
        Form form;
        guardWheel(&form);
        turnWheel(form.spin);
        turnWheel(form.combo);
        QCOMPARE(form.spin->value(), 50);
        QCOMPARE(form.combo->currentIndex(), 0);
        QCOMPARE(form.wheelCount, 2);
    }

    void with_the_focus_the_wheel_changes_the_input()
    {
        Form form;
        guardWheel(&form);
        form.show();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        form.spin->setFocus();
        turnWheel(form.spin);
        QCOMPARE(form.spin->value(), 49);
        form.combo->setFocus();
        turnWheel(form.combo);
        QCOMPARE(form.combo->currentIndex(), 1);
        QCOMPARE(form.wheelCount, 0);
    }

    void guarding_twice_counts_once()
    {
        Form form;
        guardWheel(&form);
        guardWheel(&form);
        turnWheel(form.spin);
        QCOMPARE(form.wheelCount, 1);
    }

    void single_input_is_guarded()
    {
        Form form;
        guardWheel(form.combo);
        turnWheel(form.combo);
        turnWheel(form.spin);
        QCOMPARE(form.combo->currentIndex(), 0);
        QCOMPARE(form.spin->value(), 49);
        QCOMPARE(form.combo->focusPolicy(), Qt::StrongFocus);
    }

    void other_inputs_keep_their_wheel()
    {
        Form form;
        guardWheel(&form);
        turnWheel(form.slider);
        QVERIFY(form.slider->value() != 50);
    }
};

ZANDREL_TEST_MAIN(WheelGuardTest)

#include "wheelguard_test.moc"
