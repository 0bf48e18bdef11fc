#include "base/uaunistring.h"
#include "pki/opensslhandles.h"
#include "pki/uapkirsakeypair.h"
#include "tests/pki/errorqueue.h"
#include "tests/pki/memoryscan.h"
#include "tests/pki/temporarydirectory.h"

#include <openssl/rand.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// What must not get out: a key file is never open to others, and neither the pass phrase nor the key
// stays behind in memory.

namespace {

using KeySecretsTest = PkiTest;

mode_t modeOf(const std::string& path)
{
    struct stat state = {};
    EXPECT_EQ(stat(path.c_str(), &state), 0);
    return state.st_mode & 07777u;
}

TEST_F(KeySecretsTest, a_new_key_file_is_its_owners_alone_whatever_the_umask_is)
{
    const TemporaryDirectory directory;
    const UaPkiRSAKeyPair keyPair(512);
    for (const mode_t mask : {0u, 022u, 077u}) {
        const mode_t before = umask(mask);
        const std::string path = directory.file(std::to_string(mask));
        EXPECT_EQ(keyPair.toPEMFile(path.c_str(), nullptr), 0);
        umask(before);
        EXPECT_EQ(modeOf(path), 0600u) << mask;
    }
}

TEST_F(KeySecretsTest, a_replaced_file_keeps_its_mode_and_a_linked_one_its_place)
{
    const TemporaryDirectory directory;
    const UaPkiRSAKeyPair keyPair(512);
    writeBytes(directory.file("key"), "old");
    chmod(directory.file("key").c_str(), 0640);
    std::filesystem::create_symlink("key", directory.file("link"));
    EXPECT_EQ(keyPair.toPEMFile(directory.file("link").c_str(), nullptr), 0);
    EXPECT_EQ(modeOf(directory.file("key")), 0640u);
    EXPECT_TRUE(std::filesystem::is_symlink(directory.file("link")));
    EXPECT_NE(readBytes(directory.file("key")), "old");
}

/// Runs a command and gives back its system calls on files, one a line. Empty where processes can't be
/// traced.
std::string traceOf(const std::string& command, const TemporaryDirectory& directory)
{
    const std::string trace = directory.file("trace");
    // The leak checker can't work in a traced process.
    const std::string output =
        outputOf("ASAN_OPTIONS=detect_leaks=0 strace -f -qq -e trace=%file,fchmod,fchown -o " +
                 trace + " " + command + " </dev/null");
    if (output.find("ptrace") != std::string::npos) {
        return {};
    }
    EXPECT_NE(output.find("exit "), std::string::npos) << output;
    return readBytes(trace);
}

TEST_F(KeySecretsTest, no_system_call_opens_a_key_file_to_others)
{
    const TemporaryDirectory directory;
    const std::string folder = directory.file("folder");
    std::filesystem::create_directory(folder);
    std::istringstream lines(traceOf(KEY_WRITER " " + folder + "/key", directory));
    if (lines.peek() == std::istringstream::traits_type::eof()) {
        GTEST_SKIP() << "processes can't be traced here";
    }
    int created = 0;
    int placed = 0;
    for (std::string line; std::getline(lines, line);) {
        const bool isModeChange = line.find("chmod(") != std::string::npos;
        const bool isOurs = isModeChange || line.find(folder) != std::string::npos;
        if (isOurs && line.find("O_CREAT") != std::string::npos) {
            ++created;
            EXPECT_NE(line.find(", 0600)"), std::string::npos) << line;
            EXPECT_NE(line.find("O_EXCL"), std::string::npos) << line;
        }
        if (isModeChange) {
            EXPECT_NE(line.find(", 0600)"), std::string::npos) << line;
        }
        placed += isOurs && line.find("rename(") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(created, 2) << "one file for each time that the key was written";
    EXPECT_EQ(placed, 2);
    EXPECT_EQ(modeOf(folder + "/key"), 0600u);
}

TEST_F(KeySecretsTest, nobody_is_asked_for_a_pass_phrase_on_a_terminal)
{
    const TemporaryDirectory directory;
    const std::string key = directory.file("key");
    const std::string ours = traceOf(KEY_WRITER " " + key, directory);
    if (ours.empty()) {
        GTEST_SKIP() << "processes can't be traced here";
    }
    EXPECT_NE(ours.find(key), std::string::npos);
    EXPECT_EQ(ours.find("/dev/tty"), std::string::npos);
    const std::string others = traceOf("openssl rsa -noout -in " + key, directory);
    EXPECT_NE(others.find("/dev/tty"), std::string::npos) << "what asking looks like";
}

constexpr std::size_t needleSize = 24;

/// Part of a number of the key, in the order of its text and in that of the library's words.
void addNumber(EVP_PKEY* pKey, const char* name, std::vector<Needle>& needles)
{
    BIGNUM* raw = nullptr;
    if (EVP_PKEY_get_bn_param(pKey, name, &raw) != 1) {
        return;
    }
    const PkiHandle<BIGNUM> number(raw);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(BN_num_bytes(number.get())));
    BN_bn2bin(number.get(), bytes.data());
    needles.emplace_back(bytes.data() + 16, needleSize);
    std::reverse(bytes.begin(), bytes.end());
    needles.emplace_back(bytes.data() + 16, needleSize);
}

/// What to look for, worked out in another process: here that would leave copies of the key.
std::vector<Needle> needlesOf(const UaPkiRSAKeyPair& keyPair, const std::string& plainFile)
{
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        std::vector<Needle> needles;
        for (const char* name : {"d", "rsa-factor1", "rsa-factor2", "rsa-exponent1"}) {
            addNumber(keyPair.privateKey().handle(), name, needles);
        }
        const std::string text = readBytes(plainFile);
        for (const double part : {0.5, 0.7, 0.9}) {
            const auto at = static_cast<std::size_t>(static_cast<double>(text.size()) * part);
            const std::size_t line = text.find('\n', at - 65) + 1;
            needles.emplace_back(text.data() + line, needleSize);
        }
        for (const Needle& needle : needles) {
            if (write(ends[1], needle.masked().data(), needleSize) < 0) {
                _exit(1);
            }
        }
        _exit(0);
    }
    close(ends[1]);
    std::vector<Needle> needles;
    std::string masked(needleSize, '\0');
    while (read(ends[0], masked.data(), needleSize) == static_cast<ssize_t>(needleSize)) {
        needles.push_back(Needle::fromMasked(masked));
    }
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return needles;
}

