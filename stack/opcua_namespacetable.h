#pragma once

#include "platform/types.h"

#include <string_view>

struct OpcUa_NamespaceTable;

// The namespace URIs of a server by index. Index 0 is the standard's from the start. The functions
// that change a table are for its setting up; afterwards any number of threads may read it.

/// URI of the standard's namespace.
inline constexpr const char* OpcUa_NamespaceTable_StandardUri = "http://opcfoundation.org/UA/";

/// Makes a table that holds the standard's namespace. `BadInvalidArgument` for a null pointer,
/// `BadOutOfMemory`; the out pointer is null then.
[[nodiscard]] OpcUa_StatusCode OpcUa_NamespaceTable_Create(OpcUa_NamespaceTable** table);

/// Frees a table and makes the pointer null. Null pointers are allowed.
void OpcUa_NamespaceTable_Delete(OpcUa_NamespaceTable** table);

/// Adds a URI unless it is there, and gives its index in either case. `BadInvalidArgument` for null,
/// `BadOutOfMemory` also when an index no longer fits 16 bits; the table is what it was then.
[[nodiscard]] OpcUa_StatusCode OpcUa_NamespaceTable_Add(OpcUa_NamespaceTable* table,
                                                        const char* uri, OpcUa_UInt16* index);

/// The URI of an index, closed by a NUL; null for an index that isn't there and for a null table.
[[nodiscard]] const char* OpcUa_NamespaceTable_GetUri(const OpcUa_NamespaceTable* table,
                                                      OpcUa_UInt16 index);

/// Looks a URI up by binary search; false when it isn't there and for a null table.
[[nodiscard]] bool OpcUa_NamespaceTable_Find(const OpcUa_NamespaceTable* table,
                                             std::string_view uri, OpcUa_UInt16* index);
