// Node ids, guids, dates and status codes as texts and back. Each measurement stands beside its floor:
// the same text by the C library's means, or a loop written by hand over the same characters.

#include "base/uabytestring.h"
#include "base/uadatetime.h"
#include "base/uaguid.h"
#include "base/uanodeid.h"
#include "base/uastatuscode.h"
#include "base/uastring.h"
#include "platform/statuscodes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

void check(benchmark::State& state, bool isRight)
{
    if (!isRight) {
        state.SkipWithError("wrong result");
    }
}

constexpr OpcUa_Guid guidRecord = {
    0x6B29FC40, 0xCA47, 0x1067, {0xB3, 0x1D, 0x00, 0xDD, 0x01, 0x06, 0x62, 0xDA}};
constexpr std::string_view guidText = "{6b29fc40-ca47-1067-b31d-00dd010662da}";
constexpr OpcUa_UInt16 index = 2;

// Printing ----------------------------------------------------------------------------------------

void printIdentifier(benchmark::State& state, const UaNodeId& nodeId, std::string_view expected)
{
    for (auto _ : state) {
        UaString text = nodeId.toString();
        benchmark::DoNotOptimize(text);
    }
    check(state, nodeId.toString().view() == expected);
}

/// The floor: snprintf into a buffer, without the block that a string lies in.
template <typename... Arguments>
void printFloor(benchmark::State& state, std::string_view expected, const char* format,
                Arguments... arguments)
{
    std::array<char, 256> text{};
    for (auto _ : state) {
        std::snprintf(text.data(), text.size(), format, arguments...);
        benchmark::DoNotOptimize(text);
        benchmark::ClobberMemory();
    }
    check(state, expected == text.data());
}

OpcUa_UInt32 numberOf(const benchmark::State& state)
{
    return static_cast<OpcUa_UInt32>(state.range(0));
}

std::string textOfLength(const benchmark::State& state)
{
    return std::string(static_cast<std::size_t>(state.range(0)), 'x');
}

void NodeId_print_number(benchmark::State& state)
{
    const OpcUa_UInt32 number = numberOf(state);
    printIdentifier(state, UaNodeId(number, index), std::to_string(number));
}
BENCHMARK(NodeId_print_number)->Arg(85)->Arg(4294967295);

void NodeId_print_number_floor_snprintf(benchmark::State& state)
{
    printFloor(state, std::to_string(numberOf(state)), "%u", numberOf(state));
}
BENCHMARK(NodeId_print_number_floor_snprintf)->Arg(85)->Arg(4294967295);

void NodeId_print_string(benchmark::State& state)
{
    const std::string text = textOfLength(state);
    printIdentifier(state, UaNodeId(UaString(text.c_str()), index), text);
}
BENCHMARK(NodeId_print_string)->Arg(16)->Arg(200);

void NodeId_print_string_floor_snprintf(benchmark::State& state)
{
    const std::string text = textOfLength(state);
    printFloor(state, text, "%s", text.c_str());
}
BENCHMARK(NodeId_print_string_floor_snprintf)->Arg(16)->Arg(200);

void NodeId_print_guid(benchmark::State& state)
{
    printIdentifier(state, UaNodeId(UaGuid(guidRecord), index), guidText);
}
BENCHMARK(NodeId_print_guid);

void NodeId_print_guid_floor_snprintf(benchmark::State& state)
{
    const auto& rest = guidRecord.Data4;
    printFloor(state, guidText, "{%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x}",
               guidRecord.Data1, guidRecord.Data2, guidRecord.Data3, rest[0], rest[1], rest[2],
               rest[3], rest[4], rest[5], rest[6], rest[7]);
}
BENCHMARK(NodeId_print_guid_floor_snprintf);

void NodeId_print_xml_number(benchmark::State& state)
{
    const UaNodeId nodeId(numberOf(state), index);
    for (auto _ : state) {
        UaString text = nodeId.toXmlString();
        benchmark::DoNotOptimize(text);
    }
    check(state, nodeId.toXmlString().view() == "ns=2;i=" + std::to_string(numberOf(state)));
}
BENCHMARK(NodeId_print_xml_number)->Arg(85)->Arg(4294967295);

void NodeId_print_xml_number_floor_snprintf(benchmark::State& state)
{
    printFloor(state, "ns=2;i=" + std::to_string(numberOf(state)), "ns=%hu;i=%u", index,
               numberOf(state));
}
BENCHMARK(NodeId_print_xml_number_floor_snprintf)->Arg(85)->Arg(4294967295);

