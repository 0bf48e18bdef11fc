#include "stack/opcua_nesting.h"

namespace {

thread_local OpcUa_UInt32 level = 0;

} // namespace

OpcUa_NestingLevel::OpcUa_NestingLevel()
{
    ++level;
}

OpcUa_NestingLevel::~OpcUa_NestingLevel()
{
    --level;
}

bool OpcUa_NestingLevel::isTooDeep() const
{
    return level > OpcUa_Nesting_MaxLevels;
}
