#pragma once

#include "platform/types.h"
#include "stack/opcua_recordlayout.h"

#include <array>
#include <cstddef>
#include <memory>
#include <ostream>
#include <vector>

/// How a record of any known type is filled: by walking along its layout.
enum class RecordSample
{
    Initialized, ///< As Initialize leaves it.
    Null,        ///< Arrays are null, with the count -1.
    Empty,       ///< Texts and arrays are there, but without content.
    Filled,      ///< Every field, arrays with one element.
    FilledOther, ///< Every field with another value, arrays with two elements, bodies decoded.
    Nested,      ///< Records in variants in records, inner diagnostic infos, matrices of variants.
};
inline constexpr std::array allRecordSamples = {RecordSample::Initialized, RecordSample::Null,
                                                RecordSample::Empty,       RecordSample::Filled,
                                                RecordSample::FilledOther, RecordSample::Nested};
inline constexpr std::array filledRecordSamples = {RecordSample::Filled, RecordSample::FilledOther,
                                                   RecordSample::Nested};

std::ostream& operator<<(std::ostream& stream, RecordSample sample);

/// The layouts of all known types, in the order of the table.
[[nodiscard]] const std::vector<const OpcUa_RecordLayout*>& allLayouts();

/// The layout of a type by its name.
[[nodiscard]] const OpcUa_RecordLayout& layoutOf(const char* typeName);

/// Fills an initialised record.
void fillRecord(const OpcUa_RecordLayout& layout, void* record, RecordSample sample);

/// True when every field of the record is as Initialize leaves it, and no block is left.
[[nodiscard]] bool isInitialized(const OpcUa_RecordLayout& layout, const void* record);

/// A record of a known type that clears itself.
class SampleRecord
{
public:
    explicit SampleRecord(const OpcUa_RecordLayout& layout,
                          RecordSample sample = RecordSample::Initialized);
    ~SampleRecord();
    SampleRecord(const SampleRecord&) = delete;
    SampleRecord& operator=(const SampleRecord&) = delete;

    [[nodiscard]] void* get() { return m_memory.get(); }
    [[nodiscard]] const void* get() const { return m_memory.get(); }
    [[nodiscard]] bool isInitialized() const { return ::isInitialized(m_layout, get()); }

private:
    const OpcUa_RecordLayout& m_layout;
    std::unique_ptr<unsigned char[]> m_memory;
};
