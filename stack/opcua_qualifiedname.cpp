#include "stack/opcua_qualifiedname.h"

#include "stack/opcua_recordpattern.h"

namespace {

OpcUa_StatusCode fillQualifiedName(const OpcUa_QualifiedName& source, OpcUa_QualifiedName& copy)
{
    copy.NamespaceIndex = source.NamespaceIndex;
    return OpcUa_String_CopyTo(&source.Name, &copy.Name);
}

OpcUa_Int32 compareQualifiedNames(const OpcUa_QualifiedName& left, const OpcUa_QualifiedName& right)
{
    const OpcUa_Int32 difference = left.NamespaceIndex - right.NamespaceIndex;
    return difference != 0 ? difference : OpcUa_String_Compare(&left.Name, &right.Name);
}

} // namespace

void OpcUa_QualifiedName_Initialize(OpcUa_QualifiedName* name)
{
    if (name != nullptr) {
        *name = {};
    }
}

void OpcUa_QualifiedName_Clear(OpcUa_QualifiedName* name)
{
    if (name != nullptr) {
        OpcUa_String_Clear(&name->Name);
        OpcUa_QualifiedName_Initialize(name);
    }
}

OpcUa_StatusCode OpcUa_QualifiedName_CopyTo(const OpcUa_QualifiedName* source,
                                            OpcUa_QualifiedName* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_QualifiedName_Initialize, OpcUa_QualifiedName_Clear>(
        source, destination, fillQualifiedName);
}

OpcUa_Int32 OpcUa_QualifiedName_Compare(const OpcUa_QualifiedName* left,
                                        const OpcUa_QualifiedName* right)
{
    return OpcUa_Record_Compare(left, right, compareQualifiedNames);
}
