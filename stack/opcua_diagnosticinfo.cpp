#include "stack/opcua_diagnosticinfo.h"

#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_builtintype.h"
#include "stack/opcua_elementtraits.h"
#include "stack/opcua_recordpattern.h"
#include "stack/opcua_scalars.h"

namespace {

const OpcUa_ElementTraits& traits()
{
    return *OpcUa_BuiltInType_GetTraits(OpcUaType_DiagnosticInfo);
}

OpcUa_StatusCode fillDiagnosticInfo(const OpcUa_DiagnosticInfo& source, OpcUa_DiagnosticInfo& copy)
{
    copy = source;
    copy.InnerDiagnosticInfo = nullptr;
    OpcUa_String_Initialize(&copy.AdditionalInfo);
    const OpcUa_StatusCode status =
        OpcUa_String_CopyTo(&source.AdditionalInfo, &copy.AdditionalInfo);
    if (OpcUa_IsBad(status)) {
        return status;
    }
    void* inner = nullptr;
    const OpcUa_StatusCode innerStatus =
        OpcUa_Elements_Copy(traits(), source.InnerDiagnosticInfo, 1, &inner);
    copy.InnerDiagnosticInfo = static_cast<OpcUa_DiagnosticInfo*>(inner);
    return innerStatus;
}

OpcUa_Int32 compareIndexes(const OpcUa_DiagnosticInfo& left, const OpcUa_DiagnosticInfo& right)
{
    for (const auto index : {&OpcUa_DiagnosticInfo::SymbolicId, &OpcUa_DiagnosticInfo::NamespaceUri,
                             &OpcUa_DiagnosticInfo::Locale, &OpcUa_DiagnosticInfo::LocalizedText}) {
        const OpcUa_Int32 order = OpcUa_Int32_Compare(&(left.*index), &(right.*index));
        if (order != 0) {
            return order;
        }
    }
    return 0;
}

OpcUa_Int32 compareDiagnosticInfos(const OpcUa_DiagnosticInfo& left,
                                   const OpcUa_DiagnosticInfo& right)
{
    OpcUa_Int32 order = compareIndexes(left, right);
    if (order == 0) {
        order = OpcUa_String_Compare(&left.AdditionalInfo, &right.AdditionalInfo);
    }
    if (order == 0) {
        order = OpcUa_StatusCode_Compare(&left.InnerStatusCode, &right.InnerStatusCode);
    }
    if (order != 0) {
        return order;
    }
    return OpcUa_Elements_Compare(traits(), left.InnerDiagnosticInfo, right.InnerDiagnosticInfo, 1);
}

} // namespace

void OpcUa_DiagnosticInfo_Initialize(OpcUa_DiagnosticInfo* info)
{
    if (info != nullptr) {
        *info = {-1, -1, -1, -1, {}, OpcUa_Good, nullptr};
    }
}

void OpcUa_DiagnosticInfo_Clear(OpcUa_DiagnosticInfo* info)
{
    if (info == nullptr) {
        return;
    }
    // Each inner info is cut off before it is freed, so that a long chain needs no recursion.
    OpcUa_DiagnosticInfo* inner = info->InnerDiagnosticInfo;
    while (inner != nullptr) {
        OpcUa_DiagnosticInfo* next = inner->InnerDiagnosticInfo;
        OpcUa_String_Clear(&inner->AdditionalInfo);
        OpcUa_Memory_Free(inner);
        inner = next;
    }
    OpcUa_String_Clear(&info->AdditionalInfo);
    OpcUa_DiagnosticInfo_Initialize(info);
}

OpcUa_StatusCode OpcUa_DiagnosticInfo_CopyTo(const OpcUa_DiagnosticInfo* source,
                                             OpcUa_DiagnosticInfo* destination)
{
    return OpcUa_Record_CopyTo<OpcUa_DiagnosticInfo_Initialize, OpcUa_DiagnosticInfo_Clear>(
        source, destination, fillDiagnosticInfo);
}

OpcUa_Int32 OpcUa_DiagnosticInfo_Compare(const OpcUa_DiagnosticInfo* left,
                                         const OpcUa_DiagnosticInfo* right)
{
    return OpcUa_Record_Compare(left, right, compareDiagnosticInfos);
}
