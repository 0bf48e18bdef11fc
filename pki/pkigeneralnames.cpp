#include "pki/pkigeneralnames.h"

#include "base/hexadecimal.h"
#include "pki/opensslhandles.h"
#include "pki/pkiasn1.h"
#include "platform/status.h"
#include "stack/opcua_string.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <span>
#include <string_view>

namespace {

constexpr std::size_t ipv4Size = 4;
constexpr std::size_t ipv6Size = 16;
constexpr std::size_t largestAddressText = sizeof "2001:0DB8:0000:0000:0000:0000:0000:0001";

int countOf(const GENERAL_NAMES* pNames, int type) noexcept
{
    int count = 0;
    for (int i = 0; i < sk_GENERAL_NAME_num(pNames); ++i) {
        count += sk_GENERAL_NAME_value(pNames, i)->type == type ? 1 : 0;
    }
    return count;
}

bool copyTo(OpcUa_String& target, std::string_view text) noexcept
{
    return OpcUa_IsGood(OpcUa_String_AttachToString(
        text.data(), static_cast<OpcUa_UInt32>(text.size()), 0, true, true, &target));
}

std::string_view printIpv4(std::span<const unsigned char> address,
                           std::array<char, largestAddressText>& text) noexcept
{
    const int length = std::snprintf(text.data(), text.size(), "%d.%d.%d.%d", address[0],
                                     address[1], address[2], address[3]);
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string_view printIpv6(std::span<const unsigned char> address,
                           std::array<char, largestAddressText>& text) noexcept
{
    constexpr std::size_t bytesOfGroup = 2;
    constexpr std::size_t step = 2 * bytesOfGroup + 1;
    text.fill(':');
    for (std::size_t group = 0; group < ipv6Size / bytesOfGroup; ++group) {
        UaHexadecimal::encode(&address[group * bytesOfGroup], bytesOfGroup, &text[group * step]);
    }
    return {text.data(), text.size() - 1};
}

std::string_view printAddress(std::span<const unsigned char> address,
                              std::array<char, largestAddressText>& text) noexcept
{
    switch (address.size()) {
    case ipv4Size:
        return printIpv4(address, text);
    case ipv6Size:
        return printIpv6(address, text);
    default:
        return "";
    }
}

bool appendAddress(OpcUa_String& target, const ASN1_OCTET_STRING* pAddress) noexcept
{
    const auto size = static_cast<std::size_t>(ASN1_STRING_length(pAddress));
    std::array<char, largestAddressText> text{};
    return copyTo(target, printAddress({ASN1_STRING_get0_data(pAddress), size}, text));
}

bool readNames(const GENERAL_NAMES* pNames, UaPkiCertificateInfo& info) noexcept
{
    bool isGood = OpcUa_IsGood(info.dnsNames.create(countOf(pNames, GEN_DNS))) &&
                  OpcUa_IsGood(info.ipAddresses.create(countOf(pNames, GEN_IPADD)));
    OpcUa_UInt32 dnsNames = 0;
    OpcUa_UInt32 ipAddresses = 0;
    for (int i = 0; isGood && i < sk_GENERAL_NAME_num(pNames); ++i) {
        const GENERAL_NAME* const name = sk_GENERAL_NAME_value(pNames, i);
        switch (name->type) {
        case GEN_EMAIL:
            info.email = PkiText_Read(name->d.rfc822Name);
            break;
        case GEN_DNS:
            isGood = copyTo(info.dnsNames[dnsNames++], PkiText(name->d.dNSName).view());
            break;
        case GEN_URI:
            info.uri = PkiText_Read(name->d.uniformResourceIdentifier);
            break;
        case GEN_IPADD:
            isGood = appendAddress(info.ipAddresses[ipAddresses++], name->d.iPAddress);
            break;
        default:
            break;
        }
    }
    return isGood;
}

} // namespace

void PkiGeneralNames_Read(const X509* pCertificate, UaPkiCertificateInfo& info) noexcept
{
    const PkiHandle<GENERAL_NAMES> names(static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(pCertificate, NID_subject_alt_name, nullptr, nullptr)));
    if (!readNames(names.get(), info)) {
        info = {};
        PkiError_EnsureReason();
    }
}
