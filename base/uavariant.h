#pragma once

#include "base/uastring.h"
#include "base/uavariantsource.h"
#include "platform/status.h"
#include "platform/types.h"
#include "stack/opcua_variant.h"

#include <type_traits>

class UaNumericRange;

/// A value of any built-in type as a scalar, an array or a matrix (OPC 10000-6, 5.2.2.16): a class
/// around one OpcUa_Variant and nothing else, so that it can be laid over a stack variant. The default
/// is Null.
///
/// Copies are deep, moves take the content and leave Null. A setter clears the old value; where memory
/// is short, or a nested value lies too deep to be copied, the variant is Null afterwards, as after a
/// copy. Getters and conversions leave the variant as it is, and their target too when they fail. Not
/// shared between threads.
class UaVariant
{
public:
    UaVariant() noexcept
        : m_variant()
    {
    }

    /// Deep copy of a stack variant.
    explicit UaVariant(const OpcUa_Variant& value)
        : m_variant()
    {
        static_cast<void>(OpcUa_Variant_CopyTo(&value, &m_variant));
    }
    UaVariant(const UaVariant& other)
        : UaVariant(other.m_variant)
    {
    }
    UaVariant(UaVariant&& other) noexcept
        : m_variant(other.m_variant)
    {
        OpcUa_Variant_Initialize(&other.m_variant);
    }

    /// A copy of a number, a value or an array; see UaVariantSource.
    template <UaVariantSource T>
    explicit UaVariant(const T& value);

    /// The same with the content moved when `bDetach` is set, which leaves the source empty.
    template <UaVariantDetachableSource T>
    UaVariant(T& value, bool bDetach);

    ~UaVariant() { OpcUa_Variant_Clear(&m_variant); }

    UaVariant& operator=(const OpcUa_Variant& value);
    UaVariant& operator=(const UaVariant& other);
    UaVariant& operator=(UaVariant&& other) noexcept;
    template <UaVariantSource T>
    UaVariant& operator=(const T& value);

    /// Makes Null and frees what was held.
    void clear() { OpcUa_Variant_Clear(&m_variant); }

    // What the variant holds ----------------------------------------------------------------------

    /// Built-in type number, OpcUaType_Null to OpcUaType_DiagnosticInfo.
    [[nodiscard]] OpcUa_Byte type() const noexcept { return m_variant.Datatype; }
    [[nodiscard]] bool isEmpty() const noexcept { return m_variant.Datatype == OpcUaType_Null; }
    [[nodiscard]] bool isArray() const noexcept
    {
        return m_variant.ArrayType == OpcUa_VariantArrayType_Array;
    }
    [[nodiscard]] bool isMatrix() const noexcept
    {
        return m_variant.ArrayType == OpcUa_VariantArrayType_Matrix;
    }

    /// The length of an array as it stands, the product of a matrix's dimensions, 0 for a matrix with
    /// a dimension below 1, without dimensions or with an impossible product; -1 for a scalar.
    [[nodiscard]] OpcUa_Int32 arraySize() const;

    /// One entry, its length, for an array; the dimensions of a matrix; none for a scalar.
    void dimensions(UaInt32Array& aDimensions) const;

    /// A deep copy of an array's element, or a byte of a scalar ByteString as a Byte; the caller
    /// clears it. Null for anything else: an index out of range, another scalar, a matrix, and
    /// elements of type Variant or DiagnosticInfo.
    [[nodiscard]] OpcUa_Variant operator[](OpcUa_UInt32 index) const;

    /// The type id of the encoded extension object in the variant: a scalar, the only element of an
    /// array or the first of a matrix. Otherwise the null node id.
    [[nodiscard]] UaNodeId encodingTypeId() const;

    /// The data type: the built-in type number in namespace 0, and for an extension object (as above)
    /// that of its decoded record; see UaExtensionObject::dataTypeId.
    [[nodiscard]] UaNodeId dataTypeId() const;

    /// The same by a table of namespace URIs: the namespace index is the position of the standard's
    /// URI, and without it the id is null. An empty table makes this the form without a table.
    [[nodiscard]] UaNodeId dataTypeId(const UaStringArray& namespaceUris) const;

    /// The stack variant itself, never null; valid as long as the object.
    [[nodiscard]] const OpcUa_Variant* toOpcUaVariant() const noexcept { return &m_variant; }