void DateTime_print(benchmark::State& state)
{
    const UaDateTime time(OpcUa_Int64{125963012967890000});
    for (auto _ : state) {
        UaString text = time.toString();
        benchmark::DoNotOptimize(text);
    }
    check(state, time.toString() == "2000-02-29T12:34:56.789Z");
}
BENCHMARK(DateTime_print);

void DateTime_print_floor_snprintf(benchmark::State& state)
{
    printFloor(state, "2000-02-29T12:34:56.789Z", "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", 2000, 2,
               29, 12, 34, 56, 789);
}
BENCHMARK(DateTime_print_floor_snprintf);

// Status codes ------------------------------------------------------------------------------------

/// Codes of the table in an order that no branch predictor learns.
std::vector<OpcUa_StatusCode> shuffledCodes()
{
    std::vector<OpcUa_StatusCode> codes;
    std::mt19937 random(7); // NOLINT(bugprone-random-generator-seed): the same order in each run
    for (int i = 0; i < 4096; ++i) {
        codes.push_back(OpcUa_StatusCodeNames[random() % OpcUa_StatusCodeNames.size()].code);
    }
    return codes;
}

std::vector<OpcUa_StatusCode> codesOf(const benchmark::State& state)
{
    return state.range(0) == 1 ? std::vector{OpcUa_BadOutOfRange} : shuffledCodes();
}

const char* nameByLowerBound(OpcUa_StatusCode code)
{
    const auto row = std::ranges::lower_bound(OpcUa_StatusCodeNames, code & 0xFFFF0000u, {},
                                              &OpcUa_StatusCodeName::code);
    return row != OpcUa_StatusCodeNames.end() && row->code == (code & 0xFFFF0000u) ? row->name
                                                                                   : nullptr;
}

void StatusCode_name(benchmark::State& state)
{
    const std::vector<OpcUa_StatusCode> codes = codesOf(state);
    std::size_t next = 0;
    for (auto _ : state) {
        UaString text = UaStatusCode::toString(codes[next]);
        benchmark::DoNotOptimize(text);
        next = next + 1 == codes.size() ? 0 : next + 1;
    }
    for (const OpcUa_StatusCode code : codes) {
        check(state, UaStatusCode::toString(code) == nameByLowerBound(code));
    }
}
BENCHMARK(StatusCode_name)->Arg(1)->Arg(4096);

/// The floor finds a pointer to the name alone. A single code is the best case for it, as the branches
/// of the search are then known in advance.
void StatusCode_name_floor_lower_bound(benchmark::State& state)
{
    const std::vector<OpcUa_StatusCode> codes = codesOf(state);
    std::size_t next = 0;
    for (auto _ : state) {
        const char* name = nameByLowerBound(codes[next]);
        benchmark::DoNotOptimize(name);
        next = next + 1 == codes.size() ? 0 : next + 1;
    }
}
BENCHMARK(StatusCode_name_floor_lower_bound)->Arg(1)->Arg(4096);

/// The same search, which hands the text out as a shared one.
void StatusCode_name_floor_lower_bound_shared(benchmark::State& state)
{
    std::vector<std::shared_ptr<const std::string>> texts;
    for (const OpcUa_StatusCodeName& row : OpcUa_StatusCodeNames) {
        texts.push_back(std::make_shared<const std::string>(row.name));
    }
    const std::vector<OpcUa_StatusCode> codes = codesOf(state);
    std::size_t next = 0;
    for (auto _ : state) {
        const auto row = std::ranges::lower_bound(OpcUa_StatusCodeNames, codes[next], {},
                                                  &OpcUa_StatusCodeName::code);
        std::shared_ptr<const std::string> text =
            texts[static_cast<std::size_t>(row - OpcUa_StatusCodeNames.begin())];
        benchmark::DoNotOptimize(text);
        next = next + 1 == codes.size() ? 0 : next + 1;
    }
}
BENCHMARK(StatusCode_name_floor_lower_bound_shared)->Arg(1)->Arg(4096);

// Reading -----------------------------------------------------------------------------------------

void readText(benchmark::State& state, const std::string& text, const UaNodeId& expected)
{
    const UaString source(text.c_str());
    for (auto _ : state) {
        UaNodeId nodeId = UaNodeId::fromXmlString(source);
        benchmark::DoNotOptimize(nodeId);
    }
    check(state, UaNodeId::fromXmlString(source) == expected);
}

