#include "platform/allocator.h"
#include "platform/status.h"
#include "stack/opcua_binaryencoder.h"
#include "stack/opcua_extensionobject.h"
#include "stack/opcua_getendpointsrequest.h"
#include "stack/opcua_memorystream.h"
#include "stack/opcua_messagecontext.h"
#include "stack/opcua_readresponse.h"
#include "stack/opcua_recordfields.h"
#include "stack/opcua_recordlayout.h"
#include "tests/stack/capturefile.h"
#include "tests/stack/dissection.h"
#include "tests/stack/dissectorlines.h"
#include "tests/stack/messagefiller.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<OpcUa_Byte>;

constexpr std::size_t chunkHeaderSize = 24;

/// A record of any type that clears itself.
class Record
{
public:
    explicit Record(const OpcUa_RecordLayout& layout)
        : m_layout(layout)
        , m_memory(std::make_unique<unsigned char[]>(layout.Size))
    {
        layout.Type->Initialize(get());
    }
    ~Record() { m_layout.Type->Clear(get()); }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    [[nodiscard]] void* get() { return m_memory.get(); }

private:
    const OpcUa_RecordLayout& m_layout;
    std::unique_ptr<unsigned char[]> m_memory;
};

const OpcUa_RecordLayout& messageLayout(std::string_view name)
{
    const auto& layouts = messageLayouts();
    const auto found = std::find_if(layouts.begin(), layouts.end(), [name](const auto* layout) {
        return layout->Type->TypeName == name;
    });
    if (found == layouts.end()) {
        throw std::logic_error("no message of this name");
    }
    return **found;
}

Bytes encodedMessage(const OpcUa_RecordLayout& layout, const void* record)
{
    const OpcUa_MessageContext context = {0,       0,      0, 0, OpcUa_MessageEncoding_Binary,
                                          nullptr, nullptr};
    OpcUa_OutputStream* stream = nullptr;
    OpcUa_Encoder* encoder = nullptr;
    EXPECT_EQ(OpcUa_MemoryOutputStream_Create(1024, 0, &stream), OpcUa_Good);
    EXPECT_EQ(OpcUa_BinaryEncoder_Create(&encoder), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->Open(encoder, stream, &context), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->WriteMessage(encoder, record, layout.Type, nullptr), OpcUa_Good);
    EXPECT_EQ(encoder->Interface->Close(encoder), OpcUa_Good);
    const OpcUa_Byte* buffer = nullptr;
    OpcUa_UInt32 length = 0;
    EXPECT_EQ(OpcUa_MemoryOutputStream_GetBuffer(stream, &buffer, &length), OpcUa_Good);
    Bytes bytes(buffer, buffer + length);
    encoder->Interface->Delete(&encoder);
    stream->Interface->Delete(&stream);
    return bytes;
}

/// What the analyser shows of a capture.
std::vector<DissectedPacket> dissected(const CaptureFile& capture)
{
    const std::string name = "opcua_" + std::to_string(std::random_device()()) + ".pcap";
    const std::filesystem::path path = std::filesystem::temp_directory_path() / name;
    EXPECT_TRUE(capture.write(path.string()));
    std::vector<DissectedPacket> packets = dissect(path.string());
    std::filesystem::remove(path);
    return packets;
}

/// Messages that are written to a capture file, with what must be shown of each.
class Conversation
{
public:
    void add(const std::string& name, const OpcUa_RecordLayout& layout, const void* record)
    {
        const Bytes message = encodedMessage(layout, record);
        const auto number = static_cast<OpcUa_UInt32>(m_names.size() + 1);
        m_capture.add(message, message.size());
        DissectorLines lines;
        lines.addChunkHeader('F', chunkHeaderSize + message.size(), number, number);
        lines.addMessage(layout, record);
        m_names.push_back(name);
        m_expected.push_back(lines.lines());
    }

    void expectSameInAnalyser() const
    {
        const std::vector<DissectedPacket> packets = dissected(m_capture);
        ASSERT_EQ(packets.size(), m_expected.size());
        for (std::size_t i = 0; i < packets.size(); ++i) {
            expectSameLines(m_names[i], packets[i], m_expected[i]);
        }
    }

private:
    static void expectSameLines(const std::string& name, const DissectedPacket& shown,
                                const std::vector<std::string>& expected)
    {
        for (std::size_t i = 0; i < std::max(shown.size(), expected.size()); ++i) {
            const std::string left = i < shown.size() ? shown[i] : "(nothing)";
            const std::string right = i < expected.size() ? expected[i] : "(nothing)";
            if (left != right) {
                ADD_FAILURE() << name << ", line " << i << "\n  shown:   " << left
                              << "\n  written: " << right
                              << "\n  behind:  " << (i > 0 ? expected[i - 1] : "");
                return;
            }
        }
    }

    CaptureFile m_capture;
    std::vector<std::string> m_names;
    std::vector<std::vector<std::string>> m_expected;
};

/// The arrays of a record that have elements.
std::set<std::string> filledArrays(const OpcUa_RecordLayout& layout, const void* record)
{
    std::set<std::string> names;
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray && OpcUa_Field_Count(field, record) > 0) {
            names.insert(field.Name);
        }
    }
    return names;
}

