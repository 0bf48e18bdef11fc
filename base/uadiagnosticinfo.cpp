#include "base/uadiagnosticinfo.h"

#include "base/uastring.h"
#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_nesting.h"

namespace {

/// Number of infos in a chain, no more than asked for.
OpcUa_UInt32 countLevels(const OpcUa_DiagnosticInfo* info, OpcUa_UInt32 maximum)
{
    OpcUa_UInt32 count = 0;
    for (; info != nullptr && count < maximum; info = info->InnerDiagnosticInfo) {
        ++count;
    }
    return count;
}

} // namespace

UaDiagnosticInfo::UaDiagnosticInfo(const OpcUa_DiagnosticInfo& info) noexcept
    : m_info(info)
{
}

UaDiagnosticInfo& UaDiagnosticInfo::operator=(const OpcUa_DiagnosticInfo& info) noexcept
{
    m_info.set(info);
    return *this;
}

void UaDiagnosticInfo::clear() noexcept
{
    m_info.clear();
}

OpcUa_Int32 UaDiagnosticInfo::symbolicId() const noexcept
{
    return m_info.get()->SymbolicId;
}

OpcUa_Int32 UaDiagnosticInfo::namespaceUri() const noexcept
{
    return m_info.get()->NamespaceUri;
}

OpcUa_Int32 UaDiagnosticInfo::locale() const noexcept
{
    return m_info.get()->Locale;
}

OpcUa_Int32 UaDiagnosticInfo::localizedText() const noexcept
{
    return m_info.get()->LocalizedText;
}

UaString UaDiagnosticInfo::additionalInfo() const
{
    return UaString(&m_info.get()->AdditionalInfo);
}

OpcUa_StatusCode UaDiagnosticInfo::innerStatusCode() const noexcept
{
    return m_info.get()->InnerStatusCode;
}

const OpcUa_DiagnosticInfo* UaDiagnosticInfo::innerDiagnosticInfo() const noexcept
{
    return m_info.get()->InnerDiagnosticInfo;
}

void UaDiagnosticInfo::setSymbolicId(OpcUa_Int32 index) noexcept
{
    m_info.get()->SymbolicId = index;
}

void UaDiagnosticInfo::setNamespaceUri(OpcUa_Int32 index) noexcept
{
    m_info.get()->NamespaceUri = index;
}

void UaDiagnosticInfo::setLocale(OpcUa_Int32 index) noexcept
{
    m_info.get()->Locale = index;
}

void UaDiagnosticInfo::setLocalizedText(OpcUa_Int32 index) noexcept
{
    m_info.get()->LocalizedText = index;
}

void UaDiagnosticInfo::setInnerStatusCode(OpcUa_StatusCode status) noexcept
{
    m_info.get()->InnerStatusCode = status;
}

OpcUa_StatusCode UaDiagnosticInfo::setAdditionalInfo(const UaString& text) noexcept
{
    OpcUa_String copy{};
    const OpcUa_StatusCode status = text.copyTo(&copy);
    if (OpcUa_IsGood(status)) {
        OpcUa_String_Clear(&m_info.get()->AdditionalInfo);
        m_info.get()->AdditionalInfo = copy;
    }
    return status;
}

OpcUa_StatusCode UaDiagnosticInfo::setInnerDiagnosticInfo(const UaDiagnosticInfo& info) noexcept
{
    const OpcUa_DiagnosticInfo* source = info.toOpcUaDiagnosticInfo();
    if (countLevels(source, OpcUa_Nesting_MaxLevels + 1) > OpcUa_Nesting_MaxLevels) {
        return OpcUa_BadEncodingLimitsExceeded;
    }
    auto* inner =
        static_cast<OpcUa_DiagnosticInfo*>(OpcUa_Memory_Alloc(sizeof(OpcUa_DiagnosticInfo)));
    if (inner == nullptr) {
        return OpcUa_BadOutOfMemory;
    }
    OpcUa_DiagnosticInfo_Initialize(inner);
    const OpcUa_StatusCode status = OpcUa_DiagnosticInfo_CopyTo(source, inner);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(inner);
        return status;
    }
    clearInnerDiagnosticInfo();
    m_info.get()->InnerDiagnosticInfo = inner;
    return OpcUa_Good;
}

void UaDiagnosticInfo::clearInnerDiagnosticInfo() noexcept
{
    OpcUa_DiagnosticInfo* inner = m_info.get()->InnerDiagnosticInfo;
    m_info.get()->InnerDiagnosticInfo = nullptr;
    OpcUa_DiagnosticInfo_Clear(inner);
    OpcUa_Memory_Free(inner);
}

const OpcUa_DiagnosticInfo* UaDiagnosticInfo::toOpcUaDiagnosticInfo() const noexcept
{
    return m_info.get();
}

OpcUa_StatusCode UaDiagnosticInfo::copyTo(OpcUa_DiagnosticInfo* pTarget) const noexcept
{
    return m_info.copyTo(pTarget);
}

OpcUa_StatusCode UaDiagnosticInfo::detach(OpcUa_DiagnosticInfo* pTarget) noexcept
{
    return m_info.detach(pTarget);
}

bool UaDiagnosticInfo::operator==(const UaDiagnosticInfo& other) const noexcept
{
    return OpcUa_DiagnosticInfo_Compare(m_info.get(), other.m_info.get()) == 0;
}
