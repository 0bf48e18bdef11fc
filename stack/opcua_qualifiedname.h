#pragma once

#include "platform/types.h"
#include "stack/opcua_string.h"

/// A name in a namespace (OPC 10000-3, 8.3).
struct OpcUa_QualifiedName
{
    OpcUa_UInt16 NamespaceIndex;
    OpcUa_UInt16 Reserved; ///< Unused, 0.
    OpcUa_String Name;
};

/// Makes a null name in namespace 0, without looking at what was there. A null pointer is ignored.
void OpcUa_QualifiedName_Initialize(OpcUa_QualifiedName* name);

/// Frees the name and initialises it. Null pointers and a second call are allowed.
void OpcUa_QualifiedName_Clear(OpcUa_QualifiedName* name);

/// Deep copy; what the destination held is cleared. `BadInvalidArgument`, `BadOutOfMemory`; the
/// destination is cleared then.
[[nodiscard]] OpcUa_StatusCode OpcUa_QualifiedName_CopyTo(const OpcUa_QualifiedName* source,
                                                          OpcUa_QualifiedName* destination);

/// Difference of the namespace indexes, then the names. The same pointer is equal, a null pointer
/// less.
[[nodiscard]] OpcUa_Int32 OpcUa_QualifiedName_Compare(const OpcUa_QualifiedName* left,
                                                      const OpcUa_QualifiedName* right);
