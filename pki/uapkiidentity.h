#pragma once

#include "base/uastring.h"

/// A distinguished name (RFC 5280, 4.1.2.4), reduced to the seven fields that certificates of
/// applications have. An empty field stands for an attribute that the name doesn't have; of an
/// attribute that occurs more than once the first is meant.
struct UaPkiIdentity
{
    UaString organization;     ///< O
    UaString organizationUnit; ///< OU
    UaString locality;         ///< L
    UaString state;            ///< ST
    UaString country;          ///< C, two letters
    UaString commonName;       ///< CN
    UaString domainComponent;  ///< DC

    /// True when all seven fields are empty.
    [[nodiscard]] bool isEmpty() const noexcept;

    /// Equal when all seven fields are equal, byte by byte.
    friend bool operator==(const UaPkiIdentity& left, const UaPkiIdentity& right) noexcept;
};
