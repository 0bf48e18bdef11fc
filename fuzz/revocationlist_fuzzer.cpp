// Revocation lists: the first byte chooses DER or a file. What the library decodes, and nothing else, is
// read; what is written reads again as the same; what isn't read has messages. A list that was read takes
// an entry and a signature, which then verifies.

#include "base/uaunistring.h"
#include "fuzz/librarydecoders.h"
#include "fuzz/require.h"
#include "fuzz/scratchfile.h"
#include "pki/opensslhandles.h"
#include "pki/uapkicertificate.h"
#include "pki/uapkiidentity.h"
#include "pki/uapkipublickey.h"
#include "pki/uapkirevocationlist.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/dercertificate.h"
#include "tests/pki/pkitexts.h"

#include <openssl/pem.h>

#include <cstddef>
#include <cstdint>

namespace {

void requireSame(const UaPkiRevocationList& left, const UaPkiRevocationList& right)
{
    require(left.thisUpdate() == right.thisUpdate());
    require(left.nextUpdate() == right.nextUpdate());
    require(left.issuer() == right.issuer());
    require(left.crlNumber() == right.crlNumber());
    require(left.sameIssuer(right) == right.sameIssuer(left));
    require(left.toDER() == right.toDER());
    (void)left.isValid();
    require(ERR_peek_error() == 0);
}

void signAnew(UaPkiRevocationList list)
{
    static const UaPkiRSAKeyPair keyPair(1024);
    static const UaPkiCertificate certificate =
        UaPkiCertificate::fromDER(toByteArray(DerCertificate().bytes()));
    (void)list.verifySignature(keyPair.publicKey());
    list.addRevoked(certificate, UaDateTime::fromTime_t(0));
    if (!list.sign(keyPair.privateKey())) {
        require(!list.getErrors().empty());
        return;
    }
    const UaPkiRevocationList read = UaPkiRevocationList::fromDER(list.toDER());
    require(!read.isNull());
    require(read.verifySignature(keyPair.publicKey()));
    requireSame(read, list);
}

void check(const UaPkiRevocationList& list, X509_CRL* expected)
{
    require(ERR_peek_error() == 0);
    require(list.isNull() == (expected == nullptr));
    require(list.isNull() == !list.getErrors().empty());
    if (list.isNull()) {
        return;
    }
    requireSame(list, UaPkiRevocationList(expected));
    const UaByteArray bytes = list.toDER();
    requireSame(list, UaPkiRevocationList::fromDER(bytes));
    static const ScratchFile file;
    const char* const path = file.write(nullptr, 0);
    require(list.toPEMFile(path) == 1);
    requireSame(list, UaPkiRevocationList::fromFile(path));
    signAnew(UaPkiRevocationList::fromDER(bytes));
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
        check(UaPkiRevocationList::fromDER(UaByteArray(bytes, static_cast<OpcUa_Int32>(count))),
              decodeDer(bytes, count, d2i_X509_CRL).get());
        return 0;
    }
    static const ScratchFile file;
    const char* const path = file.write(bytes, count);
    PkiHandle<X509_CRL> expected = decodePem(bytes, count, PEM_read_bio_X509_CRL);
    if (expected == nullptr) {
        expected = decodeDer(bytes, count, d2i_X509_CRL);
    }
    check(UaPkiRevocationList::fromFile(path), expected.get());
    check(UaPkiRevocationList::fromFile(UaUniString(path)), expected.get());
    return 0;
}