std::set<std::string> allArrays(const OpcUa_RecordLayout& layout)
{
    std::set<std::string> names;
    for (const OpcUa_RecordField& field : OpcUa_RecordFields{layout}) {
        if (field.IsArray) {
            names.insert(field.Name);
        }
    }
    return names;
}

TEST(Dissector, shows_what_was_written_into_every_message)
{
    Conversation conversation;
    for (const OpcUa_RecordLayout* layout : messageLayouts()) {
        std::set<std::string> filled;
        for (OpcUa_UInt32 start = 0; start < 5; ++start) {
            Record record(*layout);
            MessageFiller(101 * start + 1).fillRecord(*layout, record.get());
            filled.merge(filledArrays(*layout, record.get()));
            conversation.add(layout->Type->TypeName + (" " + std::to_string(start)), *layout,
                             record.get());
        }
        EXPECT_EQ(filled, allArrays(*layout)) << layout->Type->TypeName;
    }
    conversation.expectSameInAnalyser();
}

TEST(Dissector, messages_of_the_common_services_are_among_those_tested)
{
    for (const char* service : {"FindServers", "GetEndpoints", "CreateSession", "ActivateSession",
                                "Browse", "Read", "Write", "Call", "Publish", "HistoryRead"}) {
        EXPECT_NO_THROW(messageLayout(std::string(service) + "Request"));
        EXPECT_NO_THROW(messageLayout(std::string(service) + "Response"));
    }
}

/// A read response whose values are put in one by one.
class Answer
{
public:
    explicit Answer(OpcUa_Int32 count)
        : m_layout(messageLayout("ReadResponse"))
        , m_record(m_layout)
    {
        auto& response = *static_cast<OpcUa_ReadResponse*>(m_record.get());
        response.Results = static_cast<OpcUa_DataValue*>(
            OpcUa_Memory_AllocZeroed(static_cast<std::size_t>(count), sizeof(OpcUa_DataValue)));
        response.NoOfResults = count;
    }

    OpcUa_Variant& value(OpcUa_Int32 index)
    {
        return static_cast<OpcUa_ReadResponse*>(m_record.get())->Results[index].Value;
    }

    void addTo(Conversation& conversation, const std::string& name)
    {
        conversation.add(name, m_layout, m_record.get());
    }

private:
    const OpcUa_RecordLayout& m_layout;
    Record m_record;
};

TEST(Dissector, shows_values_of_every_type_and_shape)
{
    Conversation conversation;
    for (OpcUa_Byte type = OpcUaType_Boolean; type <= OpcUaType_DiagnosticInfo; ++type) {
        for (OpcUa_Byte shape = 0; shape <= OpcUa_VariantArrayType_Matrix; ++shape) {
            constexpr OpcUa_Int32 count = 8;
            Answer answer(count);
            MessageFiller filler(type);
            for (OpcUa_Int32 i = 0; i < count; ++i) {
                filler.fillVariant(answer.value(i), type, shape);
            }
            answer.addTo(conversation,
                         "type " + std::to_string(type) + " shape " + std::to_string(shape));
        }
    }
    conversation.expectSameInAnalyser();
}

TEST(Dissector, shows_the_body_of_every_structure)
{
    Conversation conversation;
    for (const OpcUa_RecordLayout* layout : structureLayouts()) {
        constexpr OpcUa_Int32 count = 3;
        Answer answer(count);
        for (OpcUa_Int32 i = 0; i < count; ++i) {
            OpcUa_Variant& value = answer.value(i);
            auto* const object = static_cast<OpcUa_ExtensionObject*>(
                OpcUa_Memory_Alloc(sizeof(OpcUa_ExtensionObject)));
            OpcUa_ExtensionObject_Initialize(object);
            MessageFiller(100 * static_cast<OpcUa_UInt32>(i) + 1)
                .fillExtensionObject(*object, *layout);
            value.Datatype = OpcUaType_ExtensionObject;
            value.Value.ExtensionObject = object;
        }
        answer.addTo(conversation, layout->Type->TypeName);
    }
    conversation.expectSameInAnalyser();
}

TEST(Dissector, shows_messages_as_they_are_initialised)
{
    Conversation conversation;
    for (const OpcUa_RecordLayout* layout : messageLayouts()) {
        Record record(*layout);
        conversation.add(layout->Type->TypeName, *layout, record.get());
    }
    conversation.expectSameInAnalyser();
}

