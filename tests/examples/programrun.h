#pragma once

#include <QString>
#include <QStringList>

/// How a program ended and what it said. `exitCode` is -1 when it didn't start, crashed or hung.
struct ProgramRun
{
    int exitCode = -1;
    QString output;
    QString errors;
};

/// Runs a program to its end, for a minute at most.
ProgramRun runProgram(const QString& program, const QStringList& arguments);

/// Runs the sample server's program.
ProgramRun runSampleServer(const QStringList& arguments);

/// The whole of a file, null when it can't be read.
QByteArray bytesOf(const QString& path);
