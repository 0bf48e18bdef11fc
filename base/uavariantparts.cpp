#include "base/uavariantparts.h"

#include "stack/opcua_extensionobject.h"

#include <algorithm>
#include <cstring>

namespace UaVariantParts {

OpcUa_Int32 matrixSize(const OpcUa_VariantMatrix& matrix)
{
    const OpcUa_Int32* dimensions = matrix.Dimensions;
    const bool isPositive = matrix.NoOfDimensions > 0 && dimensions != nullptr &&
                            std::all_of(dimensions, dimensions + matrix.NoOfDimensions,
                                        [](OpcUa_Int32 dimension) { return dimension > 0; });
    return isPositive ? OpcUa_Variant_MatrixSize(&matrix) : 0;
}

Elements elementsOf(const OpcUa_Variant& variant)
{
    if (isArray(variant)) {
        const OpcUa_VariantArray& array = variant.Value.Array;
        return {array.Elements, array.Elements == nullptr ? 0 : std::max(array.Length, 0)};
    }
    if (isMatrix(variant)) {
        const OpcUa_VariantMatrix& matrix = variant.Value.Matrix;
        return {matrix.Elements, matrix.Elements == nullptr ? 0 : matrixSize(matrix)};
    }
    return {nullptr, 0};
}

const OpcUa_ExtensionObject* extensionObjectOf(const OpcUa_Variant& variant)
{
    if (variant.Datatype != OpcUaType_ExtensionObject) {
        return nullptr;
    }
    if (isScalar(variant)) {
        return variant.Value.ExtensionObject;
    }
    const Elements elements = elementsOf(variant);
    const bool hasOne = isArray(variant) ? elements.count == 1 : elements.count > 0;
    return hasOne ? static_cast<const OpcUa_ExtensionObject*>(elements.block) : nullptr;
}

void moveTo(OpcUa_Variant& target, OpcUa_Variant& value)
{
    OpcUa_Variant_Clear(&target);
    target = value;
    OpcUa_Variant_Initialize(&value);
}

const void* pointerOf(const OpcUa_Variant& variant)
{
    const void* pointer = nullptr;
    std::memcpy(&pointer, &variant.Value, sizeof(pointer));
    return pointer;
}

} // namespace UaVariantParts
