#pragma once

#include "base/uaunistring.h"

#include <string>

/// A directory of its own for one test, removed with all that is in it.
class TemporaryDirectory
{
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    [[nodiscard]] const std::string& path() const { return m_path; }
    /// The path of something in it.
    [[nodiscard]] std::string file(const std::string& name) const { return m_path + "/" + name; }
    /// The same for the file engine.
    [[nodiscard]] UaUniString uniFile(const std::string& name) const { return file(name).c_str(); }

private:
    std::string m_path;
};

/// Makes or replaces a file; aborts the test program when that fails.
void writeBytes(const std::string& path, const std::string& bytes);

/// The bytes of a file; empty when it can't be read.
[[nodiscard]] std::string readBytes(const std::string& path);

/// What a command of the shell prints on both streams, and its exit status in the last line.
[[nodiscard]] std::string outputOf(const std::string& command);
