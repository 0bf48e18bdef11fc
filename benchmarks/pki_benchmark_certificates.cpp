// Certificates, each measurement beside the same work done by hand with the library's calls in its
// default context. The names of the pairs differ in their end alone: .../ours and .../floor.

#include "base/uaunistring.h"
#include "base/uaunistringlist.h"
#include "pki/opensslhandles.h"
#include "pki/uaabstractfileengine.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkipublickey.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void addExtension(X509* certificate, int nid, const char* value)
{
    X509V3_CTX context{};
    X509V3_set_ctx(&context, certificate, certificate, nullptr, nullptr, 0);
    const PkiHandle<X509_EXTENSION> extension(X509V3_EXT_nconf_nid(nullptr, &context, nid, value));
    require(X509_add_ext(certificate, extension.get(), -1) == 1, "an extension");
}

/// An application's certificate as servers and clients have them.
PkiHandle<X509> makeCertificate(EVP_PKEY* key)
{
    PkiHandle<X509> certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 123'456'789);
    X509_NAME* const name = X509_get_subject_name(certificate.get());
    for (const auto& [type, text] : {std::pair("DC", "host"),
                                     {"C", "DE"},
                                     {"ST", "state"},
                                     {"L", "city"},
                                     {"O", "organisation"},
                                     {"OU", "unit"},
                                     {"CN", "application@host"}}) {
        X509_NAME_add_entry_by_txt(name, type, MBSTRING_UTF8,
                                   reinterpret_cast<const unsigned char*>(text), -1, -1, 0);
    }
    X509_set_issuer_name(certificate.get(), name);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
    X509_set_pubkey(certificate.get(), key);
    addExtension(certificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(certificate.get(), NID_subject_key_identifier, "hash");
    addExtension(certificate.get(), NID_authority_key_identifier, "keyid,issuer:always");
    addExtension(certificate.get(), NID_key_usage,
                 "critical,nonRepudiation,digitalSignature,keyEncipherment,dataEncipherment,"
                 "keyCertSign");
    addExtension(certificate.get(), NID_ext_key_usage, "critical,serverAuth,clientAuth");
    addExtension(certificate.get(), NID_subject_alt_name,
                 "URI:urn:host:application,DNS:host,DNS:host.example.org,IP:192.168.0.1");
    require(X509_sign(certificate.get(), key, EVP_sha256()) > 0, "a signature");
    return certificate;
}

/// A certificate in both forms, with its key.
struct Sample
{
    explicit Sample(PkiHandle<EVP_PKEY> pKey)
        : key(std::move(pKey))
        , handle(makeCertificate(key.get()))
    {
        unsigned char* encoded = nullptr;
        const int size = i2d_X509(handle.get(), &encoded);
        const PkiLibraryBytes owner(encoded);
        bytes.assign(encoded, encoded + size);
        const unsigned char* position = encoded;
        handle.reset(d2i_X509(nullptr, &position, size));
    }

    PkiHandle<EVP_PKEY> key;
    PkiHandle<X509> handle; ///< Of the default context.
    Bytes bytes;
};

const Sample& rsaSample()
{
    static const Sample sample{PkiHandle<EVP_PKEY>(EVP_RSA_gen(2048))};
    return sample;
}

const Sample& ecSample()
{
    static const Sample sample{PkiHandle<EVP_PKEY>(EVP_EC_gen("P-256"))};
    return sample;
}

UaByteArray arrayOf(const Bytes& bytes)
{
    return {bytes.data(), static_cast<OpcUa_Int32>(bytes.size())};
}

// The thumb print.

void thumbPrintOurs(benchmark::State& state)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(arrayOf(rsaSample().bytes));
    std::array<unsigned char, 20> expected{};
    X509_digest(rsaSample().handle.get(), EVP_sha1(), expected.data(), nullptr);
    require(certificate.thumbPrint() == UaByteArray(expected.data(), 20), "the thumb print");
    for (auto _ : state) {
        benchmark::DoNotOptimize(certificate.thumbPrint());
    }
}
BENCHMARK(thumbPrintOurs)->Name("certificate/thumbprint/ours");

