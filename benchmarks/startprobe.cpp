// Starts, shows a window, and ends at once: startprobe console <file> | bare. The console starts as its main
// does; the bare window has three tabs and as many widgets as the console's.

#include "console/commandline.h"
#include "console/qtsingleapplication.h"
#include "console/zandreldialog.h"
#include "platform/startup/uaplatformlayer.h"
#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHashSeed>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

template <typename Widget, typename... Arguments>
void add(QLayout* layout, int count, const Arguments&... arguments)
{
    for (int i = 0; i < count; ++i) {
        layout->addWidget(std::make_unique<Widget>(arguments...).release());
    }
}

/// A third of the console's widgets, by kind; together as many as its window has.
void fill(QWidget* page)
{
    auto* layout = new QVBoxLayout(page);
    const QString text = QStringLiteral("text");
    add<QGroupBox>(layout, 4, text);
    add<QLabel>(layout, 4, text);
    add<QCheckBox>(layout, 3, text);
    add<QLineEdit>(layout, 1, text);
    add<QSpinBox>(layout, 1);
    add<QComboBox>(layout, 3);
    add<QPushButton>(layout, 4, text);
    add<QToolButton>(layout, 2);
    add<QScrollArea>(layout, 1);
    add<QWidget>(layout, 10);
    auto* splitter = new QSplitter(page);
    layout->addWidget(splitter);
    for (int i = 0; i < 2; ++i) {
        splitter->addWidget(new QTreeView(splitter));
    }
}

/// Pages of a page, as the certificates have.
void addPages(QWidget* page)
{
    auto* pages = new QTabWidget(page);
    page->layout()->addWidget(pages);
    for (int i = 0; i < 3; ++i) {
        pages->addTab(new QWidget(pages), QStringLiteral("Page"));
    }
}

/// Ends the process where the window is on the screen: taking it down is not part of the start.
[[noreturn]] void endOncePainted()
{
    QCoreApplication::processEvents();
    std::_Exit(0);
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
    addPages(tabs->widget(2));
    window.statusBar();
    window.show();
    endOncePainted();
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
    endOncePainted();
}

} // namespace

int main(int argc, char** argv)
{
    return std::strcmp(argv[1], "bare") == 0 ? runBare(argc, argv) : runConsoleWindow(argc, argv);
}
