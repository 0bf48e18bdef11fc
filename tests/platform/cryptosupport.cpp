#include "tests/platform/cryptosupport.h"

#include <gtest/gtest.h>
#include <openssl/err.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

unsigned digitValue(char digit)
{
    const std::string_view digits = "0123456789abcdef";
    return static_cast<unsigned>(digits.find(digit));
}

std::string uniqueFolder()
{
    std::random_device random;
    return (std::filesystem::temp_directory_path() /
            ("zandrel-" + std::to_string(random()) + std::to_string(random())))
        .string();
}

} // namespace

Bytes fromHex(std::string_view digits)
{
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(
            static_cast<OpcUa_Byte>(digitValue(digits[i]) * 16 + digitValue(digits[i + 1])));
    }
    return bytes;
}

std::string toHex(const Bytes& bytes)
{
    std::string digits;
    for (const OpcUa_Byte byte : bytes) {
        digits += "0123456789abcdef"[byte >> 4];
        digits += "0123456789abcdef"[byte & 15];
    }
    return digits;
}

Bytes fromText(std::string_view text)
{
    return {text.begin(), text.end()};
}

Bytes pattern(std::size_t count, unsigned start)
{
    Bytes bytes(count);
    unsigned value = start;
    std::generate(bytes.begin(), bytes.end(), [&value] {
        value = value * 1103515245u + 12345u;
        return static_cast<OpcUa_Byte>(value >> 16);
    });
    return bytes;
}

OpcUa_CryptoBytes over(const Bytes& bytes)
{
    return {static_cast<OpcUa_Int32>(bytes.size()), const_cast<OpcUa_Byte*>(bytes.data())};
}

OpcUa_Key keyOver(OpcUa_UInt32 type, const Bytes& bytes)
{
    return {type, over(bytes)};
}

void cutTo(Bytes& bytes, OpcUa_Int32 length)
{
    ASSERT_GE(length, 0);
    ASSERT_LE(static_cast<std::size_t>(length), bytes.size());
    bytes.resize(static_cast<std::size_t>(length));
}

TestFolder::TestFolder()
    : m_path(uniqueFolder())
{
    std::filesystem::create_directory(m_path);
}

TestFolder::~TestFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::vector<std::string> TestFolder::names() const
{
    std::vector<std::string> list;
    for (const auto& entry : std::filesystem::directory_iterator(m_path)) {
        list.push_back(entry.path().filename().string());
    }
    std::sort(list.begin(), list.end());
    return list;
}

void TestFolder::write(const std::string& name, const Bytes& bytes) const
{
    std::ofstream file(path(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush().good());
}

Bytes TestFolder::read(const std::string& name) const
{
    std::ifstream file(path(name), std::ios::binary);
    EXPECT_TRUE(file.good()) << name;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TestFolder::openssl(const std::string& arguments) const
{
    const std::string command =
        "cd '" + m_path + "' && openssl " + arguments + " </dev/null >openssl.log 2>&1";
    // The arguments are the test's own.
    return std::system(command.c_str()) == 0; // NOLINT(cert-env33-c): the program is on the path
}

void expectEmptyErrorQueue()
{
    EXPECT_EQ(ERR_peek_error(), 0u);
}
