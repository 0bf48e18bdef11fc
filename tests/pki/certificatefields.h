#pragma once

#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"

#include <openssl/x509.h>

#include <string>

/// All that a certificate answers, as one text for comparisons.
inline std::string allFieldsOf(const UaPkiCertificate& certificate)
{
    std::string text;
    const auto add = [&text](const char* name, const UaString& value) {
        text.append(name).append(": ").append(value.view()).append("\n");
    };
    const auto addIdentity = [&](const char* name, const UaPkiIdentity& identity) {
        for (const UaString& field :
             {identity.organization, identity.organizationUnit, identity.locality, identity.state,
              identity.country, identity.commonName, identity.domainComponent}) {
            add(name, field);
        }
    };
    const auto addNumber = [&](const char* name, long long value) {
        add(name, std::to_string(value).c_str());
    };
    addIdentity("subject", certificate.subject());
    addIdentity("issuer", certificate.issuer());
    add("commonName", certificate.commonName());
    const UaPkiCertificateInfo info = certificate.info();
    add("uri", info.uri);
    add("email", info.email);
    for (const OpcUa_String& name : info.dnsNames) {
        add("dns", UaString(&name));
    }
    for (const OpcUa_String& address : info.ipAddresses) {
        add("ip", UaString(&address));
    }
    addNumber("validTime", info.validTime);
    addNumber("serialNumber", info.serialNumber);
    add("serialNumberString", certificate.serialNumberString());
    addNumber("validFrom", certificate.validFrom().toInt64());
    addNumber("validTo", certificate.validTo().toInt64());
    addNumber("isValid", certificate.isValid() ? 1 : 0);
    add("thumbPrint", certificate.thumbPrint().toHex());
    add("der", certificate.toDER().toHex());
    add("publicKey", certificate.publicKey().toDER().toHex());
    addNumber("isSelfSigned", certificate.isSelfSigned() ? 1 : 0);
    addNumber("verifySignature", certificate.verifySignature(certificate.publicKey()) ? 1 : 0);
    for (int i = 0; i < X509_get_ext_count(certificate.handle()); ++i) {
        const int nid =
            OBJ_obj2nid(X509_EXTENSION_get_object(X509_get_ext(certificate.handle(), i)));
        addNumber("extension", nid);
        addNumber("hasExtension", certificate.hasExtension(nid) ? 1 : 0);
        add("value", certificate.extensionValue(nid));
    }
    add("signatureTypeName", certificate.signatureTypeName());
    addNumber("signatureAlgorithm", certificate.signatureAlgorithm());
    addNumber("subjectNameHash", certificate.subjectNameHash());
    return text;
}
