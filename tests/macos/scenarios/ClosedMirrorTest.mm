#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// A mirror is closed while something of it waits in a queue. Whatever comes then starts and shows
/// nothing, and nothing of the mirror is left.
class ClosedMirror : public MirrorScenario {
 protected:
  /// A start holds its mirror until it has been answered.
  static constexpr const char* goes = "VLPanel#1 close";

  /// The service takes a second for each answer from here on.
  void makeServiceSlow() { desktop().serviceSeconds = 1; }
};

TEST_F(ClosedMirror, BeforeTheListingAnswers) {
  run([&] {
    makeServiceSlow();
    openMirror();
    closeMirror();
    EXPECT_THAT(panels(), IsEmpty());
    fake::forgetMessages();
    fake::advance(1);
    EXPECT_THAT(fake::messages(), IsEmpty());
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(ClosedMirror, BeforeTheStartAnswers) {
  run([&] {
    makeServiceSlow();
    openMirror();
    fake::advance(1);
    EXPECT_TRUE(said({"startCaptureWithCompletionHandler:a block"}));
    fake::forgetMessages();
    closeMirror();
    EXPECT_TRUE(said({"SCStream#1 stopCaptureWithCompletionHandler:a block"}));
    fake::forgetMessages();
    EXPECT_THAT(fake::streams(), SizeIs(1));  // until it has answered
    fake::advance(1);
    EXPECT_THAT(fake::messages(), ElementsAre(goes));
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(ClosedMirror, BeforeTheStartFails) {
  run([&] {
    makeServiceSlow();
    desktop().startError = "refused";
    openMirror();
    fake::advance(1);
    closeMirror();
    fake::forgetMessages();
    fake::advance(1);
    EXPECT_THAT(fake::messages(), ElementsAre(goes));
  });
}

TEST_F(ClosedMirror, BetweenTheAnswerAndMainHearingOfIt) {
  run([&] {
    makeServiceSlow();
    desktop().startError = "refused";
    openMirror();
    fake::advance(1);
    closeLater(1);  // after the service has answered and before main is told of it
    fake::advance(1);
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("Screen Recording permission"))));
  });
}

TEST_F(ClosedMirror, BeforeASampleIsLookedAt) {
  runWithMirror([] {
    fake::enqueue(stream(), {});
    fake::forgetMessages();
    closeMirror();
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("createCGImage"))));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("setContents:"))));
  });
}

TEST_F(ClosedMirror, BeforeAPictureIsShown) {
  runWithMirror([] {
    fake::forgetMessages();
    fake::enqueue(stream(), {});
    closeLater(0);
    fake::turn();
    EXPECT_TRUE(said({"createCGImage", "VLPanel#1 close"}));
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("setContents:VLImage"))));
  });
}

TEST_F(ClosedMirror, BeforeAStatusIsShown) {
  run([&] {
    desktop().listingError = "no listing";
    makeServiceSlow();
    openMirror();
    closeLater(1);
    fake::forgetMessages();
    fake::advance(1);
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::messages(), Not(Contains(HasSubstr("no longer available"))));
  });
}

TEST_F(ClosedMirror, BeforeTheStopAnswers) {
  runWithMirror([&] {
    makeServiceSlow();
    fake::deliver(stream(), {});
    closeMirror();
    EXPECT_THAT(panels(), IsEmpty());
    EXPECT_THAT(fake::streams(), SizeIs(1));
    fake::advance(1);
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(ClosedMirror, BeforeItsTimerFires) {
  runWithMirror([] {
    fake::advance(0.5);
    closeMirror();
    EXPECT_FALSE(fake::liveObjects().contains("NSTimer"));
    fake::forgetMessages();
    fake::advance(5);
    EXPECT_THAT(fake::messages(), IsEmpty());
  });
}

TEST_F(ClosedMirror, BeforeItIsToldThatItsStreamHasStopped) {
  runWithMirror([&] {
    makeServiceSlow();
    closeMirror();
    fake::forgetMessages();
    fake::stopWithError(stream(), "The window was closed");
    EXPECT_THAT(fake::messages(), IsEmpty());
  });
}

TEST_F(ClosedMirror, WhileItCapturesAnew) {
  runWithMirror([&] {
    makeServiceSlow();
    command(recapture);
    closeMirror();
    fake::forgetMessages();
    fake::advance(2);
    EXPECT_THAT(fake::messages(), IsEmpty());
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(ClosedMirror, BeforeItsCaptureHasGrown) {
  runWithMirror([&] {
    makeServiceSlow();
    drag(panel(), onGrip(panel()), {1000, 0});
    drop();
    EXPECT_TRUE(said({"SCStream#1 updateConfiguration:"}));
    closeMirror();
    fake::advance(1);
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

TEST_F(ClosedMirror, ItsWindowMayOutliveIt) {
  runWithMirror([] {
    NSWindow* const kept = panel();
    const id<NSWindowDelegate> delegate = kept.delegate;
    closeMirror();
    EXPECT_TRUE(kept.delegate == delegate);
    [kept setFrameOrigin:{2000, 0}];
    EXPECT_FALSE(kept.isShown);
  });
}

TEST_F(ClosedMirror, MayBeOpenedAgain) {
  runWithMirror([&] {
    makeServiceSlow();
    closeMirror();
    openMirror();
    ASSERT_THAT(panels(), SizeIs(1));
    fake::advance(2);
    fake::deliver(stream(), {});
    EXPECT_TRUE(picture() != nil);
  });
}

}  // namespace
}  // namespace vistrel
