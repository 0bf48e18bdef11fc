// A text as the text form of an array: it is read as numbers exactly when each of its pieces is, and
// its pieces written in that form again are the same pieces.

#include "base/uaarrays.h"
#include "base/uavariant.h"
#include "fuzz/require.h"
#include "platform/status.h"

#include <string>

namespace {

/// Changing the whole text agrees with converting piece by piece, up to the first that fails.
void agree(const UaVariant& text, const UaStringArray& pieces, OpcUa_Byte type)
{
    UaVariant changed(text);
    const OpcUa_StatusCode status = changed.changeType(type, true);
    for (OpcUa_UInt32 i = 0; i < static_cast<OpcUa_UInt32>(pieces.length()); ++i) {
        UaVariant piece{UaString(&pieces[i])};
        const OpcUa_StatusCode pieceStatus = piece.changeType(type, false);
        if (OpcUa_IsBad(pieceStatus)) {
            require(status == pieceStatus && changed == text);
            return;
        }
        const OpcUa_Variant element = changed[i]; // Null when a later piece failed
        require(OpcUa_IsBad(status) ||
                OpcUa_Variant_Compare(&element, piece.toOpcUaVariant()) == 0);
    }
    require(status == OpcUa_Good && changed.arraySize() == pieces.length());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const UaVariant text(
        UaString(reinterpret_cast<const char*>(data), static_cast<OpcUa_Int64>(size)));
    UaStringArray pieces;
    const OpcUa_StatusCode status = text.toStringArray(pieces);
    if (OpcUa_IsBad(status)) {
        require(UaVariant(text).changeType(OpcUaType_Int32, true) == status);
        return 0;
    }
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_Double; ++type) {
        agree(text, pieces, type);
    }
    agree(text, pieces, OpcUaType_DateTime);
    std::string again = "{";
    for (const OpcUa_String& piece : pieces) {
        again.append(again.size() > 1 ? "|" : " ").append(piece.strContent, piece.uLength);
    }
    again.append("}");
    UaStringArray same;
    const UaVariant joined(UaString(again.data(), static_cast<OpcUa_Int64>(again.size())));
    require(joined.toStringArray(same) == OpcUa_Good && same == pieces);
    return 0;
}
