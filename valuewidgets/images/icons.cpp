#include "valuewidgets/images/icons.h"

#include <QtGlobal>

// Outside of any namespace, as Q_INIT_RESOURCE declares a function of the global one.
void registerVeskWidgetImages()
{
    Q_INIT_RESOURCE(veskwidgets);
}
