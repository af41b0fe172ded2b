#include <QFontMetricsF>
#include <gtest/gtest.h>

#include "platform/linux/qt/paint/Fonts.h"
#include "platform/linux/qt/paint/TextLines.h"
#include "tests/linux/qt/OffscreenQt.h"

namespace vistrel::platform::linux_desktop {
namespace {

constexpr double unlimited = 100000;

class TextLines : public ::testing::Test {
 protected:
  void SetUp() override { OffscreenQt::start(); }

  double widthOf(const QString& text) const {
    return QFontMetricsF(qtFont(Font{11})).horizontalAdvance(text);
  }

  const TextStyle oneLine_{.font = {11}, .color = {}};
  const TextStyle threeLines_{.font = {11},
                              .color = {},
                              .lineBreakMode = LineBreakMode::wordWrapping,
                              .maximumNumberOfLines = 3};
};

TEST_F(TextLines, TextThatFitsStaysAsItIs) {
  EXPECT_EQ(linesOf("Editor — Draft", oneLine_, {unlimited, 16}), QStringList{"Editor — Draft"});
}

TEST_F(TextLines, TextTooLongIsCutAtItsTail) {
  const QStringList lines = linesOf("A title that is far too long", oneLine_, {90, 16});
  ASSERT_EQ(lines.size(), 1);
  EXPECT_TRUE(lines[0].startsWith("A title"));
  EXPECT_TRUE(lines[0].endsWith("…"));
  EXPECT_LE(widthOf(lines[0]), 90);
}

TEST_F(TextLines, ATitleWithLineFeedsIsOneLine) {
  EXPECT_EQ(linesOf("one\ntwo\tthree", oneLine_, {unlimited, 16}), QStringList{"one two three"});
}

TEST_F(TextLines, EveryKindOfLineEndIsNoneInATitle) {
  EXPECT_EQ(
      linesOf(QString::fromUtf8("a\r\nb\vc\fd\u0085e\u2028f\u2029g"), oneLine_, {unlimited, 16}),
      QStringList{"a b c d e f g"});
}

TEST_F(TextLines, ATextWithoutEndIsCutBeforeItIsLaidOut) {
  // All of them lie over one another, so the whole would fit.
  const QString accents = "e" + QString(250000, QChar(0x301));
  const QStringList lines = linesOf(accents, oneLine_, {90, 16});
  ASSERT_EQ(lines.size(), 1);
  EXPECT_TRUE(lines[0].endsWith("…"));
  EXPECT_LT(lines[0].size(), 10000);
  // A character of two halves is cut as a whole.
  const QString pairs = "x" + QString::fromUtf8("𝄞").repeated(5000);
  EXPECT_TRUE(linesOf(pairs, oneLine_, {unlimited, 16})[0].isValidUtf16());
}

TEST_F(TextLines, WordsAreWrappedAndNotBroken) {
  const double width = widthOf("Source window is") + 2;
  EXPECT_EQ(linesOf("Source window is no longer available.", threeLines_, {width, 48}),
            (QStringList{"Source window is", "no longer", "available."}));
}

TEST_F(TextLines, ALineFeedBreaksTheLine) {
  EXPECT_EQ(linesOf("Permission is required.\nThe reason.", threeLines_, {unlimited, 48}),
            (QStringList{"Permission is required.", "The reason."}));
}

TEST_F(TextLines, TheLastLineAllowedIsCutAtItsTail) {
  const double width = widthOf("one two") + 2;
  const QStringList lines = linesOf("one two one two one two one two", threeLines_, {width, 48});
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[1], "one two");
  EXPECT_TRUE(lines[2].endsWith("…"));
  EXPECT_LE(widthOf(lines[2]), width);
}

TEST_F(TextLines, NoMoreLinesThanTheAreaHolds) {
  EXPECT_EQ(linesOf("one\ntwo\nthree", threeLines_, {unlimited, 30}).size(), 2);
  TextStyle asManyAsFit = threeLines_;
  asManyAsFit.maximumNumberOfLines = 0;
  EXPECT_EQ(linesOf("1\n2\n3\n4", asManyAsFit, {unlimited, 600}).size(), 4);
}

}  // namespace
}  // namespace vistrel::platform::linux_desktop
