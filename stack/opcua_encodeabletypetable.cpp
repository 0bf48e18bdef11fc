#include "stack/opcua_encodeabletypetable.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_namespacetable.h"

#include <algorithm>
#include <cstring>
#include <mutex>

using Type = OpcUa_EncodeableType;
using Entry = OpcUa_EncodeableTypeTableEntry;
using Table = OpcUa_EncodeableTypeTable;

OpcUa_EncodeableTypeTable OpcUa_EncodeableTypes{};

namespace {

/// The standard's namespace has one form in the index.
const char* normalized(const char* namespaceUri)
{
    const bool isStandard =
        namespaceUri != nullptr && std::strcmp(namespaceUri, OpcUa_NamespaceTable_StandardUri) == 0;
    return isStandard ? nullptr : namespaceUri;
}

int compareUris(const char* left, const char* right)
{
    if (left == nullptr || right == nullptr) {
        return (left != nullptr ? 1 : 0) - (right != nullptr ? 1 : 0);
    }
    return std::strcmp(left, right);
}

/// The order of the index.
bool isBefore(const Entry& left, const Entry& right)
{
    return left.TypeId != right.TypeId ? left.TypeId < right.TypeId
                                       : compareUris(left.NamespaceUri, right.NamespaceUri) < 0;
}

/// The first entry with at least this id. Which half to take next is computed and not branched on, as
/// no processor can foresee it.
const Entry* firstOf(const Entry* entries, OpcUa_UInt32 count, OpcUa_UInt32 typeId)
{
    while (count > 0) {
        const OpcUa_UInt32 half = (count + 1) / 2;
        entries += (entries[half - 1].TypeId < typeId ? 1u : 0u) * half;
        count -= half;
    }
    return entries;
}

const Type* findType(const Table& table, OpcUa_UInt32 typeId, const char* namespaceUri)
{
    const Entry wanted = {typeId, normalized(namespaceUri), nullptr};
    const Entry* end = table.Index + table.IndexCount;
    const Entry* entry = firstOf(table.Index, table.IndexCount, typeId);
    if (entry != end && entry->NamespaceUri != wanted.NamespaceUri) {
        entry = std::lower_bound(entry, end, wanted, isBefore);
    }
    return entry != end && !isBefore(wanted, *entry) ? entry->Type : nullptr;
}

bool isSameType(const Type& left, const Type& right)
{
    return left.TypeId == right.TypeId &&
           compareUris(normalized(left.NamespaceUri), normalized(right.NamespaceUri)) == 0;
}

OpcUa_UInt32 countOf(const Type* const* types)
{
    OpcUa_UInt32 count = 0;
    while (types[count] != nullptr) {
        ++count;
    }
    return count;
}

/// The old rows and behind them those of the list that are new; null without memory.
const Type** makeRows(const Table& table, const Type* const* types, OpcUa_UInt32& count)
{
    const std::size_t capacity = std::size_t{table.Count} + countOf(types);
    auto** rows = static_cast<const Type**>(OpcUa_Memory_AllocArray(capacity, sizeof(Type*)));
    if (rows == nullptr) {
        return nullptr;
    }
    const Type** const firstNew = std::copy_n(table.Types, table.Count, rows);
    const Type** end = firstNew;
    for (; *types != nullptr; ++types) {
        const auto isThis = [type = *types](const Type* row) { return isSameType(*row, *type); };
        if (findType(table, (*types)->TypeId, (*types)->NamespaceUri) == nullptr &&
            std::none_of(firstNew, end, isThis)) {
            *end++ = *types;
        }
    }
    count = static_cast<OpcUa_UInt32>(end - rows);
    return rows;
}

/// Calls `take(id)` with each id column of a row that isn't 0.
template <typename Take>
void forEachId(const Type& type, Take take)
{
    for (const OpcUa_UInt32 id : {type.TypeId, type.BinaryEncodingTypeId, type.XmlEncodingTypeId}) {
        if (id != 0) {
            take(id);
        }
    }
}

/// The sorted index over some rows; null without memory.
Entry* makeIndex(const Type* const* rows, OpcUa_UInt32 rowCount, OpcUa_UInt32& count)
{
    count = 0;
    for (OpcUa_UInt32 i = 0; i < rowCount; ++i) {
        forEachId(*rows[i], [&count](OpcUa_UInt32) { ++count; });
    }
    auto* index = static_cast<Entry*>(OpcUa_Memory_AllocArray(count, sizeof(Entry)));
    if (index == nullptr) {
        return nullptr;
    }
    Entry* end = index;
    for (OpcUa_UInt32 i = 0; i < rowCount; ++i) {
        forEachId(*rows[i], [&end, row = rows[i]](OpcUa_UInt32 id) {
            *end++ = {id, normalized(row->NamespaceUri), row};
        });
    }
    std::sort(index, end, isBefore);
    return index;
}

} // namespace

void OpcUa_EncodeableTypeTable_Initialize(OpcUa_EncodeableTypeTable* table)
{
    if (table != nullptr) {
        table->Count = 0;
        table->Types = nullptr;
        table->IndexCount = 0;
        table->Index = nullptr;
    }
}

void OpcUa_EncodeableTypeTable_Clear(OpcUa_EncodeableTypeTable* table)
{
    if (table != nullptr) {
        OpcUa_Memory_Free(table->Types);
        OpcUa_Memory_Free(table->Index);
        OpcUa_EncodeableTypeTable_Initialize(table);
    }
}

OpcUa_StatusCode OpcUa_EncodeableTypeTable_AddTypes(OpcUa_EncodeableTypeTable* table,
                                                    const OpcUa_EncodeableType* const* types)
{
    if (table == nullptr || types == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const std::lock_guard lock(table->Lock);
    OpcUa_UInt32 count = 0;
    const Type** rows = makeRows(*table, types, count);
    if (rows == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_UInt32 indexCount = 0;
    Entry* index = makeIndex(rows, count, indexCount);
    if (index == nullptr) {
        OpcUa_Memory_Free(rows);
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_Memory_Free(table->Types);
    OpcUa_Memory_Free(table->Index);
    table->Count = count;
    table->Types = rows;
    table->IndexCount = indexCount;
    table->Index = index;
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_EncodeableTypeTable_Find(const OpcUa_EncodeableTypeTable* table,
                                                OpcUa_UInt32 typeId, const char* namespaceUri,
                                                const OpcUa_EncodeableType** type)
{
    if (type != nullptr) {
        *type = nullptr;
    }
    if (table == nullptr || type == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const std::lock_guard lock(table->Lock);
    *type = findType(*table, typeId, namespaceUri);
    return *type != nullptr ? OpcUa_Good : OpcUa_GoodNoData;
}
