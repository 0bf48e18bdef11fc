#pragma once

#include <QString>

/// Makes a named pipe, on which a reader waits without end; fails the program when it can't.
void makePipe(const QString& path);

/// The path of a device that never stops giving bytes.
[[nodiscard]] QString endlessDevice();

/// The number by which the file system knows a file: a file that is replaced gets another one.
[[nodiscard]] quint64 fileNumber(const QString& path);
