#pragma once

#include "platform/types.h"

// The platform layer's version text: fields separated by backslashes, the layer's own first, then
// those of the libraries that were started. It is changed by the start and stop sequence alone and
// not safe against two threads.

/// The text. It stays valid until the next change.
[[nodiscard]] const char* OpcUa_P_BuildInformation_Get();

/// Appends a backslash and a field, made of a prefix and a text. `BadInvalidArgument` for null,
/// `BadOutOfMemory`; the text stays as it was after a failure.
[[nodiscard]] OpcUa_StatusCode OpcUa_P_BuildInformation_Add(const char* prefix, const char* text);

/// Takes all added fields away.
void OpcUa_P_BuildInformation_Restore();
