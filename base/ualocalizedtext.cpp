#include "base/ualocalizedtext.h"

#include "base/uastring.h"

UaLocalizedText::UaLocalizedText(const UaString& locale, const UaString& text) noexcept
{
    setLocalizedText(locale, text);
}

UaLocalizedText::UaLocalizedText(const OpcUa_LocalizedText& text) noexcept
    : m_text(text)
{
}

UaLocalizedText& UaLocalizedText::operator=(const OpcUa_LocalizedText& text) noexcept
{
    m_text.set(text);
    return *this;
}

void UaLocalizedText::setLocalizedText(const UaString& locale, const UaString& text) noexcept
{
    m_text.set({*locale.toOpcUaString(), *text.toOpcUaString()});
}

void UaLocalizedText::clear() noexcept
{
    m_text.clear();
}

UaString UaLocalizedText::locale() const
{
    return UaString(&m_text.get()->Locale);
}

UaString UaLocalizedText::text() const
{
    return UaString(&m_text.get()->Text);
}

bool UaLocalizedText::isNull() const noexcept
{
    return OpcUa_String_StrSize(&m_text.get()->Locale) == 0 &&
           OpcUa_String_StrSize(&m_text.get()->Text) == 0;
}

const OpcUa_LocalizedText* UaLocalizedText::toOpcUaLocalizedText() const noexcept
{
    return m_text.get();
}

OpcUa_StatusCode UaLocalizedText::copyTo(OpcUa_LocalizedText* pTarget) const noexcept
{
    return m_text.copyTo(pTarget);
}

OpcUa_StatusCode UaLocalizedText::detach(OpcUa_LocalizedText* pTarget) noexcept
{
    return m_text.detach(pTarget);
}

UaString UaLocalizedText::toString() const
{
    return text();
}

UaString UaLocalizedText::toFullString() const
{
    return UaString("%1|%2").arg(locale()).arg(text());
}

bool UaLocalizedText::operator==(const UaLocalizedText& other) const noexcept
{
    return OpcUa_LocalizedText_Compare(m_text.get(), other.m_text.get()) == 0;
}