    /// Takes the content of a stack variant over, which is left Null; what was held is cleared.
    void attach(OpcUa_Variant& value) noexcept;

    /// Deep copy into an initialised stack variant, which is cleared first. Failures are those of
    /// OpcUa_Variant_CopyTo; the target is Null then.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_Variant* pTarget) const
    {
        return OpcUa_Variant_CopyTo(&m_variant, pTarget);
    }

    /// Moves the content out by a copy of its memory and leaves Null. What the target held is
    /// overwritten, not cleared. A null pointer does nothing.
    void detach(OpcUa_Variant* pTarget) noexcept;

    // Setters of scalars --------------------------------------------------------------------------

    void setBool(OpcUa_Boolean value);
    void setSByte(OpcUa_SByte value);
    void setByte(OpcUa_Byte value);
    void setInt16(OpcUa_Int16 value);
    void setUInt16(OpcUa_UInt16 value);
    void setInt32(OpcUa_Int32 value);
    void setUInt32(OpcUa_UInt32 value);
    void setInt64(OpcUa_Int64 value);
    void setUInt64(OpcUa_UInt64 value);
    void setFloat(OpcUa_Float value);
    void setDouble(OpcUa_Double value);
    void setStatusCode(OpcUa_StatusCode value);
    void setString(const UaString& value);
    void setDateTime(const UaDateTime& value);
    void setGuid(const UaGuid& value);
    void setNodeId(const UaNodeId& value);
    void setExpandedNodeId(const UaExpandedNodeId& value);
    void setQualifiedName(const UaQualifiedName& value);
    void setLocalizedText(const UaLocalizedText& value);

    /// With `bDetach` the content moves and the source is left empty; otherwise a deep copy.
    void setByteString(const UaByteString& value);
    void setByteString(UaByteString& value, bool bDetach);
    void setXmlElement(const UaByteString& value);
    void setXmlElement(UaByteString& value, bool bDetach);

    /// The characters become the element's bytes; null gives a null element.
    void setXmlElement(const UaString& value);

    void setExtensionObject(const UaExtensionObject& value);
    void setExtensionObject(UaExtensionObject& value, bool bDetach);

    /// `bDetach` moves content that no other handle shares.
    void setDataValue(const UaDataValue& value);
    void setDataValue(UaDataValue& value, bool bDetach);

    // Setters of arrays. With `bDetach` the block moves and the array is left empty; without it, and
    // where there is no flag, the copy is deep.

    void setBoolArray(const UaBooleanArray& aValues);
    void setBoolArray(UaBooleanArray& aValues, bool bDetach);
    void setSByteArray(const UaSByteArray& aValues);
    void setSByteArray(UaSByteArray& aValues, bool bDetach);
    void setByteArray(const UaByteArray& aValues);
    void setByteArray(UaByteArray& aValues, bool bDetach);
    void setInt16Array(const UaInt16Array& aValues);
    void setInt16Array(UaInt16Array& aValues, bool bDetach);
    void setUInt16Array(const UaUInt16Array& aValues);
    void setUInt16Array(UaUInt16Array& aValues, bool bDetach);
    void setInt32Array(const UaInt32Array& aValues);
    void setInt32Array(UaInt32Array& aValues, bool bDetach);
    void setUInt32Array(const UaUInt32Array& aValues);
    void setUInt32Array(UaUInt32Array& aValues, bool bDetach);
    void setInt64Array(const UaInt64Array& aValues);
    void setInt64Array(UaInt64Array& aValues, bool bDetach);
    void setUInt64Array(const UaUInt64Array& aValues);
    void setUInt64Array(UaUInt64Array& aValues, bool bDetach);
    void setFloatArray(const UaFloatArray& aValues);
    void setFloatArray(UaFloatArray& aValues, bool bDetach);
    void setDoubleArray(const UaDoubleArray& aValues);
    void setDoubleArray(UaDoubleArray& aValues, bool bDetach);
    void setStringArray(const UaStringArray& aValues);
    void setDateTimeArray(const UaDateTimeArray& aValues);
    void setDateTimeArray(UaDateTimeArray& aValues, bool bDetach);
    void setGuidArray(const UaGuidArray& aValues);
    void setGuidArray(UaGuidArray& aValues, bool bDetach);
    void setByteStringArray(const UaByteStringArray& aValues);
    void setByteStringArray(UaByteStringArray& aValues, bool bDetach);
    void setXmlElementArray(const UaByteStringArray& aValues);
    void setXmlElementArray(UaByteStringArray& aValues, bool bDetach);
    void setNodeIdArray(const UaNodeIdArray& aValues);
    void setNodeIdArray(UaNodeIdArray& aValues, bool bDetach);
    void setExpandedNodeIdArray(const UaExpandedNodeIdArray& aValues);
    void setExpandedNodeIdArray(UaExpandedNodeIdArray& aValues, bool bDetach);
    void setStatusCodeArray(const UaStatusCodeArray& aValues);
    void setStatusCodeArray(UaStatusCodeArray& aValues, bool bDetach);
    void setQualifiedNameArray(const UaQualifiedNameArray& aValues);
    void setLocalizedTextArray(const UaLocalizedTextArray& aValues);
    void setExtensionObjectArray(const UaExtensionObjectArray& aValues);
    void setExtensionObjectArray(UaExtensionObjectArray& aValues, bool bDetach);
    void setDataValueArray(const UaDataValues& aValues);
    void setVariantArray(const UaVariantArray& aValues);
    void setVariantArray(UaVariantArray& aValues, bool bDetach);

