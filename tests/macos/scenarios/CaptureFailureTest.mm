#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* noWindow = "Source window is no longer available.";

/// What comes between the request for a window's picture and the picture.
class CaptureFailure : public MirrorScenario {
 protected:
  /// Over the picture; empty for none.
  static std::string status() {
    const auto texts = shownTexts(card());
    return texts.size() > 1 ? texts.back() : "";
  }
  /// Once there is nothing in its way any more.
  static void capturesAgain() {
    command(recapture);
    EXPECT_EQ(status(), "");
    ASSERT_THAT(fake::streams(), SizeIs(1));
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);
    EXPECT_EQ(dot("Live"), live);
  }
};

TEST_F(CaptureFailure, SaysThatTheWindowIsGoneWhenTheListingFails) {
  run([&] {
    desktop().listingError = "no listing";
    openMirror();
    EXPECT_EQ(status(), noWindow);
    EXPECT_EQ(dot("Error"), error);
    EXPECT_THAT(fake::streams(), IsEmpty());
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("SCStream"))));
    fake::advance(1);
    EXPECT_EQ(status(), noWindow);
    EXPECT_EQ(dot("Not updating"), stale);
    desktop().listingError.reset();
    capturesAgain();
    closeMirror();
  });
}

TEST_F(CaptureFailure, IsAnnouncedOnce) {
  run([&] {
    desktop().listingError = "no listing";
    openMirror();
    const auto announcement = AllOf(HasSubstr("post "), HasSubstr(noWindow));
    EXPECT_THAT(fake::messages(), Contains(announcement).Times(1));
    drag(panel(), onGrip(panel()), {40, -40});  // which places the label elsewhere
    drop();
    EXPECT_THAT(fake::messages(), Contains(announcement).Times(1));
    closeMirror();
  });
}

TEST_F(CaptureFailure, SaysThatTheWindowIsGoneWhenItIsNotListed) {
  run([&] {
    desktop().windows.front().id = 5;
    openMirror();
    EXPECT_EQ(status(), noWindow);
    EXPECT_THAT(fake::streams(), IsEmpty());
    desktop().windows.front().id = 77;
    capturesAgain();
    closeMirror();
  });
}

TEST_F(CaptureFailure, FindsAWindowThatIsNotOnScreen) {
  run([&] {
    desktop().windows.front().isOnScreen = false;
    openMirror();
    EXPECT_EQ(status(), "");
    EXPECT_THAT(fake::streams(), SizeIs(1));
    closeMirror();
  });
}

TEST_F(CaptureFailure, SaysThatTheOutputCannotBeAdded) {
  desktop().outputError = "no output";
  runWithMirror([&] {
    EXPECT_EQ(status(), "Couldn't attach to the window stream.");
    EXPECT_EQ(dot("Error"), error);
    EXPECT_TRUE(said({"service: SCStream#1 addStreamOutput:VLStreamAdaptor#1"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("startCapture"))));
    EXPECT_THAT(fake::streams(), IsEmpty());
    desktop().outputError.reset();
    capturesAgain();
  });
}

TEST_F(CaptureFailure, SaysSoWhenTheServiceDoesNotSayWhy) {
  desktop().outputError = "";
  runWithMirror([] {
    EXPECT_EQ(status(), "Couldn't attach to the window stream.");
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(CaptureFailure, SaysThatTheStreamDoesNotStart) {
  desktop().startError = "The stream failed";
  runWithMirror([&] {
    EXPECT_EQ(status(), "Screen Recording permission is required.\nThe stream failed");
    EXPECT_EQ(dot("Error"), error);
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() == nil);
    desktop().startError.reset();
    fake::forgetMessages();
    capturesAgain();
    EXPECT_TRUE(said({"SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "service: SCStream#2 startCaptureWithCompletionHandler:a block"}));
  });
}

TEST_F(CaptureFailure, AStreamThatTheServiceEndsOnlyTurnsTheDot) {
  runWithMirror([] {
    fake::deliver(stream(), {});
    const id shown = picture();
    fake::forgetMessages();
    fake::stopWithError(stream(), "The window was closed");
    EXPECT_THAT(fake::messages(), IsEmpty());
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() == shown);
    EXPECT_EQ(dot("Live"), live);
    fake::advance(2);
    EXPECT_EQ(dot("Not updating"), stale);
    EXPECT_EQ(status(), "");
    fake::forgetMessages();
    capturesAgain();
    EXPECT_TRUE(said({"SCStream#1 stopCaptureWithCompletionHandler:a block",
                      "service: SCStream#2 startCaptureWithCompletionHandler:a block"}));
  });
}

TEST_F(CaptureFailure, ThePermissionIsWithdrawnWhileItStreams) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    const id shown = picture();
    desktop().isScreenCaptureAllowed = false;
    fake::stopWithError(stream(), "The user stopped sharing");
    fake::advance(3);
    EXPECT_EQ(dot("Not updating"), stale);
    EXPECT_EQ(status(), "");

    command(recapture);
    EXPECT_EQ(status(), noWindow);
    EXPECT_EQ(dot("Error"), error);
    EXPECT_TRUE(picture() == shown);
    EXPECT_THAT(fake::streams(), IsEmpty());
    EXPECT_THAT(fake::messages(), Not(Contains("CGRequestScreenCaptureAccess")));

    desktop().isScreenCaptureAllowed = true;
    capturesAgain();
    EXPECT_TRUE(picture() != shown);
  });
}

TEST_F(CaptureFailure, ThePermissionIsWithdrawnBetweenTheListingAndTheStart) {
  runWithMirror([&] {
    fake::deliver(stream(), {});
    desktop().startError = "The user declined TCCs";
    command(recapture);
    EXPECT_EQ(status(), "Screen Recording permission is required.\nThe user declined TCCs");
    EXPECT_EQ(dot("Error"), error);
    EXPECT_THAT(fake::streams(), SizeIs(1));
    command(recapture);
    EXPECT_THAT(fake::streams(), SizeIs(1));
    desktop().startError.reset();
    capturesAgain();
  });
}

TEST_F(CaptureFailure, KeepsAPictureRatherThanShowBlackFrames) {
  const fake::Frame black = {.pixel = {12, 12, 12, 255}};
  runWithMirror([&] {
    fake::deliver(stream(), black);  // the first is better than nothing
    id shown = picture();
    EXPECT_TRUE(shown != nil);
    fake::deliver(stream(), {.pixel = {12, 12, 13, 255}});
    EXPECT_TRUE(picture() != shown);
    shown = picture();
    fake::forgetMessages();
    fake::deliver(stream(), black);
    EXPECT_THAT(fake::messages(), IsEmpty());
    EXPECT_TRUE(picture() == shown);
    fake::advance(3);
    fake::deliver(stream(), black);
    EXPECT_EQ(dot("Not updating"), stale);
    command(recapture);
    fake::deliver(stream(), black);
    EXPECT_TRUE(picture() == shown);
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != shown);
  });
}

}  // namespace
}  // namespace vistrel
