#include "console/traceconfig.h"

#include "console/configdom.h"
#include "console/configelements.h"

#include <QDomElement>
#include <QVariant>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QDomElement& trace, const QString& name)
{
    return trace.firstChildElement(name).text();
}

bool isOn(const QDomElement& trace, const QString& name)
{
    return QVariant(textOf(trace, name)).toBool();
}

void setText(const QDomElement& trace, const QString& name, const QString& text)
{
    setFirstChildText(trace.firstChildElement(name), text);
}

void setOn(const QDomElement& trace, const QString& name, bool isEnabled)
{
    setText(trace, name, isEnabled ? u"true"_s : u"false"_s);
}

QString expandTracePath(QString fileName, const QString& tracePath)
{
    return tracePath.isEmpty() ? fileName
                               : fileName.replace(ConfigPlaceholder::TracePath, tracePath);
}

QString collapseTracePath(QString fileName, const QString& tracePath)
{
    return tracePath.isEmpty()
               ? fileName
               : fileName.replace(u'\\', u'/').replace(tracePath, ConfigPlaceholder::TracePath);
}

} // namespace

TraceConfig readTraceConfig(const QDomElement& trace, const QString& tracePath)
{
    TraceConfig config;
    config.appTraceFile = expandTracePath(textOf(trace, ConfigElement::UaAppTraceFile), tracePath);
    config.appTraceMaxEntries = textOf(trace, ConfigElement::UaAppTraceMaxEntries).toInt();
    config.appTraceMaxBackup = textOf(trace, ConfigElement::UaAppTraceMaxBackup).toInt();
    config.isAppTraceEnabled = isOn(trace, ConfigElement::UaAppTraceEnabled);
    config.appTraceLevel = textOf(trace, ConfigElement::UaAppTraceLevel);
    config.isStackTraceEnabled = isOn(trace, ConfigElement::UaStackTraceEnabled);
    config.stackTraceLevel = textOf(trace, ConfigElement::UaStackTraceLevel);
    return config;
}

void writeTraceConfig(const QDomElement& trace, const TraceConfig& config, const QString& tracePath)
{
    setText(trace, ConfigElement::UaAppTraceFile,
            collapseTracePath(config.appTraceFile, tracePath));
    setText(trace, ConfigElement::UaAppTraceMaxEntries, QString::number(config.appTraceMaxEntries));
    setText(trace, ConfigElement::UaAppTraceMaxBackup, QString::number(config.appTraceMaxBackup));
    setOn(trace, ConfigElement::UaAppTraceEnabled, config.isAppTraceEnabled);
    setText(trace, ConfigElement::UaAppTraceLevel, config.appTraceLevel);
    setOn(trace, ConfigElement::UaStackTraceEnabled, config.isStackTraceEnabled);
    setText(trace, ConfigElement::UaStackTraceLevel, config.stackTraceLevel);
}
