// The crypto bindings, each beside the bare calls of the library on the same bytes. The names of the
// pairs differ in their end alone: .../ours and .../floor.

#include "platform/openssl_aes.h"
#include "platform/openssl_digest.h"
#include "platform/openssl_provider.h"
#include "platform/status.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

Bytes makeInput(std::int64_t size)
{
    Bytes bytes(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<OpcUa_Byte>(i * 31);
    }
    return bytes;
}

const Bytes keyBytes = makeInput(32);
const Bytes initialVector = makeInput(16);

OpcUa_Key keyOf(OpcUa_Int32 length)
{
    return {OpcUa_Crypto_KeyType_Random, {length, const_cast<OpcUa_Byte*>(keyBytes.data())}};
}

/// One operation on `input` whose result goes to `output`; false when it failed.
using Operation = bool (*)(const Bytes& input, Bytes& output);

/// Measures an operation and, once, whether it gives what the other one of its pair gives.
void measure(benchmark::State& state, Operation operation, Operation other)
{
    const Bytes input = makeInput(state.range(0));
    Bytes output(input.size() + 64);
    Bytes expected(output.size());
    if (!operation(input, output) || !other(input, expected) || output != expected) {
        state.SkipWithError("the two results differ");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(input, output));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

bool sha256Ours(const Bytes& input, Bytes& output)
{
    return OpcUa_IsGood(OpcUa_P_OpenSSL_SHA256_Generate(
        input.data(), static_cast<OpcUa_UInt32>(input.size()), output.data()));
}

bool sha256Floor(const Bytes& input, Bytes& output)
{
    return EVP_Digest(input.data(), input.size(), output.data(), nullptr, EVP_sha256(), nullptr) ==
           1;
}

bool hmacOurs(const Bytes& input, Bytes& output)
{
    const OpcUa_Key key = keyOf(32);
    OpcUa_CryptoBytes result = {32, output.data()};
    return OpcUa_IsGood(OpcUa_P_OpenSSL_HMAC_SHA256_Generate(
        input.data(), static_cast<OpcUa_UInt32>(input.size()), &key, &result));
}

bool hmacFloor(const Bytes& input, Bytes& output)
{
    std::size_t written = 0;
    return EVP_Q_mac(nullptr, "HMAC", nullptr, "SHA256", nullptr, keyBytes.data(), 32, input.data(),
                     input.size(), output.data(), 32, &written) != nullptr;
}

template <int keyLength, bool isEncrypting>
bool aesOurs(const Bytes& input, Bytes& output)
{
    const OpcUa_Key key = keyOf(keyLength);
    auto length = static_cast<OpcUa_UInt32>(input.size());
    const auto crypt =
        isEncrypting ? OpcUa_P_OpenSSL_AES_CBC_Encrypt : OpcUa_P_OpenSSL_AES_CBC_Decrypt;
    return OpcUa_IsGood(
        crypt(input.data(), length, &key, initialVector.data(), output.data(), &length));
}

template <int keyLength, bool isEncrypting>
bool aesFloor(const Bytes& input, Bytes& output)
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
        EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    const EVP_CIPHER* const cipher = keyLength == 16 ? EVP_aes_128_cbc() : EVP_aes_256_cbc();
    int written = 0;
    return EVP_CipherInit_ex(context.get(), cipher, nullptr, keyBytes.data(), initialVector.data(),
                             isEncrypting ? 1 : 0) == 1 &&
           EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
           EVP_CipherUpdate(context.get(), output.data(), &written, input.data(),
                            static_cast<int>(input.size())) == 1;
}

struct Pair
{
    const char* name;
    Operation ours;
    Operation floor;
};

constexpr std::array<Pair, 6> pairs = {{
    {"sha256", sha256Ours, sha256Floor},
    {"hmac_sha256", hmacOurs, hmacFloor},
    {"aes128_encrypt", aesOurs<16, true>, aesFloor<16, true>},
    {"aes128_decrypt", aesOurs<16, false>, aesFloor<16, false>},
    {"aes256_encrypt", aesOurs<32, true>, aesFloor<32, true>},
    {"aes256_decrypt", aesOurs<32, false>, aesFloor<32, false>},
}};

} // namespace

int main(int argc, char** argv)
{
    if (OpcUa_IsBad(OpcUa_P_OpenSSL_Initialize())) {
        return 1;
    }
    for (const Pair& pair : pairs) {
        for (const std::int64_t size : {1024, 65536, 1048576}) {
            const std::string name = "crypto/" + std::string(pair.name) + "/";
            benchmark::RegisterBenchmark((name + "ours").c_str(), measure, pair.ours, pair.floor)
                ->Arg(size);
            benchmark::RegisterBenchmark((name + "floor").c_str(), measure, pair.floor, pair.ours)
                ->Arg(size);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    OpcUa_P_OpenSSL_Cleanup();
    return 0;
}