TEST(Dissector, shows_a_message_of_several_chunks)
{
    const OpcUa_RecordLayout& layout = messageLayout("BrowseResponse");
    Record record(layout);
    MessageFiller(3).fillRecord(layout, record.get());
    const Bytes message = encodedMessage(layout, record.get());
    const std::size_t largest = message.size() / 2 - 5;
    CaptureFile capture;
    capture.add(message, largest);
    std::vector<DissectedPacket> packets = dissected(capture);
    ASSERT_EQ(packets.size(), 3u);
    for (OpcUa_UInt32 i = 0; i < 2; ++i) {
        DissectorLines header;
        header.addChunkHeader('C', chunkHeaderSize + largest, i + 1, 1);
        EXPECT_EQ(packets[i], header.lines());
    }
    // Lines about the pieces are the analyser's own.
    std::erase_if(packets[2], [](const std::string& line) {
        return line.find("opcua.fragment") != std::string::npos ||
               line.find("opcua.reassembled") != std::string::npos;
    });
    DissectorLines lines;
    lines.addChunkHeader('F', chunkHeaderSize + message.size() - 2 * largest, 3, 1);
    lines.addMessage(layout, record.get());
    EXPECT_EQ(packets[2], lines.lines());
}

/// The lines put down by hand, so that what the other tests expect isn't only what our code says.
TEST(Dissector, shows_a_request_as_it_was_written_by_hand)
{
    const OpcUa_RecordLayout& layout = messageLayout("GetEndpointsRequest");
    Record record(layout);
    auto& request = *static_cast<OpcUa_GetEndpointsRequest*>(record.get());
    request.RequestHeader.AuthenticationToken.Identifier.Numeric = 1234;
    request.RequestHeader.Timestamp = OpcUa_DateTime_FromTicks(132000000000000001);
    request.RequestHeader.RequestHandle = 77;
    request.RequestHeader.ReturnDiagnostics = 0x201;
    request.RequestHeader.TimeoutHint = 60000;
    ASSERT_EQ(OpcUa_String_AttachCopy(&request.EndpointUrl, "opc.tcp://host:4840"), OpcUa_Good);
    request.NoOfLocaleIds = 1;
    request.LocaleIds =
        static_cast<OpcUa_String*>(OpcUa_Memory_AllocZeroed(1, sizeof(OpcUa_String)));
    ASSERT_EQ(OpcUa_String_AttachCopy(request.LocaleIds, "en"), OpcUa_Good);
    request.NoOfProfileUris = -1;
    CaptureFile capture;
    capture.add(encodedMessage(layout, record.get()));
    EXPECT_THAT(
        dissected(capture).at(0),
        testing::ElementsAre(
            "proto opcua", "  opcua.transport.type=MSG", "  opcua.transport.chunk=F",
            "  opcua.transport.size=96", "  opcua.transport.scid=7", "  opcua.security.tokenid=3",
            "  opcua.security.seq=1", "  opcua.security.rqid=1",
            "  OpcUa Service : Encodeable Object", "    TypeId : ExpandedNodeId",
            "      opcua.servicenodeid.encodingmask=0x01", "      opcua.servicenodeid.nsid=0",
            "      opcua.servicenodeid.numeric=428", "    GetEndpointsRequest",
            "      RequestHeader: RequestHeader", "        AuthenticationToken: NodeId",
            "          opcua.nodeid.encodingmask=0x01", "          opcua.nodeid.nsindex=0",
            "          opcua.nodeid.numeric=1234",
            "        opcua.Timestamp=Apr 17, 2019 18:40:00.000000100 UTC",
            "        opcua.RequestHandle=77", "        opcua.returndiag=0x00000201",
            "          opcua.returndiag.servicelevel.symbolicid=1",
            "          opcua.returndiag.servicelevel.localizedtext=0",
            "          opcua.returndiag.servicelevel.additionalinfo=0",
            "          opcua.returndiag.servicelevel.innerstatuscode=0",
            "          opcua.returndiag.servicelevel.innerdiagnostics=0",
            "          opcua.returndiag.operationlevel.symbolicid=0",
            "          opcua.returndiag.operationlevel.localizedtext=0",
            "          opcua.returndiag.operationlevel.additionalinfo=0",
            "          opcua.returndiag.operationlevel.innerstatuscode=0",
            "          opcua.returndiag.operationlevel.innerdiagnostics=1",
            "        opcua.AuditEntryId=[OpcUa Null String]", "        opcua.TimeoutHint=60000",
            "        AdditionalHeader: ExtensionObject", "          TypeId: ExpandedNodeId",
            "            opcua.expandednodeid.mask=0x00",
            "              opcua.nodeid.encodingmask=0x00",
            "              opcua.expandednodeid.has_server_index=0",
            "              opcua.expandednodeid.has_namespace_uri=0",
            "            opcua.nodeid.numeric=0", "          opcua.extobj.mask=0x00",
            "            opcua.extobj.has_binary_body=0", "            opcua.extobj.has_xml_body=0",
            "      opcua.EndpointUrl=opc.tcp://host:4840", "      LocaleIds: Array of String",
            "        opcua.variant.ArraySize=1", "        opcua.LocaleIds=en",
            "      ProfileUris: Array of String", "        opcua.variant.ArraySize=-1"));
}

TEST(Dissector, complains_about_a_message_that_was_cut)
{
    const OpcUa_RecordLayout& layout = messageLayout("GetEndpointsRequest");
    Record record(layout);
    Bytes message = encodedMessage(layout, record.get());
    message.pop_back();
    CaptureFile capture;
    capture.add(message);
    EXPECT_THAT(dissected(capture).at(0), testing::Contains("proto _ws.malformed"));
}

} // namespace
