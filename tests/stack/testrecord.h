#pragma once

#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_string.h"
#include "stack/opcua_variant.h"

/// A record of the kind that stands behind a row of the table of encodeable types.
struct TestRecord
{
    OpcUa_Int32 Number;
    OpcUa_String Name;
    OpcUa_ExtensionObject Next; ///< May hold another record of this type.
};

/// Its row.
extern const OpcUa_EncodeableType testRecordType;

/// A second row with the same operations, and one with a compare of its own.
extern const OpcUa_EncodeableType testRecordTwinType;
extern const OpcUa_EncodeableType testRecordOtherType;

/// Turns an initialised extension object into one that holds a new record. The record has no next.
void fillWithTestRecord(OpcUa_ExtensionObject& object, OpcUa_Int32 number, const char* name,
                        const OpcUa_EncodeableType& type = testRecordType);

/// The record that fillWithTestRecord made.
[[nodiscard]] TestRecord& testRecordOf(OpcUa_ExtensionObject& object);
