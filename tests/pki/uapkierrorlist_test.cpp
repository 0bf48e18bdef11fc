#include "pki/uapkierrorlist.h"
#include "tests/pki/errorqueue.h"

#include <openssl/err.h>
#include <openssl/evp.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using UaPkiErrorListTest = PkiTest;

/// Something that has an error list.
class Faulty : public UaPkiErrorList
{
};

std::vector<std::string> textsOf(const UaPkiErrorList& errors)
{
    std::vector<std::string> texts;
    for (const UaString& message : errors.getErrors()) {
        texts.emplace_back(message.toUtf8());
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST_F(UaPkiErrorListTest, a_new_object_has_no_messages)
{
    EXPECT_EQ(textsOf(Faulty()), Texts());
}

TEST_F(UaPkiErrorListTest, messages_come_oldest_first_and_once)
{
    const Faulty object;
    object.addError("first");
    object.addError("second");
    EXPECT_EQ(textsOf(object), (Texts{"first", "second"}));
    EXPECT_EQ(textsOf(object), Texts());
}

TEST_F(UaPkiErrorListTest, the_eleventh_message_pushes_out_the_first)
{
    const Faulty object;
    Texts expected;
    for (int i = 1; i <= 10; ++i) {
        object.addError(UaString("message %1").arg(i));
        expected.push_back("message " + std::to_string(i));
    }
    const Faulty full = [&] {
        Faulty other;
        for (const std::string& text : expected) {
            other.addError(text.c_str());
        }
        return other;
    }();
    EXPECT_EQ(textsOf(full), expected);

    object.addError("message 11");
    expected.erase(expected.begin());
    expected.emplace_back("message 11");
    EXPECT_EQ(textsOf(object), expected);
}

TEST_F(UaPkiErrorListTest, a_long_run_keeps_the_last_ten)
{
    const Faulty object;
    for (int i = 0; i < 1000; ++i) {
        object.addError(UaString::fromLocal8Bit("x").arg(i));
    }
    object.addError("last");
    const Texts texts = textsOf(object);
    ASSERT_EQ(texts.size(), UaPkiErrorList::MaxErrors);
    EXPECT_EQ(texts.back(), "last");
}

TEST_F(UaPkiErrorListTest, a_copy_starts_without_messages_and_an_assignment_keeps_its_own)
{
    Faulty source;
    source.addError("of the source");
    const Faulty copy(source); // NOLINT(performance-unnecessary-copy-initialization): under test
    EXPECT_EQ(textsOf(copy), Texts());

    Faulty target;
    target.addError("of the target");
    target = source;
    EXPECT_EQ(textsOf(target), Texts{"of the target"});
    EXPECT_EQ(textsOf(source), Texts{"of the source"});
}

TEST_F(UaPkiErrorListTest, a_move_takes_the_messages_along)
{
    Faulty source;
    source.addError("one");
    Faulty moved(std::move(source));
    Faulty assigned;
    assigned.addError("gone");
    assigned = std::move(moved);
    EXPECT_EQ(textsOf(assigned), Texts{"one"});
}

TEST_F(UaPkiErrorListTest, the_librarys_queue_is_emptied_oldest_first_in_its_words)
{
    ERR_raise(ERR_LIB_EVP, EVP_R_EXPECTING_AN_RSA_KEY);
    ERR_raise(ERR_LIB_EVP, EVP_R_DECODE_ERROR);
    const Faulty object;
    object.addLibraryErrors();
    EXPECT_EQ(ERR_peek_error(), 0u);
    const Texts texts = textsOf(object);
    ASSERT_EQ(texts.size(), 2u);
    EXPECT_EQ(texts[0].rfind("error:", 0), 0u);
    EXPECT_NE(texts[0].find("expecting an rsa key"), std::string::npos);
    EXPECT_NE(texts[1].find("decode error"), std::string::npos);
}

TEST_F(UaPkiErrorListTest, more_library_errors_than_ten_leave_the_last_and_an_empty_queue)
{
    for (int i = 0; i < 12; ++i) {
        ERR_raise(ERR_LIB_EVP, EVP_R_DECODE_ERROR);
    }
    ERR_raise(ERR_LIB_EVP, EVP_R_EXPECTING_AN_RSA_KEY);
    const Faulty object;
    object.addLibraryErrors();
    EXPECT_EQ(ERR_peek_error(), 0u);
    const Texts texts = textsOf(object);
    ASSERT_EQ(texts.size(), UaPkiErrorList::MaxErrors);
    EXPECT_NE(texts.back().find("expecting an rsa key"), std::string::npos);
}

} // namespace