void makePassword(std::array<char, 33>& password)
{
    std::array<unsigned char, 32> random{};
    EXPECT_EQ(RAND_bytes(random.data(), static_cast<int>(random.size())), 1);
    for (std::size_t i = 0; i < random.size(); ++i) {
        password[i] = static_cast<char>('A' + random[i] % 26);
    }
    OPENSSL_cleanse(random.data(), random.size());
}

void sign(const UaPkiRSAKeyPair& keyPair)
{
    const PkiHandle<EVP_MD_CTX> context(EVP_MD_CTX_new());
    std::array<unsigned char, 512> signature{};
    std::size_t size = signature.size();
    EXPECT_EQ(EVP_DigestSignInit(context.get(), nullptr, EVP_sha256(), nullptr,
                                 keyPair.privateKey().handle()),
              1);
    EXPECT_EQ(EVP_DigestSign(context.get(), signature.data(), &size, signature.data(), 32), 1);
}

/// Bytes that are handed out are the caller's to wipe.
void handOut(const UaPkiRSAKeyPair& keyPair, const char* password)
{
    UaByteArray der = keyPair.toDER();
    EXPECT_NE(UaPkiPrivateKey::fromDER(der, EVP_PKEY_RSA).handle(), nullptr);
    OPENSSL_cleanse(der.data(), static_cast<std::size_t>(der.size()));
    UaByteArray pem = keyPair.toPEM(password);
    EXPECT_NE(UaPkiPrivateKey::fromPEM(pem, password).handle(), nullptr);
    pem = keyPair.toPEM(nullptr);
    EXPECT_NE(UaPkiPrivateKey::fromPEM(pem, nullptr).handle(), nullptr);
    OPENSSL_cleanse(pem.data(), static_cast<std::size_t>(pem.size()));
}

/// Where fillers keep the program from finding a page of the stack as it was left.
[[gnu::noinline]] void overwriteStack()
{
    std::array<unsigned char, 16 * 1024> filler{};
    OPENSSL_cleanse(filler.data(), filler.size());
}

TEST_F(KeySecretsTest, the_scan_finds_what_is_there)
{
    std::array<char, 33> secret{};
    makePassword(secret);
    const Needle needle(secret.data(), needleSize);
    EXPECT_GT(countInMemory(needle), 0u);
    auto kept = std::make_unique<std::array<char, 33>>(secret);
    OPENSSL_cleanse(secret.data(), secret.size());
    EXPECT_GT(countInMemory(needle), 0u);
    OPENSSL_cleanse(kept->data(), kept->size());
    overwriteStack();
    EXPECT_EQ(countInMemory(needle), 0u);
}

TEST_F(KeySecretsTest, neither_the_pass_phrase_nor_the_key_stays_in_memory)
{
    const TemporaryDirectory directory;
    const std::string plain = directory.file("plain");
    const std::string encrypted = directory.file("encrypted");
    std::array<char, 33> password{};
    makePassword(password);
    const Needle passPhrase(password.data(), needleSize);
    std::vector<Needle> needles;
    {
        const UaPkiRSAKeyPair keyPair(2048);
        EXPECT_EQ(keyPair.toPEMFile(plain.c_str(), nullptr), 0);
        EXPECT_EQ(keyPair.toPEMFile(encrypted.c_str(), password.data()), 0);
        needles = needlesOf(keyPair, plain);
        ASSERT_EQ(needles.size(), 11u);
        EXPECT_GT(countInMemory(needles[1]), 0u) << "the key is in use, as the library keeps it";
        sign(keyPair);
        for (const std::string& path : {plain, encrypted}) {
            sign(UaPkiRSAKeyPair::fromPEMFile(path.c_str(), password.data()));
            sign(UaPkiRSAKeyPair::fromPEMFile(UaUniString(path.c_str()), password.data()));
        }
        handOut(keyPair, password.data());
    }
    OPENSSL_cleanse(password.data(), password.size());
    overwriteStack();
    EXPECT_EQ(countInMemory(passPhrase), 0u) << "pass phrase";
    for (std::size_t i = 0; i < needles.size(); ++i) {
        EXPECT_EQ(countInMemory(needles[i]), 0u) << "needle " << i;
    }
}

} // namespace
