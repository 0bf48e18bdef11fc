#include "tests/support/unusualfiles.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

void makePipe(const QString& path)
{
    if (mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR) != 0) {
        qFatal("can't make a pipe at %s", qPrintable(path));
    }
}

QString endlessDevice()
{
    return u"/dev/zero"_s;
}

quint64 fileNumber(const QString& path)
{
    struct stat state = {};
    if (stat(QFile::encodeName(path).constData(), &state) != 0) {
        qFatal("can't ask for %s", qPrintable(path));
    }
    return state.st_ino;
}
