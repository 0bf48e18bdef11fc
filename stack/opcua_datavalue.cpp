#include "stack/opcua_datavalue.h"

#include "stack/opcua_datetime.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

namespace {

OpcUa_StatusCode fillDataValue(const OpcUa_DataValue& source, OpcUa_DataValue& copy)
{
    copy = source;
    OpcUa_Variant_Initialize(&copy.Value);
    return OpcUa_Variant_CopyTo(&source.Value, &copy.Value);
}

OpcUa_Int32 compareTimes(const OpcUa_DataValue& left, const OpcUa_DataValue& right)
{
    const OpcUa_Int32 order = OpcUa_DateTime_Compare(&left.SourceTimestamp, &right.SourceTimestamp);
    if (order != 0) {
        return order;
    }
    return OpcUa_DateTime_Compare(&left.ServerTimestamp, &right.ServerTimestamp);
}

OpcUa_Int32 comparePicoseconds(const OpcUa_DataValue& left, const OpcUa_DataValue& right)
{
    const OpcUa_Int32 difference = left.SourcePicoseconds - right.SourcePicoseconds;
    return difference != 0 ? difference : left.ServerPicoseconds - right.ServerPicoseconds;
}

OpcUa_Int32 compareDataValues(const OpcUa_DataValue& left, const OpcUa_DataValue& right)
{
    OpcUa_Int32 order = OpcUa_StatusCode_Compare(&left.StatusCode, &right.StatusCode);
    if (order == 0) {
        order = compareTimes(left, right);
    }
    if (order == 0) {
        order = comparePicoseconds(left, right);
    }
    return order != 0 ? order : OpcUa_Variant_Compare(&left.Value, &right.Value);
}

} // namespace

void OpcUa_DataValue_Initialize(OpcUa_DataValue* dataValue)
{
    if (dataValue != nullptr) {
        *dataValue = {};
        OpcUa_Variant_Initialize(&dataValue->Value);
    }
}

void OpcUa_DataValue_Clear(OpcUa_DataValue* dataValue)
{
    if (dataValue != nullptr) {
        OpcUa_Variant_Clear(&dataValue->Value);
        OpcUa_DataValue_Initialize(dataValue);
    }
}

OpcUa_StatusCode OpcUa_DataValue_CopyTo(const OpcUa_DataValue* source, OpcUa_DataValue* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_DataValue_Initialize, OpcUa_DataValue_Clear>(
        source, destination, fillDataValue);
}

OpcUa_Int32 OpcUa_DataValue_Compare(const OpcUa_DataValue* left, const OpcUa_DataValue* right)
{
    return OpcUa_Record_Compare(left, right, compareDataValues);
}