void thumbPrintFloor(benchmark::State& state)
{
    std::array<unsigned char, 20> digest{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            X509_digest(rsaSample().handle.get(), EVP_sha1(), digest.data(), nullptr));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(thumbPrintFloor)->Name("certificate/thumbprint/floor");

// The signature check.

void verifyOurs(benchmark::State& state, const Sample& (*sampleOf)())
{
    const Sample& sample = sampleOf();
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(arrayOf(sample.bytes));
    const UaPkiPublicKey key(sample.key.get());
    require(certificate.verifySignature(key), "the signature");
    for (auto _ : state) {
        benchmark::DoNotOptimize(certificate.verifySignature(key));
    }
}

void verifyFloor(benchmark::State& state, const Sample& (*sampleOf)())
{
    const Sample& sample = sampleOf();
    for (auto _ : state) {
        benchmark::DoNotOptimize(X509_verify(sample.handle.get(), sample.key.get()));
    }
}
BENCHMARK_CAPTURE(verifyOurs, rsa, rsaSample)->Name("certificate/verify_rsa2048/ours");
BENCHMARK_CAPTURE(verifyFloor, rsa, rsaSample)->Name("certificate/verify_rsa2048/floor");
BENCHMARK_CAPTURE(verifyOurs, ec, ecSample)->Name("certificate/verify_p256/ours");
BENCHMARK_CAPTURE(verifyFloor, ec, ecSample)->Name("certificate/verify_p256/floor");

// A certificate from DER with all its fields.

constexpr int nameFields[] = {NID_organizationName, NID_organizationalUnitName,
                              NID_localityName,     NID_stateOrProvinceName,
                              NID_countryName,      NID_commonName,
                              NID_domainComponent};

std::string textOf(const ASN1_STRING* value)
{
    unsigned char* text = nullptr;
    const int length = ASN1_STRING_to_UTF8(&text, value);
    const PkiLibraryBytes owner(text);
    return length > 0 ? std::string(reinterpret_cast<char*>(text), static_cast<std::size_t>(length))
                      : std::string();
}

std::size_t readNameByHand(const X509_NAME* name)
{
    std::size_t size = 0;
    for (const int nid : nameFields) {
        const int position = X509_NAME_get_index_by_NID(name, nid, -1);
        if (position >= 0) {
            size += textOf(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, position))).size();
        }
    }
    return size;
}

std::size_t readNamesByHand(const X509* certificate)
{
    const PkiHandle<GENERAL_NAMES> names(static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr)));
    std::vector<std::string> texts;
    for (int i = 0; i < sk_GENERAL_NAME_num(names.get()); ++i) {
        const GENERAL_NAME* const name = sk_GENERAL_NAME_value(names.get(), i);
        texts.push_back(name->type == GEN_IPADD ? std::string("192.168.0.1") : textOf(name->d.ia5));
    }
    return texts.size();
}

std::size_t printByHand(X509_EXTENSION* extension)
{
    const PkiHandle<BIO> text(BIO_new(BIO_s_mem()));
    X509V3_EXT_print(text.get(), extension, X509V3_EXT_DEFAULT, 0);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(text.get(), &bytes);
    return std::string(bytes, static_cast<std::size_t>(size)).size();
}

/// Something of each field, so that none is left out.
std::size_t readByHand(const Bytes& bytes)
{
    const unsigned char* position = bytes.data();
    const PkiHandle<X509> certificate(
        d2i_X509(nullptr, &position, static_cast<long>(bytes.size())));
    std::size_t sum = readNameByHand(X509_get_subject_name(certificate.get())) +
                      readNameByHand(X509_get_issuer_name(certificate.get())) +
                      readNamesByHand(certificate.get());
    const PkiHandle<BIGNUM> serial(
        ASN1_INTEGER_to_BN(X509_get0_serialNumber(certificate.get()), nullptr));
    char* const digits = BN_bn2hex(serial.get());
    sum += std::string(digits).size();
    OPENSSL_free(digits);
    std::tm from = {};
    std::tm to = {};
    ASN1_TIME_to_tm(X509_get0_notBefore(certificate.get()), &from);
    ASN1_TIME_to_tm(X509_get0_notAfter(certificate.get()), &to);
    std::array<unsigned char, 20> digest{};
    X509_digest(certificate.get(), EVP_sha1(), digest.data(), nullptr);
    benchmark::DoNotOptimize(digest);
    benchmark::DoNotOptimize(from.tm_sec + to.tm_sec);
    sum += std::string(OBJ_nid2sn(X509_get_signature_nid(certificate.get()))).size();
    benchmark::DoNotOptimize(X509_subject_name_hash(certificate.get()));
    const int usage = X509_get_ext_by_NID(certificate.get(), NID_key_usage, -1);
    return sum + printByHand(X509_get_ext(certificate.get(), usage));
}

