// The examples of the standard, byte for byte in both directions.

#include "platform/status.h"
#include "stack/opcua_guid.h"
#include "stack/opcua_nodeid.h"
#include "tests/stack/builtinsamples.h"
#include "tests/stack/encodingsupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

namespace {

struct Example
{
    std::string type;
    std::string value;
    std::string bytes;
};

std::string trimmed(const std::string& text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    const std::size_t end = text.find_last_not_of(' ');
    return begin == std::string::npos ? "" : text.substr(begin, end - begin + 1);
}

std::vector<Example> readExamples()
{
    std::ifstream file(ENCODING_EXAMPLES);
    std::vector<Example> examples;
    for (std::string line; std::getline(file, line);) {
        const std::size_t first = line.find('|');
        const std::size_t last = line.rfind('|');
        if (line.front() != '#' && first < last) {
            examples.push_back({trimmed(line.substr(0, first)),
                                trimmed(line.substr(first + 1, last - first - 1)),
                                trimmed(line.substr(last + 1))});
        }
    }
    return examples;
}

/// "ns=5;i=1025" and its like.
void parseNodeId(const std::string& text, OpcUa_NodeId& nodeId)
{
    std::string rest = text;
    if (rest.rfind("ns=", 0) == 0) {
        nodeId.NamespaceIndex = static_cast<OpcUa_UInt16>(std::stoul(rest.substr(3)));
        rest = rest.substr(rest.find(';') + 1);
    }
    if (rest.rfind("i=", 0) == 0) {
        nodeId.Identifier.Numeric = static_cast<OpcUa_UInt32>(std::stoul(rest.substr(2)));
    } else {
        nodeId.IdentifierType = OpcUa_IdentifierType_String;
        nodeId.Identifier.String = {};
        ASSERT_EQ(OpcUa_String_AttachCopy(&nodeId.Identifier.String, rest.substr(2).c_str()),
                  OpcUa_Good);
    }
}

using Parser = void (*)(const std::string& text, void* value);

const std::map<std::string, std::pair<OpcUa_Byte, Parser>>& parsers()
{
    static const std::map<std::string, std::pair<OpcUa_Byte, Parser>> map = {
        {"Boolean",
         {OpcUaType_Boolean,
          [](const std::string& text, void* value) {
              *static_cast<OpcUa_Boolean*>(value) = text == "true" ? OpcUa_True : OpcUa_False;
          }}},
        {"Int32",
         {OpcUaType_Int32,
          [](const std::string& text, void* value) {
              *static_cast<OpcUa_Int32*>(value) = std::stoi(text);
          }}},
        {"Float",
         {OpcUaType_Float,
          [](const std::string& text, void* value) {
              *static_cast<OpcUa_Float*>(value) = std::stof(text);
          }}},
        {"String",
         {OpcUaType_String,
          [](const std::string& text, void* value) {
              ASSERT_EQ(OpcUa_String_AttachCopy(static_cast<OpcUa_String*>(value), text.c_str()),
                        OpcUa_Good);
          }}},
        {"Guid",
         {OpcUaType_Guid,
          [](const std::string& text, void* value) {
              ASSERT_EQ(OpcUa_Guid_FromString(text.c_str(), static_cast<OpcUa_Guid*>(value)),
                        OpcUa_Good);
          }}},
        {"NodeId",
         {OpcUaType_NodeId,
          [](const std::string& text, void* value) {
              parseNodeId(text, *static_cast<OpcUa_NodeId*>(value));
          }}},
    };
    return map;
}

TEST(EncodingExamples, each_is_written_and_read_byte_for_byte)
{
    const std::vector<Example> examples = readExamples();
    ASSERT_EQ(examples.size(), 8u);
    TestContext context;
    for (const Example& example : examples) {
        SCOPED_TRACE(example.type + " " + example.value);
        const auto& [type, parse] = parsers().at(example.type);
        BuiltInValue value(type);
        parse(example.value, value.get());
        EXPECT_EQ(toHex(encode(context, type, value.get())), example.bytes);
        BuiltInValue read(type);
        EXPECT_EQ(decode(context, fromHex(example.bytes), type, read.get()), OpcUa_Good);
        EXPECT_EQ(OpcUa_BuiltInType_GetTraits(type)->Compare(read.get(), value.get()), 0);
    }
}

} // namespace
