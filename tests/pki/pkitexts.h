#pragma once

#include "base/uabytearray.h"
#include "pki/uapkierrorlist.h"

#include <string>
#include <string_view>
#include <vector>

/// The messages of an object, which has none afterwards.
inline std::vector<std::string> messagesOf(const UaPkiErrorList& object)
{
    std::vector<std::string> texts;
    for (const UaString& message : object.getErrors()) {
        texts.emplace_back(message.toUtf8());
    }
    return texts;
}

inline UaByteArray toByteArray(std::string_view bytes)
{
    return {bytes.data(), static_cast<OpcUa_Int32>(bytes.size())};
}

inline std::string toStdString(const UaByteArray& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<std::size_t>(bytes.size())};
}
