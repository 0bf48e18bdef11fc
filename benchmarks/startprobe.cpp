// Starts, shows a window, and ends: startprobe console <file> | bare. The console starts as its main
// does; the bare window has three tabs and as many widgets as the console's.

#include "resources/images.h"

#include "console/commandline.h"
#include "console/qtsingleapplication.h"
#include "console/zandreldialog.h"
#include "platform/startup/uaplatformlayer.h"
#include "valuewidgets/images/icons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHashSeed>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <cstring>

namespace {

constexpr int widgetsPerTab = 25;

void fill(QWidget* page)
{
    auto* layout = new QVBoxLayout(page);
    for (int i = 0; i < widgetsPerTab; i += 5) {
        layout->addWidget(new QLabel(QStringLiteral("Label"), page));
        layout->addWidget(new QLineEdit(QStringLiteral("text"), page));
        layout->addWidget(new QCheckBox(QStringLiteral("Check"), page));
        layout->addWidget(new QSpinBox(page));
        auto* combo = new QComboBox(page);
        combo->addItems({QStringLiteral("one"), QStringLiteral("two")});
        layout->addWidget(combo);
    }
}

void showUntilPainted(QWidget& window)
{
    window.show();
    QCoreApplication::processEvents();
}

int runBare(int& argc, char** argv)
{
    const QApplication application(argc, argv);
    QMainWindow window;
    auto* tabs = new QTabWidget(&window);
    window.setCentralWidget(tabs);
    for (int i = 0; i < 3; ++i) {
        auto* page = new QWidget(tabs);
        fill(page);
        tabs->addTab(page, QStringLiteral("Tab"));
    }
    showUntilPainted(window);
    return 0;
}

int runConsoleWindow(int& argc, char** argv)
{
    registerConsoleImages();
    registerVeskWidgetImages();
    QHashSeed::setDeterministicGlobalSeed();
    if (UaPlatformLayer::init() != 0) {
        return 1;
    }
    QtSingleApplication application(argc, argv);
    if (application.sendMessage(QStringLiteral("activation message"))) {
        return 1;
    }
    ZandrelDialog window(QString(), QCoreApplication::arguments().at(2));
    window.show();
    application.setActivationWindow(&window);
    QCoreApplication::processEvents();
    UaPlatformLayer::cleanup();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    return std::strcmp(argv[1], "bare") == 0 ? runBare(argc, argv) : runConsoleWindow(argc, argv);
}
