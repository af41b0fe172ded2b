#include <gtest/gtest.h>

#include "platform/linux/Utf8.h"

namespace vistrel::platform::linux_desktop {
namespace {

using namespace std::string_literals;

TEST(RepairedUtf8, leavesGoodTextAlone) {
  for (const auto& text : {""s, "plain"s, "Grüße — “ok” 日本 🪟"s})
    EXPECT_EQ(repairedUtf8(text), text);
}

TEST(RepairedUtf8, replacesEachBrokenSequenceOnce) {
  EXPECT_EQ(repairedUtf8("a\xFF"
                         "b"),
            "a\uFFFD"
            "b");
  EXPECT_EQ(repairedUtf8("\xE2\x82"), "\uFFFD");
  EXPECT_EQ(repairedUtf8("\xE2\x82"
                         "x"),
            "\uFFFDx");
  EXPECT_EQ(repairedUtf8("\x80\x80"), "\uFFFD\uFFFD");
}

TEST(RepairedUtf8, acceptsNoOverlongFormsSurrogatesOrTooLargeValues) {
  EXPECT_EQ(repairedUtf8("\xC0\xAF"), "\uFFFD\uFFFD");
  EXPECT_EQ(repairedUtf8("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(repairedUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(repairedUtf8("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(repairedUtf8("\xF5"), "\uFFFD");
}

TEST(RepairedUtf8, isNotDeceivedByAnEndInTheMiddle) {
  EXPECT_EQ(repairedUtf8("ok\xF0\x9F\xAA"), "ok\uFFFD");
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
