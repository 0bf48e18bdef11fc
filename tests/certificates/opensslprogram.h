#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

/// What the openssl program says about bytes on its standard input, without the blanks around it; the
/// reason and its errors when it can't be run or fails. Files are those of the working directory.
[[nodiscard]] inline QString runOpenSsl(const QStringList& arguments, const QByteArray& input,
                                        const QString& directory = QString())
{
    QProcess openssl;
    openssl.setWorkingDirectory(directory);
    openssl.start(QStringLiteral("openssl"), arguments);
    openssl.write(input);
    openssl.closeWriteChannel();
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        return QStringLiteral("failed: ") + openssl.errorString() +
               QString::fromUtf8(openssl.readAllStandardError());
    }
    return QString::fromUtf8(openssl.readAllStandardOutput()).trimmed();
}
