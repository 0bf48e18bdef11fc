#pragma once

#include "platform/types.h"

/// One value of an enumeration.
struct OpcUa_EnumeratedValue
{
    const char* Name; ///< Null behind the last value of a table.
    OpcUa_Int32 Value;
};

/// An enumeration of the standard: its name and its values, ended by a row with a null name.
struct OpcUa_EnumeratedType
{
    const char* TypeName;
    const OpcUa_EnumeratedValue* Values;
};