/// The digits of a decimal number up to another character.
OpcUa_UInt32 readDigits(const char*& text)
{
    OpcUa_UInt64 number = 0;
    while (*text >= '0' && *text <= '9') {
        number = number * 10 + static_cast<OpcUa_UInt64>(*text++ - '0');
    }
    return static_cast<OpcUa_UInt32>(number);
}

/// Reads "ns=<index>;" and the two characters that pick the form.
OpcUa_UInt16 readPrefix(const char*& text)
{
    text += 3;
    const auto namespaceIndex = static_cast<OpcUa_UInt16>(readDigits(text));
    text += 3;
    return namespaceIndex;
}

void NodeId_read_number(benchmark::State& state)
{
    const OpcUa_UInt32 number = numberOf(state);
    readText(state, "ns=2;i=" + std::to_string(number), UaNodeId(number, index));
}
BENCHMARK(NodeId_read_number)->Arg(85)->Arg(4294967295);

/// The floor reads the characters without a check and makes the node id of what it read.
void NodeId_read_number_floor_loop(benchmark::State& state)
{
    const std::string text = "ns=2;i=" + std::to_string(numberOf(state));
    UaNodeId nodeId;
    for (auto _ : state) {
        const char* position = text.c_str();
        const OpcUa_UInt16 namespaceIndex = readPrefix(position);
        nodeId = UaNodeId(readDigits(position), namespaceIndex);
        benchmark::DoNotOptimize(nodeId);
    }
    check(state, nodeId == UaNodeId(numberOf(state), index));
}
BENCHMARK(NodeId_read_number_floor_loop)->Arg(85)->Arg(4294967295);

void NodeId_read_string(benchmark::State& state)
{
    const std::string text = textOfLength(state);
    readText(state, "ns=2;s=" + text, UaNodeId(UaString(text.c_str()), index));
}
BENCHMARK(NodeId_read_string)->Arg(16)->Arg(200)->Arg(10000);

void NodeId_read_string_floor_loop(benchmark::State& state)
{
    const std::string text = "ns=2;s=" + textOfLength(state);
    UaNodeId nodeId;
    for (auto _ : state) {
        const char* position = text.c_str();
        OpcUa_NodeId record{OpcUa_IdentifierType_String, readPrefix(position), {}};
        record.Identifier.String = {0, static_cast<OpcUa_UInt32>(std::strlen(position)),
                                    const_cast<char*>(position)};
        nodeId = UaNodeId(record);
        benchmark::DoNotOptimize(nodeId);
    }
    check(state, textOfLength(state) == nodeId.identifierString().view());
}
BENCHMARK(NodeId_read_string_floor_loop)->Arg(16)->Arg(200)->Arg(10000);

void NodeId_read_guid(benchmark::State& state)
{
    readText(state, "ns=2;g=" + std::string(guidText), UaNodeId(UaGuid(guidRecord), index));
}
BENCHMARK(NodeId_read_guid);

/// The value of a digit without a check.
OpcUa_UInt32 hexValue(char digit)
{
    return static_cast<OpcUa_UInt32>(digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10);
}

OpcUa_UInt32 readHex(const char*& text, int digits)
{
    OpcUa_UInt32 number = 0;
    for (int i = 0; i < digits; ++i) {
        number = number * 16 + hexValue(*text++);
    }
    return number;
}

OpcUa_Guid readGuid(const char* text)
{
    OpcUa_Guid guid;
    ++text;
    guid.Data1 = readHex(text, 8);
    ++text;
    guid.Data2 = static_cast<OpcUa_UInt16>(readHex(text, 4));
    ++text;
    guid.Data3 = static_cast<OpcUa_UInt16>(readHex(text, 4));
    ++text;
    for (std::size_t i = 0; i < sizeof guid.Data4; ++i) {
        text += i == 2 ? 1 : 0;
        guid.Data4[i] = static_cast<OpcUa_Byte>(readHex(text, 2));
    }
    return guid;
}

void NodeId_read_guid_floor_loop(benchmark::State& state)
{
    const std::string text = "ns=2;g=" + std::string(guidText);
    UaNodeId nodeId;
    for (auto _ : state) {
        const char* position = text.c_str();
        const OpcUa_UInt16 namespaceIndex = readPrefix(position);
        nodeId = UaNodeId(UaGuid(readGuid(position)), namespaceIndex);
        benchmark::DoNotOptimize(nodeId);
    }
    check(state, nodeId == UaNodeId(UaGuid(guidRecord), index));
}
BENCHMARK(NodeId_read_guid_floor_loop);

} // namespace
