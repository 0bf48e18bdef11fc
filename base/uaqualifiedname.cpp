#include "base/uaqualifiedname.h"

#include "base/uastring.h"

UaQualifiedName::UaQualifiedName(const UaString& name, OpcUa_UInt16 namespaceIndex) noexcept
{
    setQualifiedName(name, namespaceIndex);
}

UaQualifiedName::UaQualifiedName(const OpcUa_QualifiedName& name) noexcept
    : m_name(name)
{
}

UaQualifiedName& UaQualifiedName::operator=(const OpcUa_QualifiedName& name) noexcept
{
    m_name.set(name);
    return *this;
}

void UaQualifiedName::setQualifiedName(const UaString& name, OpcUa_UInt16 namespaceIndex) noexcept
{
    m_name.set({namespaceIndex, 0, *name.toOpcUaString()});
}

void UaQualifiedName::clear() noexcept
{
    m_name.clear();
}

UaString UaQualifiedName::name() const
{
    return UaString(&m_name.get()->Name);
}

OpcUa_UInt16 UaQualifiedName::namespaceIndex() const noexcept
{
    return m_name.get()->NamespaceIndex;
}

bool UaQualifiedName::isNull() const noexcept
{
    return namespaceIndex() == 0 && OpcUa_String_StrSize(&m_name.get()->Name) == 0;
}

const OpcUa_QualifiedName* UaQualifiedName::toOpcUaQualifiedName() const noexcept
{
    return m_name.get();
}

OpcUa_StatusCode UaQualifiedName::copyTo(OpcUa_QualifiedName* pTarget) const noexcept
{
    return m_name.copyTo(pTarget);
}

OpcUa_StatusCode UaQualifiedName::detach(OpcUa_QualifiedName* pTarget) noexcept
{
    return m_name.detach(pTarget);
}

UaString UaQualifiedName::toString() const
{
    return name();
}

UaString UaQualifiedName::toFullString() const
{
    return UaString("ns=%1|%2").arg(namespaceIndex()).arg(name());
}

bool UaQualifiedName::operator==(const UaQualifiedName& other) const noexcept
{
    return OpcUa_QualifiedName_Compare(m_name.get(), other.m_name.get()) == 0;
}
