#include "tests/pki/certificateview.h"

#include "base/uabytestring.h"
#include "pki/uapkipublickey.h"
#include "tests/pki/temporarydirectory.h"

#include <openssl/objects.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <iomanip>
#include <sstream>
#include <string_view>

#include <arpa/inet.h>

namespace {

using Lines = std::vector<std::string>;

struct NameField
{
    const char* name;
    UaString UaPkiIdentity::*field;
};

constexpr NameField nameFields[] = {
    {"O", &UaPkiIdentity::organization},     {"OU", &UaPkiIdentity::organizationUnit},
    {"L", &UaPkiIdentity::locality},         {"ST", &UaPkiIdentity::state},
    {"C", &UaPkiIdentity::country},          {"CN", &UaPkiIdentity::commonName},
    {"DC", &UaPkiIdentity::domainComponent},
};

/// Extensions that openssl prints by their long name.
constexpr int extensions[] = {NID_basic_constraints,
                              NID_key_usage,
                              NID_ext_key_usage,
                              NID_subject_key_identifier,
                              NID_authority_key_identifier,
                              NID_subject_alt_name,
                              NID_certificate_policies,
                              NID_crl_distribution_points,
                              NID_info_access,
                              NID_netscape_comment,
                              NID_issuer_alt_name};
constexpr const char* extensionNames =
    "basicConstraints,keyUsage,extendedKeyUsage,subjectKeyIdentifier,authorityKeyIdentifier,"
    "subjectAltName,certificatePolicies,crlDistributionPoints,authorityInfoAccess,nsComment,"
    "issuerAltName";

Lines linesOf(const std::string& text)
{
    std::istringstream stream(text);
    Lines lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\n");
    return first == std::string::npos
               ? ""
               : text.substr(first, text.find_last_not_of(" \t\n") - first + 1);
}

/// The text with its lines trimmed and without empty ones.
std::string compact(const std::string& text)
{
    std::string result;
    for (const std::string& line : linesOf(text)) {
        if (const std::string part = trimmed(line); !part.empty()) {
            result += part + "\n";
        }
    }
    return result;
}

std::string inUpperCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char character) { return std::toupper(character); });
    return text;
}

std::string without(std::string text, char character)
{
    std::erase(text, character);
    return text;
}

/// What stands behind a prefix; empty when the line doesn't begin with it.
std::string behind(const std::string& line, std::string_view prefix)
{
    return line.starts_with(prefix) ? line.substr(prefix.size()) : std::string();
}

/// An address as our class writes it: all digits of all groups.
std::string longAddress(const std::string& text)
{
    std::array<unsigned char, 16> bytes{};
    if (inet_pton(AF_INET6, text.c_str(), bytes.data()) != 1) {
        return text;
    }
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", bytes[i]);
        result += (i > 0 && i % 2 == 0 ? ":" : "") + std::string(digits.data());
    }
    return result;
}

/// "2026-11-21 22:26:08Z" as our times print; the years of a UTCTime that others read as 1950 to 1969
/// belong to our century.
std::string isoTime(std::string text)
{
    if (text.size() != std::string_view("2026-11-21 22:26:08Z").size()) {
        return text;
    }
    text[10] = 'T';
    text.insert(text.size() - 1, ".000");
    if (text >= "1950" && text < "1970") {
        text.replace(0, 2, "20");
    }
    return text;
}

std::string textOf(const UaString& text)
{
    return std::string(text.view());
}

void addIdentity(CertificateView& view, const std::string& prefix, const UaPkiIdentity& identity)
{
    for (const NameField& row : nameFields) {
        view[prefix + row.name] = textOf(identity.*row.field);
    }
}

/// Sets one of the seven fields of a name, unless it is set; others don't count.
void setFirst(CertificateView& view, const std::string& field, const std::string& value)
{
    if (const auto found = view.find(field); found != view.end() && found->second.empty()) {
        found->second = value;
    }
}

std::string joined(const UaStringArray& array)
{
    std::string result;
    for (const OpcUa_String& text : array) {
        result += textOf(UaString(&text)) + "\n";
    }
    return result;
}

void addAlternativeName(CertificateView& view, std::string_view kind, const std::string& text)
{
    if (kind == "DNS") {
        view["dns"] += text + "\n";
    } else if (kind == "IP") {
        view["ip"] += longAddress(text) + "\n";
    } else if (kind == "URI") {
        view["uri"] = text;
    } else if (kind == "email") {
        view["email"] = text;
    }
}

