#pragma once

#include <QString>

class QDomElement;

/// The values of the Trace element of a configuration file, in the order of the form that edits
/// them. Levels are the texts of the file; they needn't be ones that the server knows.
struct TraceConfig
{
    QString appTraceFile; ///< With the trace path in place of its placeholder.
    int appTraceMaxEntries = 0;
    int appTraceMaxBackup = 0;
    bool isAppTraceEnabled = false;
    QString appTraceLevel;
    bool isStackTraceEnabled = false;
    QString stackTraceLevel;
};

/// Reads the values below a Trace element. An element that is missing reads as empty text: an empty
/// string, 0 or false. So does a number that is none or doesn't fit. An empty trace path leaves the
/// placeholder as it stands.
[[nodiscard]] TraceConfig readTraceConfig(const QDomElement& trace, const QString& tracePath);

/// Puts the values into the elements below a Trace element, the trace path in the file's name
/// becoming its placeholder again. An element that is missing or has no text takes nothing.
void writeTraceConfig(const QDomElement& trace, const TraceConfig& config,
                      const QString& tracePath);
