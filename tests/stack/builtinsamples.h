#pragma once

#include "platform/types.h"
#include "stack/opcua_elementtraits.h"

#include <memory>
#include <ostream>
#include <vector>

/// A value of one built-in type, for tests that run over all types. The fill functions turn an
/// initialised value into a filled one and allocate all that it holds by the stack's allocator.
struct BuiltInSample
{
    const char* name;
    OpcUa_Byte type;
    void (*fill)(void* value);
    void (*fillOther)(void* value); ///< Differs from `fill` in a single field.
};

/// One sample for each of the types 1 to 25, in this order; each field is filled.
[[nodiscard]] const std::vector<BuiltInSample>& builtInSamples();

/// Those of the samples whose type satisfies a condition.
[[nodiscard]] std::vector<BuiltInSample>
builtInSamplesWhere(bool (*condition)(const OpcUa_ElementTraits& traits));

/// Names the test that runs with the sample.
std::ostream& operator<<(std::ostream& stream, const BuiltInSample& sample);

/// A value of a built-in type that clears itself.
class BuiltInValue
{
public:
    /// Starts initialised, or filled by a function of a sample.
    explicit BuiltInValue(OpcUa_Byte type, void (*fill)(void* value) = nullptr);
    ~BuiltInValue();
    BuiltInValue(const BuiltInValue&) = delete;
    BuiltInValue& operator=(const BuiltInValue&) = delete;

    [[nodiscard]] void* get() { return m_memory.get(); }
    [[nodiscard]] const void* get() const { return m_memory.get(); }

    /// True when it equals a value that was only initialised.
    [[nodiscard]] bool isCleared() const;

private:
    const OpcUa_ElementTraits& m_traits;
    std::unique_ptr<unsigned char[]> m_memory;
};
