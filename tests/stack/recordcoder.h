#pragma once

#include "platform/status.h"
#include "stack/opcua_binarydecoder.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_encodeabletype.h"
#include "stack/opcua_encodeabletypetable.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"

#include <span>
#include <vector>

using Bytes = std::vector<OpcUa_Byte>;

/// A context with all known types and without limits.
[[nodiscard]] const OpcUa_MessageContext& unlimitedContext();

/// A binary encoder over a memory stream, open.
class RecordWriter
{
public:
    explicit RecordWriter(const OpcUa_MessageContext& context = unlimitedContext());
    ~RecordWriter();
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    /// The status of making and opening.
    [[nodiscard]] OpcUa_StatusCode status() const { return m_status; }
    [[nodiscard]] OpcUa_Encoder* encoder() { return m_encoder; }
    [[nodiscard]] Bytes bytes() const;

private:
    OpcUa_OutputStream* m_stream = nullptr;
    OpcUa_Encoder* m_encoder = nullptr;
    OpcUa_StatusCode m_status;
};

/// A binary decoder over some bytes, which must live as long, open.
class RecordReader
{
public:
    explicit RecordReader(std::span<const OpcUa_Byte> bytes,
                          const OpcUa_MessageContext& context = unlimitedContext());
    ~RecordReader();
    RecordReader(const RecordReader&) = delete;
    RecordReader& operator=(const RecordReader&) = delete;

    /// The status of making and opening.
    [[nodiscard]] OpcUa_StatusCode status() const { return m_status; }
    [[nodiscard]] OpcUa_Decoder* decoder() { return m_decoder; }
    [[nodiscard]] std::size_t position() const;

private:
    OpcUa_InputStream* m_stream = nullptr;
    OpcUa_Decoder* m_decoder = nullptr;
    OpcUa_StatusCode m_status;
};

/// The encoding of a record, of which its size is checked; empty after a failure, which is a failed
/// expectation too.
[[nodiscard]] Bytes encodedRecord(const OpcUa_EncodeableType& type, const void* record);

/// Decodes into memory of any content.
[[nodiscard]] OpcUa_StatusCode decodeRecord(const OpcUa_EncodeableType& type,
                                            std::span<const OpcUa_Byte> bytes, void* record);
