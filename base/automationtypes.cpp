#include "base/automationtypes.h"

#include "platform/status.h"
#include "stack/opcua_builtintype.h"

#include <algorithm>
#include <array>

namespace {

struct Row
{
    UaAutomationType automationType;
    OpcUa_Byte builtInType;
    bool isIncoming; ///< The row also holds from the automation type to the built-in type.
    bool isOutgoing; ///< The row also holds from the built-in type to the automation type.
};

constexpr std::array rows = {
    Row{UaAutomationType_Empty, OpcUaType_Null, true, true},
    Row{UaAutomationType_I2, OpcUaType_Int16, true, true},
    Row{UaAutomationType_I4, OpcUaType_Int32, true, true},
    Row{UaAutomationType_R4, OpcUaType_Float, true, true},
    Row{UaAutomationType_R8, OpcUaType_Double, true, true},
    Row{UaAutomationType_Cy, OpcUaType_Double, true, false},
    Row{UaAutomationType_Date, OpcUaType_DateTime, true, true},
    Row{UaAutomationType_Bstr, OpcUaType_String, true, true},
    Row{UaAutomationType_Bstr, OpcUaType_Guid, false, true},
    Row{UaAutomationType_Bstr, OpcUaType_XmlElement, false, true},
    Row{UaAutomationType_Bstr, OpcUaType_NodeId, false, true},
    Row{UaAutomationType_Bstr, OpcUaType_ExpandedNodeId, false, true},
    Row{UaAutomationType_Bstr, OpcUaType_QualifiedName, false, true},
    Row{UaAutomationType_Bstr, OpcUaType_LocalizedText, false, true},
    Row{UaAutomationType_Bool, OpcUaType_Boolean, true, true},
    Row{UaAutomationType_I1, OpcUaType_SByte, true, true},
    Row{UaAutomationType_UI1, OpcUaType_Byte, true, true},
    Row{UaAutomationType_UI2, OpcUaType_UInt16, true, true},
    Row{UaAutomationType_UI4, OpcUaType_UInt32, true, true},
    Row{UaAutomationType_UI4, OpcUaType_StatusCode, false, true},
    Row{UaAutomationType_I8, OpcUaType_Int64, true, true},
    Row{UaAutomationType_UI8, OpcUaType_UInt64, true, true},
    Row{UaAutomationType_Variant, OpcUaType_Variant, false, true},
};

constexpr UaAutomationType Bytes = UaAutomationType_Array | UaAutomationType_UI1;

OpcUa_StatusCode findBuiltInType(UaAutomationType type, OpcUa_Byte& builtInType)
{
    const auto* row = std::find_if(rows.begin(), rows.end(), [type](const Row& candidate) {
        return candidate.isIncoming && candidate.automationType == type;
    });
    if (row == rows.end()) {
        return OpcUa_BadNotFound;
    }
    builtInType = row->builtInType;
    return OpcUa_Good;
}

OpcUa_StatusCode findAutomationType(OpcUa_Byte type, UaAutomationType& automationType)
{
    const auto* row = std::find_if(rows.begin(), rows.end(), [type](const Row& candidate) {
        return candidate.isOutgoing && candidate.builtInType == type;
    });
    if (row == rows.end()) {
        return OpcUa_BadNotFound;
    }
    automationType = row->automationType;
    return OpcUa_Good;
}

OpcUa_StatusCode arrayToVariantType(UaAutomationType elementType, OpcUa_UInt32 dimensions,
                                    UaAutomationVariantType& type)
{
    OpcUa_Byte builtInType = OpcUaType_Null;
    const OpcUa_StatusCode status = findBuiltInType(elementType, builtInType);
    if (OpcUa_IsBad(status) || builtInType == OpcUaType_Null || dimensions == 0) {
        return OpcUa_BadNotFound;
    }
    type = {builtInType,
            dimensions == 1 ? OpcUa_VariantArrayType_Array : OpcUa_VariantArrayType_Matrix};
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode UaAutomationType_ToVariantType(UaAutomationType type, OpcUa_UInt32 dimensions,
                                                UaAutomationVariantType* pType)
{
    if (pType == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    if (type == Bytes && dimensions == 1) {
        *pType = {OpcUaType_ByteString, OpcUa_VariantArrayType_Scalar};
        return OpcUa_Good;
    }
    if ((type & UaAutomationType_Array) != 0) {
        const auto elementType = static_cast<UaAutomationType>(type & ~UaAutomationType_Array);
        return arrayToVariantType(elementType, dimensions, *pType);
    }
    OpcUa_Byte builtInType = OpcUaType_Null;
    const OpcUa_StatusCode status = findBuiltInType(type, builtInType);
    if (OpcUa_IsGood(status)) {
        *pType = {builtInType, OpcUa_VariantArrayType_Scalar};
    }
    return status;
}

OpcUa_StatusCode UaAutomationType_FromVariantType(const UaAutomationVariantType& type,
                                                  UaAutomationType* pType)
{
    if (pType == nullptr) {
        return OpcUa_BadInvalidArgument;
    }
    const bool isScalar = type.arrayType == OpcUa_VariantArrayType_Scalar;
    if (isScalar && type.builtInType == OpcUaType_ByteString) {
        *pType = Bytes;
        return OpcUa_Good;
    }
    UaAutomationType elementType = UaAutomationType_Empty;
    const OpcUa_StatusCode status = findAutomationType(type.builtInType, elementType);
    if (OpcUa_IsBad(status) || (!isScalar && elementType == UaAutomationType_Empty) ||
        type.arrayType > OpcUa_VariantArrayType_Matrix) {
        return OpcUa_BadNotFound;
    }
    *pType = isScalar ? elementType
                      : static_cast<UaAutomationType>(elementType | UaAutomationType_Array);
    return OpcUa_Good;
}
