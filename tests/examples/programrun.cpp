#include "tests/examples/programrun.h"

#include <QFile>
#include <QProcess>

ProgramRun runProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    ProgramRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
    } else if (process.exitStatus() == QProcess::NormalExit) {
        run.exitCode = process.exitCode();
    }
    run.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.errors = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

ProgramRun runSampleServer(const QStringList& arguments)
{
    return runProgram(QStringLiteral(SAMPLESERVER_PROGRAM), arguments);
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
