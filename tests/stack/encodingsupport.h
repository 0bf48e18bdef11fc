#pragma once

#include "platform/types.h"
#include "stack/opcua_decoder.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_encoder.h"
#include "stack/opcua_inputstream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_namespacetable.h"
#include "stack/opcua_outputstream.h"

#include <functional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

using Bytes = std::vector<OpcUa_Byte>;

/// Reads pairs of hexadecimal digits, with blanks anywhere.
[[nodiscard]] Bytes fromHex(std::string_view text);

/// "00 48 ...", for messages that can be read.
[[nodiscard]] std::string toHex(const Bytes& bytes);

/// A context with the default limits, the row of TestRecord as the known type, and the namespaces
/// "http://opcfoundation.org/UA/" and "urn:sample".
class TestContext
{
public:
    TestContext();
    ~TestContext();
    TestContext(const TestContext&) = delete;
    TestContext& operator=(const TestContext&) = delete;

    [[nodiscard]] OpcUa_MessageContext* operator->() { return &m_context; }
    [[nodiscard]] OpcUa_MessageContext* get() { return &m_context; }
    /// Adds a row to the known types.
    void addType(const OpcUa_EncodeableType& type);

private:
    OpcUa_MessageContext m_context{};
    OpcUa_EncodeableTypeTable m_types{};
    OpcUa_NamespaceTable m_namespaces{};
};

/// A binary encoder that is open on a memory stream, which grows or has a size.
class EncoderOnMemory
{
public:
    explicit EncoderOnMemory(OpcUa_MessageContext* context, OpcUa_UInt32 maxSize = 0);
    ~EncoderOnMemory();
    EncoderOnMemory(const EncoderOnMemory&) = delete;
    EncoderOnMemory& operator=(const EncoderOnMemory&) = delete;

    [[nodiscard]] OpcUa_Encoder* get() { return m_encoder; }
    [[nodiscard]] const OpcUa_EncoderInterface* operator->() { return m_encoder->Interface; }
    [[nodiscard]] Bytes bytes() const;

private:
    OpcUa_OutputStream* m_stream = nullptr;
    OpcUa_Encoder* m_encoder = nullptr;
};

/// A binary decoder that is open on a memory stream over bytes, which must outlive it.
class DecoderOnMemory
{
public:
    DecoderOnMemory(const Bytes& bytes, OpcUa_MessageContext* context);
    ~DecoderOnMemory();
    DecoderOnMemory(const DecoderOnMemory&) = delete;
    DecoderOnMemory& operator=(const DecoderOnMemory&) = delete;

    [[nodiscard]] OpcUa_Decoder* get() { return m_decoder; }
    [[nodiscard]] const OpcUa_DecoderInterface* operator->() { return m_decoder->Interface; }
    /// Bytes that are left in the stream.
    [[nodiscard]] OpcUa_UInt32 remaining() const;

private:
    OpcUa_InputStream* m_stream = nullptr;
    OpcUa_Decoder* m_decoder = nullptr;
};

/// The four operations of one built-in type, with its record forgotten.
struct BuiltInCodec
{
    const char* name;
    OpcUa_Byte type;
    std::function<OpcUa_StatusCode(OpcUa_Encoder*, const void*, OpcUa_Int32*)> write;
    std::function<OpcUa_StatusCode(OpcUa_Decoder*, void*)> read;
    std::function<OpcUa_StatusCode(OpcUa_Encoder*, const void*, OpcUa_Int32, OpcUa_Int32*)>
        writeArray;
    std::function<OpcUa_StatusCode(OpcUa_Decoder*, void**, OpcUa_Int32*)> readArray;
};

/// One for each of the types 1 to 25, in this order.
[[nodiscard]] const std::vector<BuiltInCodec>& builtInCodecs();

/// The row of a type.
[[nodiscard]] inline const BuiltInCodec& codecOf(OpcUa_Byte type)
{
    return builtInCodecs()[type - 1u];
}

/// Names the test that runs with the row.
std::ostream& operator<<(std::ostream& stream, const BuiltInCodec& codec);

/// The encoding of a value, by its operation; empty with a failed expectation when that fails.
[[nodiscard]] Bytes encode(TestContext& context, OpcUa_Byte type, const void* value);

/// Decodes a value that is the only one in the bytes, into memory of any content.
[[nodiscard]] OpcUa_StatusCode decode(TestContext& context, const Bytes& bytes, OpcUa_Byte type,
                                      void* value);
