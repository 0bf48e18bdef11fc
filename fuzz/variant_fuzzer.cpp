// A variant: an error, or one that encodes to bytes which decode to an equal one. A copy is equal and
// encodes the same, and cutting the bytes anywhere gives an error.

#include "fuzz/binarycoding.h"

namespace {

OpcUa_StatusCode decode(const OpcUa_Byte* data, std::size_t size, OpcUa_Variant& variant)
{
    return readBounded(data, size, [&](OpcUa_Decoder& decoder) {
        return decoder.Interface->ReadVariant(&decoder, nullptr, &variant);
    });
}

Bytes encode(const OpcUa_Variant& variant)
{
    return writeAnnounced([&](OpcUa_Encoder& encoder, OpcUa_Int32* size) {
        return encoder.Interface->WriteVariant(&encoder, nullptr, &variant, size);
    });
}

void requireCutsToFail(const Bytes& bytes)
{
    // All of a short one; of a long one the ends, where the lengths and the last elements are.
    constexpr std::size_t wholeSize = 64;
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        if (size < wholeSize || bytes.size() - size < wholeSize) {
            OpcUa_Variant cut;
            require(OpcUa_IsBad(decode(bytes.data(), size, cut)));
            require(cut.Datatype == OpcUaType_Null);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    OpcUa_Variant variant;
    if (OpcUa_IsBad(decode(data, size, variant))) {
        require(variant.Datatype == OpcUaType_Null);
        return 0;
    }
    const Bytes bytes = encode(variant);
    OpcUa_Variant twin;
    require(OpcUa_IsGood(decode(bytes.data(), bytes.size(), twin)));
    require(encode(twin) == bytes);
    OpcUa_Variant copy;
    OpcUa_Variant_Initialize(&copy);
    require(OpcUa_IsGood(OpcUa_Variant_CopyTo(&twin, &copy)));
    require(OpcUa_Variant_Compare(&twin, &copy) == 0 && encode(copy) == bytes);
    requireCutsToFail(bytes);
    OpcUa_Variant_Clear(&variant);
    OpcUa_Variant_Clear(&twin);
    OpcUa_Variant_Clear(&copy);
    return 0;
}