void addNoAlternativeNames(CertificateView& view)
{
    for (const char* name : {"dns", "ip", "uri", "email"}) {
        view[name] = "";
    }
}

/// "DNS:a, IP Address:1.2.3.4, ..."
void addAlternativeNames(CertificateView& view, const std::string& text)
{
    for (std::size_t first = 0; first < text.size();) {
        const std::size_t end = std::min(text.find(", ", first), text.size());
        const std::string name = trimmed(text.substr(first, end - first));
        for (const auto& [prefix, kind] : {std::pair("DNS:", "DNS"),
                                           {"IP Address:", "IP"},
                                           {"URI:", "URI"},
                                           {"email:", "email"}}) {
            if (name.starts_with(prefix)) {
                addAlternativeName(view, kind, behind(name, prefix));
            }
        }
        first = end + 2;
    }
}

/// One run of `openssl x509`.
class OpensslReader
{
public:
    explicit OpensslReader(const std::string& output)
    {
        addIdentity(m_view, "subject.", {});
        addIdentity(m_view, "issuer.", {});
        addNoAlternativeNames(m_view);
        for (const std::string& line : linesOf(output)) {
            take(line);
        }
        closeExtension();
    }

    [[nodiscard]] const CertificateView& view() const { return m_view; }

private:
    void take(const std::string& line)
    {
        if ((line.empty() || line.starts_with("    ")) && !m_section.empty()) {
            takeIndented(line);
            return;
        }
        closeExtension();
        m_section = line == "subject=" ? "subject." : line == "issuer=" ? "issuer." : "";
        takeHeadline(line);
    }

    void takeHeadline(const std::string& line)
    {
        for (const char* field : {"notBefore", "notAfter"}) {
            if (line.starts_with(std::string(field) + "=")) {
                m_view[field] = isoTime(line.substr(std::string_view(field).size() + 1));
            }
        }
        if (line.starts_with("serial=")) {
            const std::string serial = behind(line, "serial=");
            m_view["serial"] = serial == "00" ? "0" : serial;
        } else if (line.starts_with("sha1 Fingerprint=")) {
            m_view["sha1"] = without(behind(line, "sha1 Fingerprint="), ':');
        } else if (line.starts_with("        Signature Algorithm: ")) {
            m_view["signature"] = trimmed(behind(line, "        Signature Algorithm: "));
        } else if (line.starts_with("-----BEGIN PUBLIC KEY")) {
            m_isInKey = true;
        } else if (line.starts_with("-----END PUBLIC KEY")) {
            m_isInKey = false;
        } else if (m_isInKey) {
            m_view["key"] += line;
        } else if (line.size() == 8 && line.find_first_not_of("0123456789abcdef") == line.npos) {
            m_view["hash"] = line;
        } else if (const std::size_t end = line.find(": ");
                   end != line.npos && !line.starts_with(' ')) {
            openExtension(line.substr(0, end));
        }
    }

    void takeIndented(const std::string& line)
    {
        if (!m_extension.empty()) {
            m_value += line + "\n";
            return;
        }
        if (const std::size_t end = line.find('='); end != line.npos) {
            setFirst(m_view, m_section + line.substr(4, end - 4), line.substr(end + 1));
        }
    }

    void openExtension(const std::string& name)
    {
        m_section = "extension.";
        m_extension = name;
    }

    void closeExtension()
    {
        if (!m_extension.empty()) {
            m_view["extension." + m_extension] = compact(m_value);
            if (m_extension == OBJ_nid2ln(NID_subject_alt_name)) {
                addAlternativeNames(m_view, m_value);
            }
        }
        m_extension.clear();
        m_value.clear();
    }

    CertificateView m_view;
    std::string m_section;
    std::string m_extension;
    std::string m_value;
    bool m_isInKey = false;
};

/// "Sat Nov 21 22:26:08 UTC 2026"
std::string certtoolTime(const std::string& text)
{
    std::tm time = {};
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    stream >> std::get_time(&time, "%a %b %d %H:%M:%S UTC %Y");
    std::ostringstream result;
    result << std::put_time(&time, "%Y-%m-%d %H:%M:%SZ");
    return isoTime(result.str());
}

