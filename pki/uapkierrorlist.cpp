#include "pki/uapkierrorlist.h"

#include <openssl/err.h>

#include <array>
#include <new>
#include <utility>

UaPkiErrorList& UaPkiErrorList::operator=(const UaPkiErrorList& /*other*/) noexcept
{
    return *this;
}

std::list<UaString> UaPkiErrorList::getErrors() const noexcept
{
    return std::exchange(m_errors, {});
}

void UaPkiErrorList::addError(const UaString& message) const noexcept
{
    if (m_errors.size() == MaxErrors) {
        // The oldest one's place is used again.
        m_errors.splice(m_errors.end(), m_errors, m_errors.begin());
        m_errors.back() = message;
        return;
    }
    try {
        m_errors.push_back(message);
    } catch (const std::bad_alloc&) {
        return; // the message is lost, as promised
    }
}

void UaPkiErrorList::addLibraryErrors() const noexcept
{
    constexpr std::size_t textSize = 256;
    std::array<char, textSize> text{};
    for (unsigned long code = ERR_get_error(); code != 0; code = ERR_get_error()) {
        ERR_error_string_n(code, text.data(), text.size());
        addError(UaString(text.data()));
    }
}
