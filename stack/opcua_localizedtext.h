#pragma once

#include "platform/types.h"
#include "stack/opcua_string.h"

/// A text for people and its locale (OPC 10000-3, 8.5).
struct OpcUa_LocalizedText
{
    OpcUa_String Locale;
    OpcUa_String Text;
};

/// Makes both texts null, without looking at what was there. A null pointer is ignored.
void OpcUa_LocalizedText_Initialize(OpcUa_LocalizedText* text);

/// Frees both texts and makes them null. Null pointers and a second call are allowed.
void OpcUa_LocalizedText_Clear(OpcUa_LocalizedText* text);

/// Deep copy; what the destination held is cleared. `BadInvalidArgument`, `BadOutOfMemory`; the
/// destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_LocalizedText_CopyTo(const OpcUa_LocalizedText* source,
                                                          OpcUa_LocalizedText* destination);

/// Locale, then text. The same pointer is equal, a null pointer less.
[[nodiscard]] OpcUa_Int32 OpcUa_LocalizedText_Compare(const OpcUa_LocalizedText* left,
                                                      const OpcUa_LocalizedText* right);