std::size_t sizeOf(const UaPkiIdentity& identity)
{
    return static_cast<std::size_t>(
        identity.organization.length() + identity.organizationUnit.length() +
        identity.locality.length() + identity.state.length() + identity.country.length() +
        identity.commonName.length() + identity.domainComponent.length());
}

std::size_t readByOurs(const UaByteArray& bytes)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDER(bytes);
    const UaPkiCertificateInfo info = certificate.info();
    std::size_t sum = sizeOf(certificate.subject()) + sizeOf(certificate.issuer()) +
                      static_cast<std::size_t>(info.dnsNames.length() + info.ipAddresses.length()) +
                      (info.uri.isEmpty() ? 0 : 1);
    sum += certificate.serialNumberString().view().size();
    benchmark::DoNotOptimize(certificate.validFrom());
    benchmark::DoNotOptimize(certificate.validTo());
    benchmark::DoNotOptimize(certificate.thumbPrint());
    sum += certificate.signatureTypeName().view().size();
    benchmark::DoNotOptimize(certificate.subjectNameHash());
    return sum + certificate.extensionValue(NID_key_usage).view().size();
}

void fieldsOurs(benchmark::State& state)
{
    const UaByteArray bytes = arrayOf(rsaSample().bytes);
    require(readByOurs(bytes) == readByHand(rsaSample().bytes), "the fields");
    for (auto _ : state) {
        benchmark::DoNotOptimize(readByOurs(bytes));
    }
}
BENCHMARK(fieldsOurs)->Name("certificate/der_with_all_fields/ours");

void fieldsFloor(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(readByHand(rsaSample().bytes));
    }
}
BENCHMARK(fieldsFloor)->Name("certificate/der_with_all_fields/floor");

// A directory of certificates.

/// A directory with so many files, kept until the process ends.
class Directory
{
public:
    explicit Directory(std::int64_t count)
        : m_path(std::filesystem::temp_directory_path() /
                 ("pki_benchmark_" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(m_path);
        const Bytes& bytes = rsaSample().bytes;
        for (std::int64_t i = 0; i < count; ++i) {
            std::ofstream file(m_path / (std::to_string(i) + ".der"), std::ios::binary);
            file.write(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::streamsize>(bytes.size()));
        }
    }
    ~Directory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;

    [[nodiscard]] std::string path() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

const std::string& directoryOf(std::int64_t count)
{
    static std::map<std::int64_t, std::unique_ptr<Directory>> directories;
    static std::map<std::int64_t, std::string> paths;
    if (directories.count(count) == 0) {
        directories[count] = std::make_unique<Directory>(count);
        paths[count] = directories[count]->path();
    }
    return paths[count];
}

void directoryOurs(benchmark::State& state)
{
    const UaUniString path(directoryOf(state.range(0)).c_str());
    for (auto _ : state) {
        const UaUniStringList names = uaFileEngine().entryList(
            path, UaAbstractFileEngine::FilterFiles | UaAbstractFileEngine::FilterNoDotEntries,
            UaAbstractFileEngine::SortNone);
        std::vector<UaPkiCertificate> certificates;
        for (const UaUniString& name : names) {
            certificates.push_back(UaPkiCertificate::fromDERFile(name));
            require(!certificates.back().isNull(), "a certificate");
        }
        require(static_cast<std::int64_t>(certificates.size()) == state.range(0), "all files");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(directoryOurs)
    ->Name("certificate/directory/ours")
    ->Arg(1000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond);

PkiHandle<X509> readFileByHand(const std::string& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    require(file != nullptr, "a file");
    std::array<unsigned char, 8192> bytes{};
    const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
    const unsigned char* position = bytes.data();
    return PkiHandle<X509>(d2i_X509(nullptr, &position, static_cast<long>(size)));
}

void directoryFloor(benchmark::State& state)
{
    const std::string& path = directoryOf(state.range(0));
    for (auto _ : state) {
        std::vector<PkiHandle<X509>> certificates;
        for (const auto& entry : std::filesystem::directory_iterator(path)) {
            certificates.push_back(readFileByHand(entry.path().string()));
        }
        require(static_cast<std::int64_t>(certificates.size()) == state.range(0), "all files");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(directoryFloor)
    ->Name("certificate/directory/floor")
    ->Arg(1000)
    ->Arg(10'000)
    ->Unit(benchmark::kMillisecond);

} // namespace
