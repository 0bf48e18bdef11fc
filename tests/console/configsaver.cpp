// Saves a configuration file again and again, with two contents in turn, until it is killed:
// configsaver <file>. Says "ready" before it begins.

#include "console/configdom.h"
#include "console/configelements.h"
#include "console/configfile.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QString path = QCoreApplication::arguments().at(1);
    std::puts("ready");
    std::fflush(stdout);
    for (bool isOdd = true;; isOdd = !isOdd) {
        ConfigFile file(path);
        if (file.read() != ConfigFile::ReadResult::Parsed) {
            return 1;
        }
        setFirstChildText(
            descend(file.root(), {ConfigElement::UaServerConfig, ConfigElement::ServerName}),
            isOdd ? QStringLiteral("odd") : QStringLiteral("even"));
        if (!file.write()) {
            return 2;
        }
    }
}
