#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

class TwoMirrors : public MirrorScenario {
 protected:
  TwoMirrors() {
    // The picker lists the mail first.
    desktop().windows.push_back(
        {.id = 78, .title = "Inbox", .frame = {{0, 0}, {600, 600}}, .application = "Mail"});
  }
  static std::string frame(std::size_t index) { return fake::describe(panel(index).frame); }
};

TEST_F(TwoMirrors, OpenInACascade) {
  runWithMirror([] {
    EXPECT_EQ(frame(0), "{{32,597},{220,246}}");
    openMirror(1);
    EXPECT_TRUE(said({"VLPanel#2 setFrameOrigin:{60,619}", "VLPanel#2 orderFrontRegardless"}));
    EXPECT_EQ(frame(1), "{{60,619},{340,196}}");
    closeMirror(0);
    openMirror(0);  // as many are open as when the second opened
    EXPECT_EQ(frame(1), "{{60,569},{220,246}}");
  });
}

TEST_F(TwoMirrors, ShowEachItsOwnWindow) {
  runWithMirror([] {
    openMirror(1);
    ASSERT_THAT(fake::streams(), SizeIs(2));
    EXPECT_EQ(stream(0).filter.window.windowID, 78U);
    EXPECT_EQ(stream(1).filter.window.windowID, 77U);
    EXPECT_TRUE(stream(0).sampleHandlerQueue != stream(1).sampleHandlerQueue);
    fake::deliver(stream(1), {});
    EXPECT_TRUE(picture(0) == nil);
    EXPECT_TRUE(picture(1) != nil);
    fake::deliver(stream(0), {});
    EXPECT_TRUE(picture(0) != nil);
    EXPECT_TRUE(picture(0) != picture(1));
    fake::advance(1);
    fake::deliver(stream(0), {});
    fake::advance(1);
    EXPECT_EQ(dot("Live", 0), live);
    EXPECT_EQ(dot("Not updating", 1), stale);
  });
}

TEST_F(TwoMirrors, OneIsLeftWhenTheOtherCloses) {
  runWithMirror([] {
    openMirror(1);
    closeMirror(0);
    ASSERT_THAT(fake::streams(), SizeIs(1));
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);
    EXPECT_THAT(shownTexts(card()), SizeIs(1));
  });
}

TEST_F(TwoMirrors, AreNeverOfOneWindow) {
  runWithMirror([] {
    command("Roll Up (Title Only)");
    openMirror(0);
    EXPECT_TRUE(said({"VLPanel#1 setFrame:{{32,597},{220,246}} display:1 animate:1",
                      "VLPanel#1 orderFrontRegardless"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("getShareableContent"))));
    EXPECT_THAT(panels(), SizeIs(1));
    EXPECT_THAT(fake::streams(), SizeIs(1));
  });
}

}  // namespace
}  // namespace vistrel