/// "CN=app,O=o", most specific first and without escapes.
void addCerttoolName(CertificateView& view, const std::string& prefix, const std::string& name)
{
    addIdentity(view, prefix, {});
    std::istringstream stream(name);
    for (std::string part; std::getline(stream, part, ',');) {
        const std::size_t end = part.find('=');
        view[prefix + part.substr(0, end)] = part.substr(end + 1);
    }
}

void takeCerttoolLine(CertificateView& view, const std::string& line)
{
    const std::size_t end = line.find(": ");
    const std::string field = line.substr(0, end);
    const std::string value = end == line.npos ? "" : line.substr(end + 2);
    if (field == "Serial Number (hex)") {
        view["serial"] = inUpperCase(value);
    } else if (field == "Issuer" || field == "Subject") {
        addCerttoolName(view, field == "Issuer" ? "issuer." : "subject.", value);
    } else if (field == "Not Before" || field == "Not After") {
        view[field == "Not Before" ? "notBefore" : "notAfter"] = certtoolTime(value);
    } else if (field == "DNSname") {
        addAlternativeName(view, "DNS", value);
    } else if (field == "IPAddress") {
        addAlternativeName(view, "IP", value);
    } else if (field == "URI" || field == "RFC822Name") {
        addAlternativeName(view, field == "URI" ? "URI" : "email", value);
    } else if (line.starts_with("sha1:") && view.count("sha1") == 0) {
        view["sha1"] = inUpperCase(behind(line, "sha1:"));
    }
}

} // namespace

CertificateView viewOf(const UaPkiCertificate& certificate)
{
    CertificateView view;
    addIdentity(view, "subject.", certificate.subject());
    addIdentity(view, "issuer.", certificate.issuer());
    const UaPkiCertificateInfo info = certificate.info();
    view["dns"] = joined(info.dnsNames);
    view["ip"] = joined(info.ipAddresses);
    view["uri"] = textOf(info.uri);
    view["email"] = textOf(info.email);
    view["serial"] = textOf(certificate.serialNumberString());
    view["notBefore"] = textOf(certificate.validFrom().toString());
    view["notAfter"] = textOf(certificate.validTo().toString());
    view["sha1"] = textOf(certificate.thumbPrint().toHex());
    std::array<char, 9> hash{};
    std::snprintf(hash.data(), hash.size(), "%08x", certificate.subjectNameHash());
    view["hash"] = hash.data();
    const UaByteArray key = certificate.publicKey().toDER();
    view["key"] = textOf(UaByteString(key.size(), key.data()).toBase64());
    view["signature"] = OBJ_nid2ln(OBJ_sn2nid(certificate.signatureTypeName().toUtf8()));
    for (const int nid : extensions) {
        if (certificate.hasExtension(nid)) {
            view[std::string("extension.") + OBJ_nid2ln(nid)] =
                compact(textOf(certificate.extensionValue(nid)));
        }
    }
    return view;
}

std::vector<CertificateView> viewsOfOpenssl(const std::string& directory,
                                            const std::vector<std::string>& files)
{
    constexpr const char* separator = "=====";
    std::string names;
    for (const std::string& file : files) {
        names += " " + file;
    }
    const std::string output = outputOf(
        "cd " + directory + " && for f in" + names +
        "; do openssl x509 -inform DER -in $f -noout -serial -subject -issuer -dates"
        " -dateopt iso_8601 -fingerprint -sha1 -subject_hash -nameopt sep_multiline,utf8,sname"
        " -pubkey -text -certopt no_header,no_version,no_serial,no_validity,no_subject,no_issuer,"
        "no_pubkey,no_extensions,no_sigdump -ext " +
        extensionNames + "; echo " + separator + "; done");
    std::vector<CertificateView> views;
    for (std::size_t first = 0;;) {
        const std::size_t end = output.find(separator, first);
        if (end == output.npos) {
            return views;
        }
        views.push_back(OpensslReader(output.substr(first, end - first)).view());
        first = output.find('\n', end) + 1;
    }
}

CertificateView viewOfCerttool(const std::string& path)
{
    CertificateView view;
    addNoAlternativeNames(view);
    for (const std::string& line :
         linesOf(outputOf("certtool --certificate-info --inder --infile " + path))) {
        takeCerttoolLine(view, trimmed(line));
    }
    return view;
}

CertificateView commonWith(const CertificateView& view, const CertificateView& other)
{
    CertificateView common;
    for (const auto& [name, value] : view) {
        if (other.count(name) == 1) {
            common[name] = value;
        }
    }
    return common;
}
