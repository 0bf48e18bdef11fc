#include "stack/opcua_builtintype.h"

#include "platform/status.h"
#include "stack/opcua_bytestring.h"
#include "stack/opcua_datavalue.h"
#include "stack/opcua_datetime.h"
#include "stack/opcua_diagnosticinfo.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_expandednodeid.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_localizedtext.h"
#include "stack/opcua_nodeid.h"
#include "stack/opcua_qualifiedname.h"
#include "stack/opcua_release.h"
#include "stack/opcua_scalars.h"
#include "stack/opcua_string.h"
#include "stack/opcua_stringparts.h"
#include "stack/opcua_variant.h"

#include <array>

namespace {

/// How a type behaves as an element and as a scalar of a variant.
enum class Kind
{
    Number,   ///< Plain, stored in the variant.
    Plain,    ///< Plain, behind a pointer in the variant.
    InPlace,  ///< Owns memory, stored in the variant.
    Behind,   ///< Owns memory, behind a pointer.
    Nestable, ///< Behind a pointer, and may hold further values.
};

template <typename T, auto& CopyToT>
OpcUa_StatusCode copyBlock(const void* source, OpcUa_Int32 count, void* block, OpcUa_Int32* copied)
{
    const T* from = static_cast<const T*>(source);
    T* to = static_cast<T*>(block);
    OpcUa_StatusCode status = OpcUa_Good;
    OpcUa_Int32 i = 0;
    for (; i < count; ++i) {
        status = CopyToT(&from[i], &to[i]);
        if (OpcUa_IsBad(status)) {
            break;
        }
    }
    *copied = i;
    return status;
}

template <typename T>
void releaseBlock([[maybe_unused]] void* block, [[maybe_unused]] OpcUa_Int32 count)
{
    if constexpr (requires(T & element) { OpcUa_Value_Release(element); }) {
        T* elements = static_cast<T*>(block);
        for (OpcUa_Int32 i = 0; i < count; ++i) {
            OpcUa_Value_Release(elements[i]);
        }
    }
}

/// The operations of one type with its pointers forgotten. CopyNewT is the CopyTo of that type for a
/// destination that is known to be empty.
template <typename T, auto& InitializeT, auto& ClearT, auto& CopyToT, auto& CompareT,
          auto& CopyNewT = CopyToT>
constexpr OpcUa_ElementTraits traitsOf(Kind kind)
{
    return {sizeof(T),
            kind == Kind::Number || kind == Kind::Plain,
            kind == Kind::Plain || kind == Kind::Behind || kind == Kind::Nestable,
            kind == Kind::Nestable,
            [](void* element) { InitializeT(static_cast<T*>(element)); },
            [](void* element) { ClearT(static_cast<T*>(element)); },
            [](const void* source, void* destination) {
                return CopyToT(static_cast<const T*>(source), static_cast<T*>(destination));
            },
            [](const void* left, const void* right) {
                return CompareT(static_cast<const T*>(left), static_cast<const T*>(right));
            },
            kind == Kind::Number || kind == Kind::Plain ? nullptr : copyBlock<T, CopyNewT>,
            releaseBlock<T>};
}

template <typename T>
constexpr OpcUa_ElementTraits traitsOfPlain(Kind kind)
{
    return traitsOf<T, OpcUa_Scalar_Initialize<T>, OpcUa_Scalar_Clear<T>, OpcUa_Scalar_CopyTo<T>,
                    OpcUa_Scalar_Compare<T>>(kind);
}

/// A Null element is nothing at all.
constexpr OpcUa_ElementTraits traitsOfNull = {
    0,
    true,
    false,
    false,
    [](void*) {},
    [](void*) {},
    [](const void*, void*) { return OpcUa_Good; },
    [](const void*, const void*) { return OpcUa_Int32{0}; },
    nullptr,
    nullptr};

constexpr std::array<OpcUa_ElementTraits, 26> traitsByType = {
    traitsOfNull,
    traitsOfPlain<OpcUa_Boolean>(Kind::Number),
    traitsOfPlain<OpcUa_SByte>(Kind::Number),
    traitsOfPlain<OpcUa_Byte>(Kind::Number),
    traitsOfPlain<OpcUa_Int16>(Kind::Number),
    traitsOfPlain<OpcUa_UInt16>(Kind::Number),
    traitsOfPlain<OpcUa_Int32>(Kind::Number),
    traitsOfPlain<OpcUa_UInt32>(Kind::Number),
    traitsOfPlain<OpcUa_Int64>(Kind::Number),
    traitsOfPlain<OpcUa_UInt64>(Kind::Number),
    traitsOfPlain<OpcUa_Float>(Kind::Number),
    traitsOfPlain<OpcUa_Double>(Kind::Number),
    traitsOf<OpcUa_String, OpcUa_String_Initialize, OpcUa_String_Clear, OpcUa_String_CopyTo,
             OpcUa_String_Compare, OpcUa_String_CopyToNew>(Kind::InPlace),
    traitsOfPlain<OpcUa_DateTime>(Kind::Number),
    traitsOfPlain<OpcUa_Guid>(Kind::Plain),
    traitsOf<OpcUa_ByteString, OpcUa_ByteString_Initialize, OpcUa_ByteString_Clear,
             OpcUa_ByteString_CopyTo, OpcUa_ByteString_Compare>(Kind::InPlace),
    traitsOf<OpcUa_XmlElement, OpcUa_XmlElement_Initialize, OpcUa_XmlElement_Clear,
             OpcUa_XmlElement_CopyTo, OpcUa_XmlElement_Compare>(Kind::InPlace),
    traitsOf<OpcUa_NodeId, OpcUa_NodeId_Initialize, OpcUa_NodeId_Clear, OpcUa_NodeId_CopyTo,
             OpcUa_NodeId_Compare>(Kind::Behind),
    traitsOf<OpcUa_ExpandedNodeId, OpcUa_ExpandedNodeId_Initialize, OpcUa_ExpandedNodeId_Clear,
             OpcUa_ExpandedNodeId_CopyTo, OpcUa_ExpandedNodeId_Compare>(Kind::Behind),
    traitsOfPlain<OpcUa_StatusCode>(Kind::Number),
    traitsOf<OpcUa_QualifiedName, OpcUa_QualifiedName_Initialize, OpcUa_QualifiedName_Clear,
             OpcUa_QualifiedName_CopyTo, OpcUa_QualifiedName_Compare>(Kind::Behind),
    traitsOf<OpcUa_LocalizedText, OpcUa_LocalizedText_Initialize, OpcUa_LocalizedText_Clear,
             OpcUa_LocalizedText_CopyTo, OpcUa_LocalizedText_Compare>(Kind::Behind),
    traitsOf<OpcUa_ExtensionObject, OpcUa_ExtensionObject_Initialize, OpcUa_ExtensionObject_Clear,
             OpcUa_ExtensionObject_CopyTo, OpcUa_ExtensionObject_Compare>(Kind::Nestable),
    traitsOf<OpcUa_DataValue, OpcUa_DataValue_Initialize, OpcUa_DataValue_Clear,
             OpcUa_DataValue_CopyTo, OpcUa_DataValue_Compare>(Kind::Nestable),
    traitsOf<OpcUa_Variant, OpcUa_Variant_Initialize, OpcUa_Variant_Clear, OpcUa_Variant_CopyTo,
             OpcUa_Variant_Compare>(Kind::Nestable),
    traitsOf<OpcUa_DiagnosticInfo, OpcUa_DiagnosticInfo_Initialize, OpcUa_DiagnosticInfo_Clear,
             OpcUa_DiagnosticInfo_CopyTo, OpcUa_DiagnosticInfo_Compare>(Kind::Nestable)};

} // namespace

const OpcUa_ElementTraits* OpcUa_BuiltInType_GetTraits(OpcUa_Byte type)
{
    return type < traitsByType.size() ? &traitsByType[type] : nullptr;
}
