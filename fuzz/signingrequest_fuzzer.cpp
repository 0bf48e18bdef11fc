// Signing requests: what the library decodes, and nothing else, is read; what is written reads again as
// the same; what isn't read has messages. What an authority makes of a request verifies with its key, or
// is null with messages.

#include "base/uabytestring.h"
#include "fuzz/require.h"
#include "fuzz/scratchfile.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkicertificateinfo.h"
#include "pki/uapkicsr.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkiprivatekey.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirsakeypair.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr int sha256 = UaPkiCertificate::Sha256WithRsa;

PkiHandle<X509_REQ> decode(const std::uint8_t* data, std::size_t size)
{
    const PkiErrorScope scope;
    const unsigned char* position = data;
    return PkiHandle<X509_REQ>(d2i_X509_REQ(nullptr, &position, static_cast<long>(size)));
}

UaPkiCertificate makeAuthority(const UaPkiRSAKeyPair& keyPair)
{
    UaPkiCertificateInfo info;
    info.validTime = 3600;
    UaPkiIdentity subject;
    subject.commonName = "Authority";
    return {info, subject, keyPair, true, sha256};
}

void issue(const UaPkiCSR& request)
{
    static const UaPkiRSAKeyPair keyPair(1024);
    static const UaPkiCertificate authority = makeAuthority(keyPair);
    const UaPkiCertificate issued =
        UaPkiCertificate::fromCSR(request, authority, keyPair.privateKey(), 3600, 1, sha256);
    require(issued.isNull() == !issued.getErrors().empty());
    if (!issued.isNull()) {
        require(issued.verifySignature(keyPair.publicKey()));
        const UaPkiCSR again = issued.toCSR(keyPair.privateKey(), sha256);
        require(again.isNull() == !again.getErrors().empty());
    }
    require(ERR_peek_error() == 0);
}

void check(const UaPkiCSR& request, const UaByteArray& expected, bool isExpected)
{
    require(ERR_peek_error() == 0);
    require(request.isNull() == !isExpected);
    require(request.isNull() == !request.getErrors().empty());
    if (request.isNull()) {
        return;
    }
    const UaByteArray bytes = request.toDER();
    require(bytes == expected);
    require(UaByteArray(request.toDERByteString()) == bytes);
    require(UaPkiCSR::fromDER(bytes).toDER() == bytes);
    issue(request);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t largest = 64 * 1024;
    if (size == 0 || size > largest) {
        return 0;
    }
    const PkiHandle<X509_REQ> handle = decode(data, size);
    unsigned char* encoded = nullptr;
    const int length = handle != nullptr ? i2d_X509_REQ(handle.get(), &encoded) : 0;
    const PkiLibraryBytes owner(encoded);
    const UaByteArray expected(encoded, length);
    check(UaPkiCSR::fromDER(UaByteArray(data, static_cast<OpcUa_Int32>(size))), expected,
          handle != nullptr);
    static const ScratchFile file;
    check(UaPkiCSR::fromDERFile(file.write(data, size)), expected, handle != nullptr);
    return 0;
}
