// Turns the lists of encodeable types and enumerations into code: one header for each type with its
// record, one for all enumerations, one that gathers them, and one source with the layouts of the
// records and the rows of their table. Runs in the build: typegenerator <types> <enumerations>
// <folder>. A file whose text doesn't change isn't touched, so that nothing is compiled in vain.

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// A line of a list with the lines that are indented below it, each cut into words.
struct Item
{
    std::vector<std::string> words;
    std::vector<std::vector<std::string>> lines;
};

struct Field
{
    std::string name;
    std::string type;
    bool isArray;
};

struct Type
{
    std::string name;
    std::uint32_t ids[3]; ///< Of the data type, its binary and its XML encoding.
    std::vector<Field> fields;
};

struct Value
{
    std::string name;
    std::int32_t number;
};

struct Enumeration
{
    std::string name;
    std::vector<Value> values;
};

struct Model
{
    std::vector<Type> types;
    std::vector<Enumeration> enumerations;
};

constexpr std::string_view builtInTypes[] = {
    "Boolean",       "SByte",           "Byte",           "Int16",      "UInt16",
    "Int32",         "UInt32",          "Int64",          "UInt64",     "Float",
    "Double",        "String",          "DateTime",       "Guid",       "ByteString",
    "XmlElement",    "NodeId",          "ExpandedNodeId", "StatusCode", "QualifiedName",
    "LocalizedText", "ExtensionObject", "DataValue",      "Variant",    "DiagnosticInfo"};

constexpr std::string_view operations[] = {"Initialize", "Clear",   "GetSize", "Encode",
                                           "Decode",     "Compare", "Copy",    "CopyTo"};

constexpr std::size_t columns = 100;

[[noreturn]] void fail(const std::string& message)
{
    throw std::runtime_error(message);
}

template <typename... Pieces>
std::string joined(const Pieces&... pieces)
{
    std::string text;
    (text.append(pieces), ...);
    return text;
}

template <typename Range>
bool hasName(const Range& items, const std::string& name)
{
    return std::ranges::any_of(items, [&](const auto& item) { return item.name == name; });
}

bool isBuiltIn(const std::string& name)
{
    return std::ranges::find(builtInTypes, name) != std::end(builtInTypes);
}

// Reading.

