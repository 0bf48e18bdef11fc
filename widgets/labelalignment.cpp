#include "widgets/labelalignment.h"

#include <QLabel>

#include <algorithm>

void alignLabels(std::initializer_list<QLabel*> labels)
{
    int width = 0;
    for (const QLabel* label : labels) {
        width = std::max(width, label->sizeHint().width());
    }
    for (QLabel* label : labels) {
        label->setMinimumWidth(width);
    }
}