    // Setters of matrices: the elements as a flat array, the last dimension varying fastest, and the
    // dimensions, which are copied. All dimensions are positive and multiply to the number of elements,
    // or all are 0, or all are -1 (unknown), or there are none; the last three go without elements.
    // `BadInvalidArgument` for other dimensions, `BadOutOfMemory`, or the status of an element that
    // can't be copied; variant and array are as they were then. With `bDetach` the block moves.

    [[nodiscard]] OpcUa_StatusCode setBoolMatrix(UaBooleanArray& aValues,
                                                 const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setBoolMatrix(const UaBooleanArray& aValues,
                                                 const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setSByteMatrix(UaSByteArray& aValues,
                                                  const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setSByteMatrix(const UaSByteArray& aValues,
                                                  const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setByteMatrix(UaByteArray& aValues,
                                                 const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setByteMatrix(const UaByteArray& aValues,
                                                 const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setInt16Matrix(UaInt16Array& aValues,
                                                  const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setInt16Matrix(const UaInt16Array& aValues,
                                                  const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setUInt16Matrix(UaUInt16Array& aValues,
                                                   const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setUInt16Matrix(const UaUInt16Array& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setInt32Matrix(UaInt32Array& aValues,
                                                  const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setInt32Matrix(const UaInt32Array& aValues,
                                                  const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setUInt32Matrix(UaUInt32Array& aValues,
                                                   const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setUInt32Matrix(const UaUInt32Array& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setInt64Matrix(UaInt64Array& aValues,
                                                  const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setInt64Matrix(const UaInt64Array& aValues,
                                                  const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setUInt64Matrix(UaUInt64Array& aValues,
                                                   const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setUInt64Matrix(const UaUInt64Array& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setFloatMatrix(UaFloatArray& aValues,
                                                  const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setFloatMatrix(const UaFloatArray& aValues,
                                                  const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setDoubleMatrix(UaDoubleArray& aValues,
                                                   const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setDoubleMatrix(const UaDoubleArray& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setStringMatrix(const UaStringArray& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setDateTimeMatrix(UaDateTimeArray& aValues,
                                                     const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setDateTimeMatrix(const UaDateTimeArray& aValues,
                                                     const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setGuidMatrix(UaGuidArray& aValues,
                                                 const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setGuidMatrix(const UaGuidArray& aValues,
                                                 const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode
    setByteStringMatrix(UaByteStringArray& aValues, const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setByteStringMatrix(const UaByteStringArray& aValues,
                                                       const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode
    setXmlElementMatrix(UaByteStringArray& aValues, const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setXmlElementMatrix(const UaByteStringArray& aValues,
                                                       const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setNodeIdMatrix(UaNodeIdArray& aValues,
                                                   const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setNodeIdMatrix(const UaNodeIdArray& aValues,
                                                   const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setExpandedNodeIdMatrix(UaExpandedNodeIdArray& aValues,
                                                           const UaInt32Array& aDimensions,
                                                           bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setExpandedNodeIdMatrix(const UaExpandedNodeIdArray& aValues,
                                                           const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode
    setStatusCodeMatrix(UaStatusCodeArray& aValues, const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setStatusCodeMatrix(const UaStatusCodeArray& aValues,
                                                       const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setQualifiedNameMatrix(const UaQualifiedNameArray& aValues,
                                                          const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setLocalizedTextMatrix(const UaLocalizedTextArray& aValues,
                                                          const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setExtensionObjectMatrix(UaExtensionObjectArray& aValues,
                                                            const UaInt32Array& aDimensions,
                                                            bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setExtensionObjectMatrix(const UaExtensionObjectArray& aValues,
                                                            const UaInt32Array& aDimensions);
    [[nodiscard]] OpcUa_StatusCode setVariantMatrix(UaVariantArray& aValues,
                                                    const UaInt32Array& aDimensions, bool bDetach);
    [[nodiscard]] OpcUa_StatusCode setVariantMatrix(const UaVariantArray& aValues,
                                                    const UaInt32Array& aDimensions);

    // Conversions to numbers from scalars of the types Boolean to String. `BadOutOfRange` for values
    // outside the target's range, texts that are no such number, arrays, matrices and other types.
    //
    // A floating point number becomes an integer by adding 0.5 to it, or subtracting 0.5 from a
    // negative one for signed targets, and cutting off the fraction. Integers are read from decimal
    // text with white space and a sign in front, and nothing behind; less than 100 bytes, 30 for the
    // 64-bit targets. An empty text is 0. The decimal point of text is always ".".

    /// Integers and floating point numbers are true if they aren't 0, NaN included. A text is false if
    /// it is "0" or, in any case, "false", and otherwise true. `BadTypeMismatch` instead of
    /// `BadOutOfRange` for Null and for scalars of a type above String.
    [[nodiscard]] OpcUa_StatusCode toBool(OpcUa_Boolean& value) const;

    /// A NaN passes as 0.
    [[nodiscard]] OpcUa_StatusCode toSByte(OpcUa_SByte& value) const;
    [[nodiscard]] OpcUa_StatusCode toInt16(OpcUa_Int16& value) const;

    /// The Float 2147483648.0 passes and becomes the smallest number, as the processor has it.
    [[nodiscard]] OpcUa_StatusCode toInt32(OpcUa_Int32& value) const;
    [[nodiscard]] OpcUa_StatusCode toInt64(OpcUa_Int64& value) const;

    /// From an Int64 the low 8 bits of 0 to 2147483647 are taken: 300 gives 44. From all other types
    /// the range is 0 to 255. Text for unsigned targets must hold no "-".
    [[nodiscard]] OpcUa_StatusCode toByte(OpcUa_Byte& value) const;

    /// These three also read "0x" or "0X" with 1 to 4, 1 to 8 or 1 to 16 hexadecimal digits.
    [[nodiscard]] OpcUa_StatusCode toUInt16(OpcUa_UInt16& value) const;

    /// The Float 4294967296.0 passes and becomes 0, its low 32 bits.
    [[nodiscard]] OpcUa_StatusCode toUInt32(OpcUa_UInt32& value) const;

    /// 18446744073709551616.0 passes and becomes 0, its low 64 bits.
    [[nodiscard]] OpcUa_StatusCode toUInt64(OpcUa_UInt64& value) const;

    /// UInt64 is refused. A Double or text is refused when its magnitude is above the largest Float,
    /// or below the smallest normal one without being 0. NaN passes.
    [[nodiscard]] OpcUa_StatusCode toFloat(OpcUa_Float& value) const;

    /// A text may also be hexadecimal ("0x1p4"), "inf" or "nan". A number too large or too close to 0
    /// for a Double is refused.
    [[nodiscard]] OpcUa_StatusCode toDouble(OpcUa_Double& value) const;

    // Getters of the other scalars. `BadOutOfRange` for variants that the operation doesn't take.

    /// NodeId; Null gives the null node id.
    [[nodiscard]] OpcUa_StatusCode toNodeId(UaNodeId& value) const;

    /// ExpandedNodeId, or NodeId with a null URI on server 0; Null gives the default.
    [[nodiscard]] OpcUa_StatusCode toExpandedNodeId(UaExpandedNodeId& value) const;
    [[nodiscard]] OpcUa_StatusCode toGuid(UaGuid& value) const;

    /// LocalizedText, or a String as the text with a null locale; Null gives the default.
    [[nodiscard]] OpcUa_StatusCode toLocalizedText(UaLocalizedText& value) const;

    /// QualifiedName; Null gives the default.
    [[nodiscard]] OpcUa_StatusCode toQualifiedName(UaQualifiedName& value) const;
    [[nodiscard]] OpcUa_StatusCode toExtensionObject(UaExtensionObject& value) const;

    /// `BadInvalidArgument` for a null pointer. The record is cleared before it is filled.
    [[nodiscard]] OpcUa_StatusCode toDataValue(UaDataValue& value) const;
    [[nodiscard]] OpcUa_StatusCode toDataValue(OpcUa_DataValue* pValue) const;

    /// DateTime, or a String that OpcUa_DateTime_GetDateTimeFromString reads, with its status; Null
    /// gives the null time.
    [[nodiscard]] OpcUa_StatusCode toDateTime(UaDateTime& value) const;

    /// ByteString or XmlElement, an array of Byte; a String as array text of bytes ("{1|0xA}" doesn't
    /// do, "{1|10}" does) or as hexadecimal digits ("010A"). Null gives a null byte string.
    [[nodiscard]] OpcUa_StatusCode toByteString(UaByteString& value) const;

    // Getters of arrays: a deep copy of an array of exactly that type. Null gives the empty array. The
    // types Boolean to Double, DateTime, Guid and String are also read from a scalar String in the text
    // form of an array, "{1|2|3}" with white space around the pieces; its text must be at least 3
    // characters long (`BadOutOfRange`) and stand between "{" and the only "}" (`BadTypeMismatch`).
    // toByteArray also takes a scalar ByteString. Everything else is `BadOutOfRange`.

    [[nodiscard]] OpcUa_StatusCode toBoolArray(UaBooleanArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toSByteArray(UaSByteArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toByteArray(UaByteArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toInt16Array(UaInt16Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toUInt16Array(UaUInt16Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toInt32Array(UaInt32Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toUInt32Array(UaUInt32Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toInt64Array(UaInt64Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toUInt64Array(UaUInt64Array& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toFloatArray(UaFloatArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toDoubleArray(UaDoubleArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toStringArray(UaStringArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toDateTimeArray(UaDateTimeArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toGuidArray(UaGuidArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toByteStringArray(UaByteStringArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toXmlElementArray(UaByteStringArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toNodeIdArray(UaNodeIdArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toExpandedNodeIdArray(UaExpandedNodeIdArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toStatusCodeArray(UaStatusCodeArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toQualifiedNameArray(UaQualifiedNameArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toLocalizedTextArray(UaLocalizedTextArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toExtensionObjectArray(UaExtensionObjectArray& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toDataValueArray(UaDataValues& aValues) const;
    [[nodiscard]] OpcUa_StatusCode toVariantArray(UaVariantArray& aValues) const;

    // Getters of matrices: a copy of the flat elements and of the dimensions. Null gives both empty.
    // Everything but a matrix of exactly that type is `BadTypeMismatch`.

    [[nodiscard]] OpcUa_StatusCode toBoolMatrix(UaBooleanArray& aValues,
                                                UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toSByteMatrix(UaSByteArray& aValues,
                                                 UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toByteMatrix(UaByteArray& aValues,
                                                UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toInt16Matrix(UaInt16Array& aValues,
                                                 UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toUInt16Matrix(UaUInt16Array& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toInt32Matrix(UaInt32Array& aValues,
                                                 UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toUInt32Matrix(UaUInt32Array& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toInt64Matrix(UaInt64Array& aValues,
                                                 UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toUInt64Matrix(UaUInt64Array& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toFloatMatrix(UaFloatArray& aValues,
                                                 UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toDoubleMatrix(UaDoubleArray& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toStringMatrix(UaStringArray& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toDateTimeMatrix(UaDateTimeArray& aValues,
                                                    UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toGuidMatrix(UaGuidArray& aValues,
                                                UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toByteStringMatrix(UaByteStringArray& aValues,
                                                      UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toXmlElementMatrix(UaByteStringArray& aValues,
                                                      UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toNodeIdMatrix(UaNodeIdArray& aValues,
                                                  UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toExpandedNodeIdMatrix(UaExpandedNodeIdArray& aValues,
                                                          UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toStatusCodeMatrix(UaStatusCodeArray& aValues,
                                                      UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toQualifiedNameMatrix(UaQualifiedNameArray& aValues,
                                                         UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toLocalizedTextMatrix(UaLocalizedTextArray& aValues,
                                                         UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toExtensionObjectMatrix(UaExtensionObjectArray& aValues,
                                                           UaInt32Array& aDimensions) const;
    [[nodiscard]] OpcUa_StatusCode toVariantMatrix(UaVariantArray& aValues,
                                                   UaInt32Array& aDimensions) const;

    // Text ----------------------------------------------------------------------------------------

    /// The value as text for people. Arrays print as "{1,2,3}" within 255 bytes: what doesn't fit is
    /// cut, and the text ends in "..." or, where the cut falls between two elements, in "}". Matrices
    /// and the types without a text form say that they can't be displayed.
    [[nodiscard]] UaString toString() const;

    /// The same, but a scalar NodeId, QualifiedName or LocalizedText in its full text form.
    [[nodiscard]] UaString toFullString() const;

    // Change of type ------------------------------------------------------------------------------

    /// Converts the value in place to another built-in type, as a scalar or with `bToArray` as an
    /// array. After a failure it is what it was.
    ///
    /// Scalars: to Boolean to Double, String, DateTime and ByteString by the conversions above. To an
    /// array: a ByteString to Byte, a String as array text to Boolean to Double, DateTime and String.
    /// From an array: Byte to a scalar ByteString; a String array element by element to an array of
    /// Boolean to Double or DateTime, with the status of the first that fails. Every other array stays
    /// as it is with `bToArray`, and the answer is Good: that is no conversion. Everything else, Null
    /// and matrices too, is `BadTypeMismatch`.
    [[nodiscard]] OpcUa_StatusCode changeType(OpcUa_Byte targetType, bool bToArray);

    /// Brings two scalars of the types Boolean to Double to one type, so that they can be compared:
    /// UInt64 when both are unsigned, else Double when one is floating point, else Int64. With
    /// `bExact` two values of one type stay. Other pairs stay too, which is Good. A value that doesn't
    /// fit, such as a large UInt64 beside an Int32, is `BadOutOfRange` and leaves both.
    static OpcUa_StatusCode adjustTypes(UaVariant& left, UaVariant& right, bool bExact);

    // Comparison ----------------------------------------------------------------------------------

    /// Same type and shape and equal values. A NaN differs from itself, except in matrices of equal
    /// bytes. Data values are compared without their times. Arrays of type Null and of equal length
    /// are equal; arrays of DiagnosticInfo never are.
    [[nodiscard]] bool operator==(const UaVariant& other) const;

    /// An order of scalars of one type: numbers, strings by UaString's order (shorter first), times
    /// and status codes. False for every other pair, also for equal values.
    [[nodiscard]] bool operator>=(const UaVariant& other) const;
    [[nodiscard]] bool operator<=(const UaVariant& other) const;

    // Index ranges --------------------------------------------------------------------------------

    /// Reads a range into another variant. `BadIndexRangeInvalid` for an invalid range, which leaves
    /// the target; otherwise the target is cleared first. `BadIndexRangeNoData` when the range doesn't
    /// fit the value: it must begin inside, and what reaches beyond the end is left away.
    ///
    /// A scalar String is indexed by character and a scalar ByteString by byte, other scalars not at
    /// all. An array takes one dimension, a matrix as many as it has; for String and ByteString
    /// elements one more may index within each element, where one that is too short gives an empty one
    /// and at least one must be long enough. Each element is copied deeply.
    [[nodiscard]] OpcUa_StatusCode getIndexRange(const UaNumericRange& range,
                                                 UaVariant& target) const;

    /// Writes a range of this variant. The value must have this type and shape (`BadTypeMismatch`)
    /// and exactly the size of the range, and the range must lie inside (`BadIndexRangeNoData`); after
    /// a failure the variant is what it was. Otherwise as getIndexRange.
    [[nodiscard]] OpcUa_StatusCode setIndexRange(const UaNumericRange& range,
                                                 const UaVariant& value);

private:
    OpcUa_Variant m_variant;
};

static_assert(sizeof(UaVariant) == sizeof(OpcUa_Variant));
static_assert(std::is_standard_layout_v<UaVariant>);
static_assert(!std::is_polymorphic_v<UaVariant>);
