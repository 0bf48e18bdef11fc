#pragma once

#include "platform/types.h"
#include "stack/opcua_string.h"

/// Vendor-specific detail to a status (OPC 10000-6, 5.1.13). The first four fields are indexes into
/// a table of strings of the message; -1 is none.
struct OpcUa_DiagnosticInfo
{
    OpcUa_Int32 SymbolicId;
    OpcUa_Int32 NamespaceUri;
    OpcUa_Int32 Locale;
    OpcUa_Int32 LocalizedText;
    OpcUa_String AdditionalInfo;
    OpcUa_StatusCode InnerStatusCode;
    OpcUa_DiagnosticInfo* InnerDiagnosticInfo; ///< Owned, from the stack's allocator, or null.
};

/// Makes all indexes -1 and everything else null, without looking at what was there. A null pointer
/// is ignored.
void OpcUa_DiagnosticInfo_Initialize(OpcUa_DiagnosticInfo* info);

/// Frees what it owns with all inner infos, however many, and initialises it. Null pointers and a
/// second call are allowed.
void OpcUa_DiagnosticInfo_Clear(OpcUa_DiagnosticInfo* info);

/// Deep copy; what the destination held is cleared. `BadInvalidArgument`, `BadOutOfMemory`,
/// `BadEncodingLimitsExceeded` for inner infos deeper than OpcUa_Nesting_MaxLevels; the destination
/// is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_DiagnosticInfo_CopyTo(const OpcUa_DiagnosticInfo* source,
                                                           OpcUa_DiagnosticInfo* destination);

/// The fields in order, the inner info last. The same pointer is equal, a null pointer less. Inner
/// infos deeper than OpcUa_Nesting_MaxLevels give 1.
[[nodiscard]] OpcUa_Int32 OpcUa_DiagnosticInfo_Compare(const OpcUa_DiagnosticInfo* left,
                                                       const OpcUa_DiagnosticInfo* right);
