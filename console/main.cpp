#include "console/consoleprogram.h"
#include "console/coredumps.h"
#include "platform/startup/uaplatformlayer.h"
#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QHashSeed>

int main(int argc, char** argv)
{
    registerConsoleImages();
    registerVeskWidgetImages();
    // Attributes are written in hash order: saving an unchanged file must give the same bytes.
    QHashSeed::setDeterministicGlobalSeed();
    disableCoreDumps();
    return runConsole(argc, argv, {UaPlatformLayer::init, UaPlatformLayer::cleanup});
}
