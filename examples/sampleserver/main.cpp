// Lays out the directory of a server for the console to open: a configuration file with three
// endpoints and the folders of its certificates, with a file for each state that the console shows.
// The reader learns which files and folders the console works on, which elements it reads, and how
// certificates, keys and revocation lists are made. Besides those the sample holds elements that only
// a server would know, to show that they survive every save.
//
//     sampleserver [--force] <directory>
//
// Ends with 0 when all was written, 1 when it wasn't, 2 for a command line that makes no sense.

#include "examples/sampleserver/serverdirectory.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTextStream>

namespace {

enum ExitCode
{
    Done = 0,
    Failed = 1,
    BadCommandLine = 2
};

void say(FILE* channel, const QString& text)
{
    QTextStream(channel) << text << Qt::endl;
}

int layOut(const QString& directory, ExistingConfig existing)
{
    const QString error = layOutServerDirectory(directory, existing);
    if (!error.isEmpty()) {
        say(stderr, QStringLiteral("sampleserver: ") + error);
        return Failed;
    }
    say(stdout, QDir::toNativeSeparators(QFileInfo(configFileIn(directory)).absoluteFilePath()));
    return Done;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("sampleserver"));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Lays out the directory of a sample server and prints the path of its "
                       "configuration file."));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show this text."));
    parser.addOption(help);
    const QCommandLineOption force(QStringLiteral("force"),
                                   QStringLiteral("Replace an existing configuration file."));
    parser.addOption(force);
    parser.addPositionalArgument(QStringLiteral("directory"),
                                 QStringLiteral("The directory, made if it doesn't exist."));

    const bool understood = parser.parse(QCoreApplication::arguments());
    if (understood && parser.isSet(help)) {
        say(stdout, parser.helpText());
        return Done;
    }
    const QStringList directories = parser.positionalArguments();
    if (!understood || directories.size() != 1 || directories.first().isEmpty()) {
        say(stderr, understood ? QStringLiteral("sampleserver: name one directory.")
                               : QStringLiteral("sampleserver: ") + parser.errorText());
        say(stderr, parser.helpText());
        return BadCommandLine;
    }
    return layOut(directories.first(),
                  parser.isSet(force) ? ExistingConfig::Replace : ExistingConfig::Keep);
}
