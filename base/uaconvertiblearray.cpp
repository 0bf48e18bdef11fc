#include "base/uaconvertiblearray.h"

#include "stack/opcua_datavalue.h"

void UaConvertibleArray_UpdateTimestamps(OpcUa_DataValue& dataValue)
{
    dataValue.SourceTimestamp = OpcUa_DateTime_UtcNow();
    dataValue.ServerTimestamp = OpcUa_DateTime_UtcNow();
}

OpcUa_Variant* UaConvertibleArray_ValueOf(OpcUa_DataValue* pDataValue)
{
    return pDataValue == nullptr ? nullptr : &pDataValue->Value;
}
