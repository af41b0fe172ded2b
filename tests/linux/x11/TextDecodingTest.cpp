#include <gtest/gtest.h>

#include "platform/linux/x11/server/TextDecoding.h"

namespace vistrel::platform::linux_desktop {
namespace {

using namespace std::string_literals;

TEST(Latin1, becomesUtf8) {
  EXPECT_EQ(utf8FromLatin1("Gr\xFC\xDF"
                           "e"),
            "Grüße");
}

TEST(CompoundText, isLatin1AtFirst) {
  EXPECT_EQ(utf8FromCompoundText("caf\xE9 au lait"), "café au lait");
}

TEST(CompoundText, keepsAsciiAndLatin1WhenTheyAreDesignated) {
  EXPECT_EQ(utf8FromCompoundText("\x1b(B\x1b-Ana\xEFve"), "naïve");
}

TEST(CompoundText, readsItsUtf8Segments) {
  EXPECT_EQ(utf8FromCompoundText("a\x1b%G日本\x1b%@b"), "a日本b");
  EXPECT_EQ(utf8FromCompoundText("a\x1b%G日"), "a日");
}

TEST(CompoundText, replacesEachCharacterOfOtherSets) {
  EXPECT_EQ(utf8FromCompoundText("a\x1b$)B\xC6\xFC\xCB\xDC!"), "a\uFFFD\uFFFD!");
  EXPECT_EQ(utf8FromCompoundText("\x1b$(B\x46\x7C\x1b(Bz"), "\uFFFDz");
  EXPECT_EQ(utf8FromCompoundText("\x1b-B\xA1 x"), "\uFFFD x");
}

TEST(CompoundText, skipsTextInAnEncodingOfItsOwn) {
  EXPECT_EQ(utf8FromCompoundText("a\x1b%/1\x80\x85"
                                 "x\x02"
                                 "abcb"),
            "a\uFFFDb");
}

TEST(CompoundText, survivesATruncatedEnd) {
  for (const auto& text : {"\x1b"s, "\x1b%"s, "\x1b%/1"s, "\x1b$)B\xC6"s, "\x1b%/1\x80\xFF"s}) {
    EXPECT_NO_THROW(utf8FromCompoundText(text));
  }
}

TEST(UpToNull, endsAtTheFirstNullByte) {
  EXPECT_EQ(upToNull("instance\0Class"s), "instance");
  EXPECT_EQ(upToNull("whole"), "whole");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
