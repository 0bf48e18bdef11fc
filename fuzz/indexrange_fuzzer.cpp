// An index range, a line break, and bytes that become values of several shapes: what is read can be
// written back and changes nothing, and a range that wasn't shortened always can.

#include "base/uaarrays.h"
#include "base/uabytestring.h"
#include "base/uanumericrange.h"
#include "base/uavariant.h"
#include "fuzz/require.h"
#include "platform/status.h"

#include <algorithm>

namespace {

void roundTrip(const UaVariant& source, const UaNumericRange& range)
{
    UaVariant part;
    UaVariant written(source);
    if (OpcUa_IsBad(source.getIndexRange(range, part))) {
        require(part.isEmpty() && OpcUa_IsBad(written.setIndexRange(range, part)));
        return;
    }
    UaInt32Array sizes;
    part.dimensions(sizes);
    bool isWhole = range.count() == static_cast<OpcUa_UInt32>(sizes.length());
    for (OpcUa_UInt32 i = 0; isWhole && i < range.count(); ++i) {
        isWhole = OpcUa_Int64{range[i].end()} - range[i].first + 1 == sizes[i];
    }
    require(OpcUa_IsGood(written.setIndexRange(range, part)) || !isWhole);
    require(written == source && written.toString().view() == source.toString().view());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::uint8_t* end = std::find(data, data + size, '\n');
    const std::uint8_t* bytes = std::min(end + 1, data + size);
    const auto length = static_cast<OpcUa_Int32>(data + size - bytes);
    UaNumericRange range;
    if (OpcUa_IsBad(range.fromString({reinterpret_cast<const char*>(data), end - data}))) {
        return 0;
    }
    UaNumericRange again;
    require(again.fromString(range.toString()) == OpcUa_Good && again == range);
    roundTrip(UaVariant(UaString(reinterpret_cast<const char*>(bytes), length)), range);
    roundTrip(UaVariant(UaByteString(length, bytes)), range);
    UaByteStringArray pieces; // of growing lengths
    require(pieces.create(length / 12 * 12) == OpcUa_Good);
    for (OpcUa_Int32 i = 0; i < pieces.length(); ++i) {
        UaByteString(i % 7, bytes).detach(pieces.rawArray() + i);
    }
    roundTrip(UaVariant(pieces), range);
    UaVariant matrix;
    const OpcUa_Int32 sizes[] = {length / 12, 2, 3, 2};
    static_cast<void>(matrix.setByteStringMatrix(pieces, UaInt32Array(4, sizes), true));
    roundTrip(matrix, range);
    return 0;
}
