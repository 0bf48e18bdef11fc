#include "widgets/wheelguard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace {

class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Wheel || widget == nullptr || widget->hasFocus()) {
            return QObject::eventFilter(watched, event);
        }
        // Ignored, so that the parent gets it.
        event->ignore();
        return true;
    }
};

/// One filter without state serves all widgets; it lives as long as the application.
QObject* sharedGuard()
{
    static const QString name = QStringLiteral("wheelGuard");
    QObject* application = QCoreApplication::instance();
    if (auto* guard = application->findChild<QObject*>(name, Qt::FindDirectChildrenOnly)) {
        return guard;
    }
    auto* guard = new WheelGuard(application);
    guard->setObjectName(name);
    return guard;
}

void guardInput(QWidget* input)
{
    input->setFocusPolicy(Qt::StrongFocus);
    input->installEventFilter(sharedGuard());
}

bool isWheelInput(const QWidget* widget)
{
    return qobject_cast<const QComboBox*>(widget) != nullptr ||
           qobject_cast<const QAbstractSpinBox*>(widget) != nullptr;
}

} // namespace

void guardWheel(QWidget* form)
{
    if (isWheelInput(form)) {
        guardInput(form);
    }
    const auto widgets = form->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (isWheelInput(widget)) {
            guardInput(widget);
        }
    }
}
