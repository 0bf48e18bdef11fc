#include "certificates/vesklistdelegate.h"

#include "widgets/displaytext.h"

#include <QDateTime>
#include <QLocale>

QString textForCell(const QVariant& value, const QLocale& locale)
{
    if (value.typeId() == QMetaType::QDateTime) {
        return locale.toString(value.toDateTime(), QLocale::ShortFormat);
    }
    return lineForDisplay(value.toString());
}

QString VeskListDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    return textForCell(value, locale);
}
