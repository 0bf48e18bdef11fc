#pragma once

#include "platform/cryptotypes.h"

#include <string>
#include <string_view>
#include <vector>

// What the tests of the crypto bindings share.

using Bytes = std::vector<OpcUa_Byte>;

/// The bytes that hexadecimal digits stand for.
[[nodiscard]] Bytes fromHex(std::string_view digits);

/// Bytes as lower-case hexadecimal digits.
[[nodiscard]] std::string toHex(const Bytes& bytes);

/// The characters of a text as bytes.
[[nodiscard]] Bytes fromText(std::string_view text);

/// `count` bytes that differ from their neighbours and from those of another start.
[[nodiscard]] Bytes pattern(std::size_t count, unsigned start = 1);

/// A record over bytes that live elsewhere. A constant is only read through it.
[[nodiscard]] OpcUa_CryptoBytes over(const Bytes& bytes);

/// A key over bytes that live elsewhere.
[[nodiscard]] OpcUa_Key keyOver(OpcUa_UInt32 type, const Bytes& bytes);

/// Cuts a buffer to the length that a record over it got.
void cutTo(Bytes& bytes, OpcUa_Int32 length);

/// A folder with files that is removed with the object.
class TestFolder
{
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// The path of a file in the folder.
    [[nodiscard]] std::string path(const std::string& name) const { return m_path + "/" + name; }
    /// The names of all files, sorted.
    [[nodiscard]] std::vector<std::string> names() const;

    void write(const std::string& name, const Bytes& bytes) const;
    [[nodiscard]] Bytes read(const std::string& name) const;

    /// Runs the openssl program in the folder, without input; whether it ended well.
    [[nodiscard]] bool openssl(const std::string& arguments) const;

private:
    std::string m_path;
};

/// Expects OpenSSL's error queue to be empty before and after a test.
void expectEmptyErrorQueue();
