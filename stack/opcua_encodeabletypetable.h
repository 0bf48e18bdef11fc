#pragma once

#include "platform/spinlock.h"
#include "platform/types.h"
#include "stack/opcua_encodeabletype.h"

/// One way to a row: by one of its three numeric ids in its namespace.
struct OpcUa_EncodeableTypeTableEntry
{
    OpcUa_UInt32 TypeId;
    const char* NamespaceUri; ///< Null for the standard's namespace.
    const OpcUa_EncodeableType* Type;
};

/// The encodeable types that a decoder knows: rows in the order in which they were added, and an
/// index with up to three entries for each row, sorted by numeric id and then by namespace URI.
///
/// The rows themselves belong to whoever adds them, who keeps them unchanged until the table is
/// cleared and nothing decoded by them is left. Its lock lets any number of threads add and find;
/// initialising and clearing must not overlap with any other use.
struct OpcUa_EncodeableTypeTable
{
    OpcUa_UInt32 Count;
    const OpcUa_EncodeableType** Types;
    OpcUa_UInt32 IndexCount;
    OpcUa_EncodeableTypeTableEntry* Index;
    mutable OpcUa_SpinLock Lock;
};

/// The table of the process, which the start sequence fills with the types that the library knows.
extern OpcUa_EncodeableTypeTable OpcUa_EncodeableTypes;

/// The rows of all types that the library knows, ended by a null pointer.
extern const OpcUa_EncodeableType* const OpcUa_KnownEncodeableTypes[];

/// Makes an empty table, without looking at what was there. A null pointer is ignored.
void OpcUa_EncodeableTypeTable_Initialize(OpcUa_EncodeableTypeTable* table);

/// Frees what the table holds, but no row, and makes it empty. Null pointers and a second call are
/// allowed.
void OpcUa_EncodeableTypeTable_Clear(OpcUa_EncodeableTypeTable* table);

/// Adds the rows of a list that a null pointer ends, leaving out those whose `TypeId` is found already
/// or stands twice in the list. `BadInvalidArgument` for a null pointer, `BadOutOfMemory`; the table is
/// what it was then.
[[nodiscard]] OpcUa_StatusCode
OpcUa_EncodeableTypeTable_AddTypes(OpcUa_EncodeableTypeTable* table,
                                   const OpcUa_EncodeableType* const* types);

/// Finds a row by any of its numeric ids other than 0. `namespaceUri` is null for the standard's
/// namespace; its own URI means the same. An unknown id is `GoodNoData` with a null row: it is the
/// row that the caller tests. `BadInvalidArgument` for a null table or out pointer.
[[nodiscard]] OpcUa_StatusCode
OpcUa_EncodeableTypeTable_Find(const OpcUa_EncodeableTypeTable* table, OpcUa_UInt32 typeId,
                               const char* namespaceUri, const OpcUa_EncodeableType** type);
