#pragma once

#include <QString>
#include <QStringList>

/// What the command line gave. The program knows `-t "Window Title"` and `-f "XML File Name"`, with
/// a minus or a slash.
struct CommandLine
{
    QString windowTitle; ///< Empty selects the default title.
    QString configFile;  ///< Empty selects the default file.
    QString usage;       ///< What to tell the user; not empty only for a bad command line.
};

/// Reads the arguments, of which the first is the program's own name: switches stand at the odd
/// places, each followed by its value, which may begin with a minus. A later switch wins.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);
