#include "tests/pki/certificateorder.h"

#include "pki/opensslhandles.h"

#include <algorithm>
#include <ostream>

UaStringArray textArray(const std::vector<std::string>& texts)
{
    UaStringArray array;
    if (!OpcUa_IsGood(array.create(static_cast<OpcUa_Int32>(texts.size())))) {
        std::abort();
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        UaString text(texts[i].data(), static_cast<OpcUa_Int64>(texts[i].size()));
        (void)text.detach(&array[static_cast<OpcUa_UInt32>(i)]);
    }
    return array;
}

UaPkiCertificateInfo sampleInfo()
{
    return {.uri = "urn:host:application",
            .ipAddresses = textArray({"192.168.0.1", "2001:db8::1"}),
            .dnsNames = textArray({"host", "host.example.org"}),
            .email = "operator@example.org",
            .validTime = 3600,
            .serialNumber = 77};
}

UaPkiIdentity sampleIdentity()
{
    return {.organization = "Organisation",
            .organizationUnit = "Unit",
            .locality = "Ort \xC3\xBC",
            .state = "State",
            .country = "DE",
            .commonName = "application@host",
            .domainComponent = "host"};
}

UaPkiIdentity identityOf(const char* commonName)
{
    UaPkiIdentity identity;
    identity.commonName = commonName;
    return identity;
}

void PrintTo(const ExtensionContent& extension, std::ostream* stream)
{
    *stream << extension.name << (extension.isCritical ? " critical " : " ") << extension.bytes;
}

std::string hexOf(std::string_view bytes)
{
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        text += digits[(static_cast<unsigned char>(byte) >> 4u) & 0xFu];
        text += digits[static_cast<unsigned char>(byte) & 0xFu];
    }
    return text;
}

std::vector<ExtensionContent> extensionsOf(const UaPkiCertificate& certificate)
{
    std::vector<ExtensionContent> contents;
    for (int i = 0; i < X509_get_ext_count(certificate.handle()); ++i) {
        X509_EXTENSION* const extension = X509_get_ext(certificate.handle(), i);
        const ASN1_OCTET_STRING* const data = X509_EXTENSION_get_data(extension);
        contents.push_back(
            {.name = OBJ_nid2sn(OBJ_obj2nid(X509_EXTENSION_get_object(extension))),
             .isCritical = X509_EXTENSION_get_critical(extension) == 1,
             .bytes = hexOf({reinterpret_cast<const char*>(ASN1_STRING_get0_data(data)),
                             static_cast<std::size_t>(ASN1_STRING_length(data))})});
    }
    return contents;
}

std::vector<std::string> extensionNamesOf(const UaPkiCertificate& certificate)
{
    std::vector<std::string> names;
    for (const ExtensionContent& extension : extensionsOf(certificate)) {
        names.push_back(extension.name);
    }
    return names;
}

std::string extensionBytes(const UaPkiCertificate& certificate, int nid)
{
    const std::vector<ExtensionContent> all = extensionsOf(certificate);
    const auto found =
        std::find_if(all.begin(), all.end(), [nid](const ExtensionContent& extension) {
            return extension.name == OBJ_nid2sn(nid);
        });
    return found != all.end() ? found->bytes : "";
}

std::vector<std::string> attributesOf(const X509_NAME* name)
{
    std::vector<std::string> attributes;
    for (int i = 0; i < X509_NAME_entry_count(name); ++i) {
        const X509_NAME_ENTRY* const entry = X509_NAME_get_entry(name, i);
        unsigned char* text = nullptr;
        const int length = ASN1_STRING_to_UTF8(&text, X509_NAME_ENTRY_get_data(entry));
        const PkiLibraryBytes owner(text);
        attributes.push_back(
            OBJ_nid2sn(OBJ_obj2nid(X509_NAME_ENTRY_get_object(entry))) + std::string("=") +
            std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)));
    }
    return attributes;
}
