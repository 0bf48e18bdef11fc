#include "resources/images.h"

#include <QtGlobal>

// Outside of any namespace, as Q_INIT_RESOURCE declares a function of the global one.
void registerConsoleImages()
{
    Q_INIT_RESOURCE(resources);
}
