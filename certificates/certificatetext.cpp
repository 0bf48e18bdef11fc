#include "certificates/certificatetext.h"

#include "base/uaarrays.h"
#include "base/uadatetime.h"
#include "base/uastring.h"

#include <string>
#include <string_view>

namespace {

constexpr OpcUa_Int64 ticksPerMillisecond = 10000;
constexpr qint64 epochDistance = 11644473600000; // milliseconds from 1601 to 1970

} // namespace

QString toQString(const UaString& text)
{
    const std::string_view bytes = text.view();
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QStringList toQStringList(const UaStringArray& texts)
{
    QStringList list;
    list.reserve(texts.length());
    for (OpcUa_Int32 i = 0; i < texts.length(); ++i) {
        const OpcUa_String& text = texts.rawArray()[i];
        list.append(QString::fromUtf8(text.strContent, static_cast<qsizetype>(text.uLength)));
    }
    return list;
}

QDateTime toLocalDateTime(const UaDateTime& time)
{
    return QDateTime::fromMSecsSinceEpoch(time.toInt64() / ticksPerMillisecond - epochDistance);
}

QString toJoinedText(const UaStringArray& texts)
{
    std::string joined;
    for (OpcUa_Int32 i = 0; i < texts.length(); ++i) {
        if (i > 0) {
            joined += ", ";
        }
        const OpcUa_String& text = texts.rawArray()[i];
        joined += std::string_view(text.strContent, text.uLength);
    }
    return QString::fromUtf8(joined);
}
