#pragma once

#include "platform/types.h"

/// The namespaces of a process by their index: index 0 is the standard's once it was added first. A
/// table is filled before others read it; then any number of threads may look things up.
struct OpcUa_NamespaceTable
{
    OpcUa_UInt16 Count;
    char** Uris;         ///< By index; owned, each closed by a NUL.
    OpcUa_UInt16* Order; ///< The indexes in the order of their URIs.
};

/// The table of the process, which the start sequence fills.
extern OpcUa_NamespaceTable OpcUa_Namespaces;

/// The URI of the standard's namespace.
inline constexpr const char* OpcUa_NamespaceTable_StandardUri = "http://opcfoundation.org/UA/";

/// Makes an empty table, without looking at what was there. A null pointer is ignored.
void OpcUa_NamespaceTable_Initialize(OpcUa_NamespaceTable* table);

/// Frees the URIs and makes the table empty. Null pointers and a second call are allowed.
void OpcUa_NamespaceTable_Clear(OpcUa_NamespaceTable* table);

/// Adds a URI unless it is there, and gives its index in either case; the out pointer may be null.
/// `BadInvalidArgument` for a null table and a null or empty URI, `BadOutOfRange` for more URIs than
/// an index can count, `BadOutOfMemory`; the table is what it was then.
[[nodiscard]] OpcUa_StatusCode OpcUa_NamespaceTable_AddUri(OpcUa_NamespaceTable* table,
                                                           const char* uri, OpcUa_UInt16* index);

/// Finds the index of a URI by binary search. `BadNotFound`, or `BadInvalidArgument` for a null
/// pointer; the index is 0 then.
[[nodiscard]] OpcUa_StatusCode OpcUa_NamespaceTable_FindUri(const OpcUa_NamespaceTable* table,
                                                            const char* uri, OpcUa_UInt16* index);

/// The URI of an index; null for an index that isn't there and for a null table.
[[nodiscard]] const char* OpcUa_NamespaceTable_GetUri(const OpcUa_NamespaceTable* table,
                                                      OpcUa_UInt16 index);
