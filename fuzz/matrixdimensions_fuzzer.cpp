// Dimensions for a number of elements: they are accepted exactly when a plain account of the rules
// accepts them, and an accepted matrix gives both back.

#include "base/uaarrays.h"
#include "base/uabytearray.h"
#include "base/uavariant.h"
#include "fuzz/require.h"
#include "platform/status.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

bool isAcceptable(OpcUa_Int32 count, const std::vector<OpcUa_Int32>& sizes)
{
    const auto areAll = [&](OpcUa_Int32 value) {
        return std::all_of(sizes.begin(), sizes.end(), [=](auto size) { return size == value; });
    };
    if (areAll(0) || areAll(-1)) {
        return count == 0; // also without any dimension
    }
    OpcUa_Int32 rest = count;
    for (const OpcUa_Int32 size : sizes) {
        if (size < 1 || rest % size != 0) {
            return false;
        }
        rest /= size;
    }
    return rest == 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const OpcUa_Int32 count = size == 0 ? 0 : data[0];
    std::vector<OpcUa_Int32> sizes(size / 4);
    if (!sizes.empty()) {
        std::memcpy(sizes.data(), data + size % 4, sizes.size() * sizeof(OpcUa_Int32));
    }
    UaByteArray elements;
    require(elements.resize(count));
    const UaInt32Array dimensions(static_cast<OpcUa_Int32>(sizes.size()), sizes.data());
    UaVariant matrix(OpcUa_Int32{7});
    const OpcUa_StatusCode status = matrix.setByteMatrix(elements, dimensions);
    require(OpcUa_IsGood(status) == isAcceptable(count, sizes));
    if (OpcUa_IsBad(status)) {
        require(status == OpcUa_BadInvalidArgument && matrix == UaVariant(OpcUa_Int32{7}));
        return 0;
    }
    UaByteArray elementsBack;
    UaInt32Array dimensionsBack;
    require(matrix.toByteMatrix(elementsBack, dimensionsBack) == OpcUa_Good);
    require(elementsBack == elements && dimensionsBack == dimensions);
    require(matrix.arraySize() == count);
    return 0;
}
