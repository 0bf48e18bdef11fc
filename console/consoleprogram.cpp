#include "console/consoleprogram.h"

#include "console/commandline.h"
#include "console/qtsingleapplication.h"
#include "console/zandreldialog.h"
#include "widgets/plainmessagebox.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

constexpr int activationTimeout = 5000;

QString boxTitle()
{
    return QCoreApplication::translate("ConsoleProgram", "Zandrel Dialog");
}

/// A box needs an application object; this one lives for the box alone.
void tellPlatformFailure(int argc, char** argv, int result)
{
    const QApplication boxApplication(argc, argv);
    showPlainMessageBox(
        nullptr, QMessageBox::Critical, boxTitle(),
        QCoreApplication::translate("ConsoleProgram",
                                    "UaPlatformLayer could not be initialized (ret = %1).")
            .arg(result));
}

int runWindow(QtSingleApplication& application, const CommandLine& commandLine)
{
    ZandrelDialog window(commandLine.windowTitle, commandLine.configFile);
    window.show();
    application.setActivationWindow(&window, true);
    return QApplication::exec();
}

int runApplication(QtSingleApplication& application)
{
    if (application.sendMessage(u"activation message"_s, activationTimeout)) {
        return 0;
    }
    QDir::setCurrent(QCoreApplication::applicationDirPath());
    const CommandLine commandLine = parseCommandLine(QCoreApplication::arguments());
    if (!commandLine.usage.isEmpty()) {
        showPlainMessageBox(nullptr, QMessageBox::Information, boxTitle(), commandLine.usage);
        return 0;
    }
    return runWindow(application, commandLine);
}

} // namespace

int runConsole(int argc, char** argv, const PlatformDoor& platform)
{
    const int initResult = platform.init();
    if (initResult != 0) {
        tellPlatformFailure(argc, argv, initResult);
        return initResult;
    }
    QtSingleApplication application(argc, argv);
    const int result = runApplication(application);
    platform.cleanup();
    return result;
}
