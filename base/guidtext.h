#pragma once

#include "platform/types.h"
#include "stack/opcua_guid.h"

#include <string_view>

/// The text form of guids for the value classes.
namespace UaGuidText {

/// Reads what OpcUa_Guid_FromString reads, with the same result, but the usual form without its scan,
/// which takes many times as long. A NUL must follow the text.
[[nodiscard]] OpcUa_StatusCode read(std::string_view text, OpcUa_Guid& guid) noexcept;

} // namespace UaGuidText
