// Certificates: the first byte chooses DER or PEM. What the library decodes, and nothing else, is read;
// all fields are those of the library's own decoding; what is written reads again as the same; what isn't
// read has messages, and the library's queue is empty.

#include "base/uabytestring.h"
#include "fuzz/librarydecoders.h"
#include "fuzz/require.h"
#include "fuzz/scratchfile.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "tests/pki/certificatefields.h"

#include <openssl/pem.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

UaPkiCertificate readPem(const std::uint8_t* data, std::size_t size)
{
    static const ScratchFile file;
    return UaPkiCertificate::fromPEMFile(file.write(data, size));
}

void check(const UaPkiCertificate& certificate, X509* expected)
{
    require(ERR_peek_error() == 0);
    require(certificate.isNull() == (expected == nullptr));
    require(certificate.isNull() == !certificate.getErrors().empty());
    if (certificate.isNull()) {
        return;
    }
    const std::string fields = allFieldsOf(certificate);
    require(fields == allFieldsOf(UaPkiCertificate(expected)));
    require(ERR_peek_error() == 0);
    const UaPkiCertificate again = UaPkiCertificate::fromDER(certificate.toDERByteString());
    require(fields == allFieldsOf(again));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr std::size_t largest = 64 * 1024;
    if (size < 2 || size > largest) {
        return 0;
    }
    const std::uint8_t* const bytes = data + 1;
    const std::size_t count = size - 1;
    if (data[0] % 2 == 0) {
        check(UaPkiCertificate::fromDER(UaByteArray(bytes, static_cast<OpcUa_Int32>(count))),
              decodeDer(bytes, count, d2i_X509).get());
    } else {
        check(readPem(bytes, count), decodePem(bytes, count, PEM_read_bio_X509).get());
    }
    return 0;
}
