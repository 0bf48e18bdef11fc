#pragma once

#include "base/uastring.h"

#include <list>

/// What went wrong on one PKI object, as English texts, oldest first and never more than MaxErrors.
///
/// The messages belong to the object on which they arose: a copy starts without any, and an
/// assignment keeps those of its target. A move takes them along, so that what a function returns
/// arrives with its messages. When memory is short for a message, it is lost.
///
/// Accessors that change nothing else may still add messages: one object belongs to one thread at a
/// time, copies of it may live in others.
class UaPkiErrorList
{
public:
    static constexpr std::size_t MaxErrors = 10;

    /// The messages so far; afterwards the object has none.
    [[nodiscard]] std::list<UaString> getErrors() const noexcept;

    /// Adds a message at the end; when there are more than MaxErrors, the oldest is lost.
    void addError(const UaString& message) const noexcept;

    /// Moves all entries of this thread's OpenSSL error queue here, as ERR_error_string writes them.
    void addLibraryErrors() const noexcept;

protected:
    UaPkiErrorList() noexcept = default;
    UaPkiErrorList(const UaPkiErrorList& /*other*/) noexcept {}
    UaPkiErrorList(UaPkiErrorList&& other) noexcept = default;
    UaPkiErrorList& operator=(const UaPkiErrorList& other) noexcept;
    UaPkiErrorList& operator=(UaPkiErrorList&& other) noexcept = default;
    ~UaPkiErrorList() = default;

private:
    mutable std::list<UaString> m_errors;
};