std::vector<std::string> wordsOf(const std::string& line)
{
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<Item> readItems(const std::string& fileName)
{
    std::ifstream input(fileName);
    std::vector<Item> items;
    for (std::string line; std::getline(input, line);) {
        std::vector<std::string> words = wordsOf(line);
        if (words.empty() || words[0][0] == '#') {
            continue;
        }
        if (line[0] != ' ') {
            items.push_back({words, {}});
        } else if (items.empty() || words.size() != 2) {
            fail(joined(fileName, ": ", line));
        } else {
            items.back().lines.push_back(words);
        }
    }
    return items;
}

Field fieldOf(const std::vector<std::string>& words)
{
    const bool isArray = words[1].ends_with("[]");
    return {words[0], isArray ? words[1].substr(0, words[1].size() - 2) : words[1], isArray};
}

std::uint32_t idOf(const std::string& word)
{
    return static_cast<std::uint32_t>(std::stoul(word));
}

std::vector<Type> readTypes(const std::string& fileName)
{
    std::vector<Type> types;
    for (const Item& item : readItems(fileName)) {
        const auto& words = item.words;
        if (words.size() != 4 || hasName(types, words[0]) || item.lines.empty()) {
            fail(fileName + ": " + words[0]);
        }
        types.push_back({words[0], {idOf(words[1]), idOf(words[2]), idOf(words[3])}, {}});
        std::ranges::transform(item.lines, std::back_inserter(types.back().fields), fieldOf);
    }
    return types;
}

std::vector<Enumeration> readEnumerations(const std::string& fileName)
{
    std::vector<Enumeration> enumerations;
    for (const Item& item : readItems(fileName)) {
        if (item.words.size() != 1 || hasName(enumerations, item.words[0]) || item.lines.empty()) {
            fail(fileName + ": " + item.words[0]);
        }
        enumerations.push_back({item.words[0], {}});
        for (const auto& words : item.lines) {
            enumerations.back().values.push_back({words[0], std::stoi(words[1])});
        }
    }
    return enumerations;
}

void check(const Model& model)
{
    for (const Type& type : model.types) {
        for (const Field& field : type.fields) {
            if (!isBuiltIn(field.type) && !hasName(model.enumerations, field.type) &&
                !hasName(model.types, field.type)) {
                fail("no type " + field.type + " for " + type.name + "." + field.name);
            }
        }
    }
}

// Order: a type stands behind those that its fields hold.

void appendWithFields(const Model& model, const Type& type, std::set<std::string>& open,
                      std::vector<Type>& sorted)
{
    if (hasName(sorted, type.name)) {
        return;
    }
    if (!open.insert(type.name).second) {
        fail(type.name + " holds itself");
    }
    for (const Field& field : type.fields) {
        const auto nested = std::ranges::find(model.types, field.type, &Type::name);
        if (nested != model.types.end()) {
            appendWithFields(model, *nested, open, sorted);
        }
    }
    sorted.push_back(type);
}

std::vector<Type> sortedByUse(const Model& model)
{
    std::vector<Type> sorted;
    std::set<std::string> open;
    for (const Type& type : model.types) {
        appendWithFields(model, type, open, sorted);
    }
    return sorted;
}

// Writing.

std::string lowered(std::string text)
{
    std::ranges::transform(text, text.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    return text;
}

std::string headerOf(const std::string& type)
{
    return "stack/opcua_" + lowered(type) + ".h";
}

/// One declaration on a line or, where that gets too long, on two.
std::string declaration(const std::string& left, const std::string& right)
{
    const bool fits = left.size() + 1 + right.size() <= columns;
    return left + (fits ? " " : "\n    ") + right + '\n';
}

/// A definition on a line or, where that gets too long, on two or three.
std::string definition(const std::string& type, const std::string& name, const std::string& value)
{
    const bool fits = type.size() + name.size() + 3 <= columns;
    return fits ? declaration(type + " " + name + " =", value)
                : type + "\n    " + name + " =\n        " + value + '\n';
}

const std::string banner = "// Written by typegenerator from types.txt and enumerations.txt.\n";

std::string includesOf(const Model& model, const Type& type)
{
    std::set<std::string> headers = {"platform/types.h", "stack/opcua_encodeable.h"};
    for (const Field& field : type.fields) {
        if (hasName(model.enumerations, field.type)) {
            headers.insert("stack/opcua_enumerations.h");
        } else if (!isBuiltIn(field.type) ||
                   std::ranges::find(builtInTypes, field.type) - std::begin(builtInTypes) >= 11) {
            headers.insert(headerOf(field.type == "XmlElement" ? "ByteString" : field.type));
        }
    }
    headers.erase(headerOf("StatusCode"));
    std::string text;
    for (const std::string& header : headers) {
        text += "#include \"" + header + "\"\n";
    }
    return text;
}

std::string recordOf(const Type& type)
{
    std::string text = "struct OpcUa_" + type.name + "\n{\n";
    for (const Field& field : type.fields) {
        if (field.isArray) {
            text += "    OpcUa_Int32 NoOf" + field.name + ";\n";
        }
        text += "    OpcUa_" + field.type + (field.isArray ? "* " : " ") + field.name + ";\n";
    }
    return text + "};\n";
}

std::string operationsOf(const std::string& record)
{
    std::string text;
    for (const std::string_view operation : operations) {
        text += declaration(joined("inline constexpr auto& ", record, "_", operation, " ="),
                            joined("OpcUa_Encodeable_", operation, "<", record, ">;"));
    }
    return text;
}

std::string typeHeader(const Model& model, const Type& type)
{
    const std::string record = "OpcUa_" + type.name;
    const std::string row = record + "_EncodeableType";
    return banner + "#pragma once\n\n" + includesOf(model, type) + "\n/// The record " + type.name +
           ": data type " + std::to_string(type.ids[0]) + ", binary encoding " +
           std::to_string(type.ids[1]) + ", XML encoding " + std::to_string(type.ids[2]) + ".\n" +
           recordOf(type) + "\n/// Its row in the table of encodeable types.\n" +
           declaration("extern const OpcUa_EncodeableType", row + ";") + "\ntemplate <>\n" +
           definition("inline constexpr const OpcUa_EncodeableType*",
                      "OpcUa_EncodeableTypeOf<" + record + ">", "&" + row + ";") +
           "\n" + operationsOf(record);
}

std::string enumerationsHeader(const Model& model)
{
    std::string text = banner + "#pragma once\n\n#include \"platform/types.h\"\n"
                                "#include \"stack/opcua_enumeratedtype.h\"\n";
    for (const Enumeration& enumeration : model.enumerations) {
        const std::string name = "OpcUa_" + enumeration.name;
        text += "\nenum " + name + " : OpcUa_Int32\n{\n";
        for (const Value& value : enumeration.values) {
            text += "    " + name + "_" + value.name + " = " + std::to_string(value.number) + ",\n";
        }
        text += "};\nextern const OpcUa_EnumeratedType " + name + "_EnumeratedType;\n";
    }
    return text;
}

std::string gatheringHeader(const Model& model)
{
    std::set<std::string> headers = {"stack/opcua_enumerations.h"};
    for (const Type& type : model.types) {
        headers.insert(headerOf(type.name));
    }
    std::string text = banner + "#pragma once\n\n";
    for (const std::string& header : headers) {
        text += "#include \"" + header + "\"\n";
    }
    return text;
}

std::string enumerationTable(const Enumeration& enumeration)
{
    const std::string name = "OpcUa_" + enumeration.name;
    std::string text = "constexpr OpcUa_EnumeratedValue " + enumeration.name + "_Values[] = {\n";
    for (const Value& value : enumeration.values) {
        text += "    {\"" + value.name + "\", " + name + "_" + value.name + "},\n";
    }
    return text + "    {nullptr, 0},\n};\n";
}

/// What stands for the type of a field in the generated source.
std::string typeArgument(const Model& model, const std::string& type)
{
    if (isBuiltIn(type)) {
        return "OpcUaType_" + type;
    }
    return hasName(model.enumerations, type) ? "OpcUa_" + type + "_EnumeratedType"
                                             : type + "_Layout";
}

/// A call with its arguments on as few lines as they need, aligned behind the bracket.
std::string call(const std::string& function, const std::vector<std::string>& arguments,
                 const std::string& closing)
{
    const std::string margin(function.size() + 1 - (function.rfind('\n') + 1), ' ');
    std::string text = function + "(";
    std::size_t column = margin.size();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool isLast = i + 1 == arguments.size();
        const std::string argument = arguments[i] + (isLast ? closing : ",");
        const bool fits = column + (i > 0 ? 1 : 0) + argument.size() <= columns;
        text += i == 0 ? "" : (fits ? " " : "\n" + margin);
        column = (fits ? column + (i > 0 ? 1 : 0) : margin.size()) + argument.size();
        text += argument;
    }
    return text + '\n';
}

std::string fieldOf(const Model& model, const std::string& record, const Field& field)
{
    const auto offsetOf = [&](const std::string& member) {
        return "offsetof(" + record + ", " + member + ")";
    };
    std::vector<std::string> arguments = {'"' + field.name + '"', offsetOf(field.name)};
    if (field.isArray) {
        arguments.push_back(offsetOf("NoOf" + field.name));
    }
    arguments.push_back(typeArgument(model, field.type));
    return call(field.isArray ? "    OpcUa_Field_Array" : "    OpcUa_Field_Value", arguments, "),");
}

std::string layoutOf(const Model& model, const Type& type)
{
    const std::string record = "OpcUa_" + type.name;
    std::string text = "constexpr OpcUa_RecordField " + type.name + "_Fields[] = {\n";
    for (const Field& field : type.fields) {
        text += fieldOf(model, record, field);
    }
    return text + "};\nconstexpr OpcUa_RecordLayout " + type.name + "_Layout =\n" +
           call("    OpcUa_RecordLayout_Make",
                {record + "_EncodeableType", type.name + "_Fields", "sizeof(" + record + ")"},
                ");") +
           "\n";
}

std::string rowOf(const Type& type)
{
    std::vector<std::string> arguments = {'"' + type.name + '"'};
    for (const std::uint32_t id : type.ids) {
        arguments.push_back(std::to_string(id));
    }
    return "constexpr OpcUa_EncodeableType OpcUa_" + type.name + "_EncodeableType =\n" +
           call("    OpcUa_RecordLayout_MakeType<" + type.name + "_Layout>", arguments, ");");
}

std::string listOf(const Model& model, const std::string& start, const std::string& prefix,
                   const std::string& suffix)
{
    std::string text = start + "[] = {\n";
    for (const Type& type : model.types) {
        text += joined("    &", prefix, type.name, suffix, ",\n");
    }
    return text + "    nullptr,\n};\n";
}

std::string source(const Model& model)
{
    std::string text = banner + "#include \"stack/opcua_types.h\"\n\n"
                                "#include \"stack/opcua_encodeabletypetable.h\"\n"
                                "#include \"stack/opcua_recordlayout.h\"\n\n"
                                "#include <cstddef>\n\nnamespace {\n\n";
    for (const Enumeration& enumeration : model.enumerations) {
        text += enumerationTable(enumeration) + "\n";
    }
    text += "} // namespace\n\n";
    for (const Enumeration& enumeration : model.enumerations) {
        const std::string& name = enumeration.name;
        text +=
            declaration(joined("constexpr OpcUa_EnumeratedType OpcUa_", name, "_EnumeratedType ="),
                        joined("{\"", name, "\", ", name, "_Values};"));
    }
    text += "\nnamespace {\n\n";
    for (const Type& type : sortedByUse(model)) {
        text += layoutOf(model, type);
    }
    text += "} // namespace\n\n";
    for (const Type& type : model.types) {
        text += rowOf(type);
    }
    return text + "\n" +
           listOf(model, "const OpcUa_EncodeableType* const OpcUa_KnownEncodeableTypes", "OpcUa_",
                  "_EncodeableType") +
           "\n" +
           listOf(model, "const OpcUa_RecordLayout* const OpcUa_RecordLayouts", "", "_Layout");
}

void write(const std::filesystem::path& fileName, const std::string& text)
{
    std::ifstream old(fileName, std::ios::binary);
    if (old && std::string(std::istreambuf_iterator<char>(old), {}) == text) {
        return;
    }
    old.close();
    std::ofstream output(fileName, std::ios::binary);
    output << text;
    if (!output.flush()) {
        fail("can't write " + fileName.string());
    }
}

void generate(const std::string& typesName, const std::string& enumerationsName,
              const std::filesystem::path& folder)
{
    const Model model = {readTypes(typesName), readEnumerations(enumerationsName)};
    if (model.types.empty() || model.enumerations.empty()) {
        fail("nothing to generate");
    }
    check(model);
    for (const Type& type : model.types) {
        write(folder / headerOf(type.name), typeHeader(model, type));
    }
    write(folder / "stack/opcua_enumerations.h", enumerationsHeader(model));
    write(folder / "stack/opcua_types.h", gatheringHeader(model));
    write(folder / "stack/opcua_types.cpp", source(model));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::cerr << "usage: typegenerator <types> <enumerations> <folder>\n";
        return 2;
    }
    try {
        generate(argv[1], argv[2], argv[3]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "typegenerator: " << error.what() << '\n';
        return 1;
    }
}
