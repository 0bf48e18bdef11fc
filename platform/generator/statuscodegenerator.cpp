// Turns the list of status codes (lines "Name 0xCODE") into a header with one constant per code and
// a table sorted by code. Runs in the build: statuscodegenerator <list> <header>.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

struct Row
{
    std::string name;
    std::uint32_t code;
};

std::vector<Row> readRows(std::istream& input)
{
    std::vector<Row> rows;
    std::string name;
    std::string code;
    while (input >> name >> code) {
        rows.push_back({name, static_cast<std::uint32_t>(std::stoul(code, nullptr, 16))});
    }
    return rows;
}

std::string hex(std::uint32_t code)
{
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", code);
    return text;
}

void writeHeader(std::ostream& output, std::vector<Row> rows)
{
    output << "// Written by statuscodegenerator from statuscodes.txt.\n"
              "#pragma once\n\n"
              "#include \"platform/types.h\"\n\n"
              "#include <array>\n\n";
    for (const Row& row : rows) {
        output << "inline constexpr OpcUa_StatusCode OpcUa_" << row.name << " = " << hex(row.code)
               << "u;\n";
    }

    std::ranges::sort(rows, {}, &Row::code);
    output << "\n/// One status code of the standard with its name.\n"
              "struct OpcUa_StatusCodeName\n{\n"
              "    OpcUa_StatusCode code;\n"
              "    const char* name;\n"
              "};\n\n"
              "/// All status codes, sorted by code for a binary search.\n"
              "inline constexpr std::array<OpcUa_StatusCodeName, "
           << rows.size() << "> OpcUa_StatusCodeNames = {{\n";
    for (const Row& row : rows) {
        output << "    {OpcUa_" << row.name << ", \"" << row.name << "\"},\n";
    }
    output << "}};\n";
}

int generate(const char* listName, const char* headerName)
{
    std::ifstream input(listName);
    const std::vector<Row> rows = readRows(input);
    const auto sameCode = [](const Row& left, const Row& right) { return left.code == right.code; };
    std::vector<Row> sorted = rows;
    std::ranges::sort(sorted, {}, &Row::code);
    if (rows.empty() || std::ranges::adjacent_find(sorted, sameCode) != sorted.end()) {
        std::cerr << listName << ": no rows, or a code that stands twice\n";
        return 1;
    }

    std::ofstream output(headerName);
    writeHeader(output, rows);
    return output.flush() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::cerr << "usage: statuscodegenerator <list> <header>\n";
        return 2;
    }
    try {
        return generate(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
}
