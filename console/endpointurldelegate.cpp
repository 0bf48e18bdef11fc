#include "console/endpointurldelegate.h"

#include "widgets/displaytext.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

QString EndpointUrlDelegate::displayText(const QVariant& value, const QLocale& /*locale*/) const
{
    return cutForDisplay(value.toString());
}

bool EndpointUrlDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                    const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid() ||
        sizeHint(option, index).width() <= option.rect.width()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), plainToolTip(index.data().toString()), view->viewport(),
                       option.rect);
    return true;
}
