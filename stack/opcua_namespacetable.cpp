#include "stack/opcua_namespacetable.h"

#include "platform/allocator.h"
#include "platform/status.h"

#include <algorithm>
#include <cstring>
#include <limits>

OpcUa_NamespaceTable OpcUa_Namespaces{};

namespace {

/// Where the index of a URI stands, or belongs, in the sorted order.
OpcUa_UInt16* positionOf(const OpcUa_NamespaceTable& table, const char* uri)
{
    return std::lower_bound(table.Order, table.Order + table.Count, uri,
                            [&table](OpcUa_UInt16 index, const char* text) {
                                return std::strcmp(table.Uris[index], text) < 0;
                            });
}

bool holds(const OpcUa_NamespaceTable& table, const OpcUa_UInt16* position, const char* uri)
{
    return position != table.Order + table.Count && std::strcmp(table.Uris[*position], uri) == 0;
}

/// Gives a block room for one element more; what it held stays.
template <typename T>
bool growByOne(T*& block, OpcUa_UInt16 count)
{
    void* grown = OpcUa_Memory_ReAlloc(block, (std::size_t{count} + 1) * sizeof(T));
    if (grown == nullptr) {
        return false;
    }
    block = static_cast<T*>(grown);
    return true;
}

char* duplicate(const char* uri)
{
    const std::size_t size = std::strlen(uri) + 1;
    auto* copy = static_cast<char*>(OpcUa_Memory_Alloc(size));
    if (copy != nullptr) {
        std::memcpy(copy, uri, size);
    }
    return copy;
}

OpcUa_StatusCode append(OpcUa_NamespaceTable& table, const char* uri)
{
    if (table.Count == std::numeric_limits<OpcUa_UInt16>::max()) {
        return OpcUa_BadOutOfRange;
    }
    if (!growByOne(table.Uris, table.Count) || !growByOne(table.Order, table.Count)) {
        return OpcUa_BadOutOfMemory;
    }
    char* copy = duplicate(uri);
    if (copy == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_UInt16* position = positionOf(table, uri);
    std::copy_backward(position, table.Order + table.Count, table.Order + table.Count + 1);
    *position = table.Count;
    table.Uris[table.Count] = copy;
    ++table.Count;
    return OpcUa_Good;
}

} // namespace

void OpcUa_NamespaceTable_Initialize(OpcUa_NamespaceTable* table)
{
    if (table != nullptr) {
        *table = {};
    }
}

void OpcUa_NamespaceTable_Clear(OpcUa_NamespaceTable* table)
{
    if (table == nullptr) {
        return;
    }
    std::for_each_n(table->Uris, table->Count, OpcUa_Memory_Free);
    OpcUa_Memory_Free(table->Uris);
    OpcUa_Memory_Free(table->Order);
    OpcUa_NamespaceTable_Initialize(table);
}

OpcUa_StatusCode OpcUa_NamespaceTable_AddUri(OpcUa_NamespaceTable* table, const char* uri,
                                             OpcUa_UInt16* index)
{
    if (table == nullptr || uri == nullptr || *uri == '\0') {
        return OpcUa_BadInvalidArgument;
    }
    OpcUa_UInt16 found = 0;
    if (OpcUa_IsBad(OpcUa_NamespaceTable_FindUri(table, uri, &found))) {
        const OpcUa_StatusCode status = append(*table, uri);
        if (OpcUa_IsBad(status)) {
            return status;
        }
        found = static_cast<OpcUa_UInt16>(table->Count - 1);
    }
    if (index != nullptr) {
        *index = found;
    }
    return OpcUa_Good;
}

OpcUa_StatusCode OpcUa_NamespaceTable_FindUri(const OpcUa_NamespaceTable* table, const char* uri,
                                              OpcUa_UInt16* index)
{
    if (index != nullptr) {
        *index = 0;
    }
    if (table == nullptr || uri == nullptr || index == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const OpcUa_UInt16* position = positionOf(*table, uri);
    if (!holds(*table, position, uri)) {
        return OpcUa_BadNotFound;
    }
    *index = *position;
    return OpcUa_Good;
}

const char* OpcUa_NamespaceTable_GetUri(const OpcUa_NamespaceTable* table, OpcUa_UInt16 index)
{
    return table == nullptr || index >= table->Count ? nullptr : table->Uris[index];
}
