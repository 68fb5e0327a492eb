// The sums by which files are told apart, against the examples of the standard and lengths around a block's.
#include "talvek/support/sha256.h"

#include <gtest/gtest.h>

#include "support/test_files.h"
#include "talvek/support/exit_status.h"

namespace talvek::test {
namespace {

std::string sumOfText(const std::string& text) {
    host::Sha256 sum;
    sum.add(text);
    return sum.finish();
}

TEST(Sha256, OfTheStandardsExamples) {
    EXPECT_EQ(sumOfText(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sumOfText("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sumOfText("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(sumOfText(std::string(1000000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, DoesNotDependOnThePieces) {
    for (const std::size_t length : {55U, 56U, 63U, 64U, 65U, 119U, 120U, 128U, 200U}) {
        const std::string text(length, 'x');
        for (const std::size_t piece : {1U, 7U, 63U, 64U, 65U}) {
            host::Sha256 sum;
            for (std::size_t at = 0; at < length; at += piece) {
                sum.add(std::string_view(text).substr(at, piece));
            }
            EXPECT_EQ(sum.finish(), sumOfText(text)) << length << " by " << piece;
        }
    }
}

TEST(Sha256, OfAFile) {
    TempFolder folder;
    writeFile(folder.file("abc"), "abc");
    EXPECT_EQ(host::sumOf(folder.file("abc")).sha256, sumOfText("abc"));
    EXPECT_EQ(host::sumOf(folder.file("abc")).bytes, 3U);
    EXPECT_THROW(host::sumOf(folder.file("absent")), host::Failure);
}

}  // namespace
}  // namespace talvek::test
