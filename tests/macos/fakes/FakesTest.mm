#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/macos/fakes/AppKitFakes.h"
#include "tests/macos/fakes/CaptureFakes.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/State.h"
#include "tests/macos/fakes/World.h"

/// Notes what it is asked and told, with the queue.
@interface VLListener : NSObject <NSMenuDelegate,
                                  NSWindowDelegate,
                                  NSTableViewDataSource,
                                  NSTableViewDelegate,
                                  SCStreamOutput,
                                  SCStreamDelegate>
@end

@implementation VLListener

- (void)menuNeedsUpdate:(NSMenu*)menu {
  [menu removeAllItems];
  [menu addItem:[NSMenuItem separatorItem]];
}

- (void)windowDidMove:(NSNotification*)__unused notification {
  vistrel::fake::note("moved");
}

- (void)windowDidResize:(NSNotification*)__unused notification {
  vistrel::fake::note("resized");
}

- (void)windowDidChangeBackingProperties:(NSNotification*)__unused notification {
  vistrel::fake::note("of another scale");
}

- (void)windowWillClose:(NSNotification*)__unused notification {
  vistrel::fake::note("closes");
}

- (NSInteger)numberOfRowsInTableView:(NSTableView*)__unused table {
  return 2;
}

- (NSView*)tableView:(NSTableView*)__unused table
    viewForTableColumn:(NSTableColumn*)__unused column
                   row:(NSInteger)row {
  vistrel::fake::note("row " + std::to_string(row));
  return [[NSView alloc] init];
}

- (void)stream:(SCStream*)__unused stream
    didOutputSampleBuffer:(CMSampleBufferRef)__unused sample
                   ofType:(SCStreamOutputType)__unused type {
  vistrel::fake::note("sample");
}

- (void)stream:(SCStream*)__unused stream didStopWithError:(NSError*)error {
  vistrel::fake::note("stopped: " + vistrel::fake::describe(error.localizedDescription));
}

@end

/// A view that takes the first click.
@interface VLPad : NSView
@end

@implementation VLPad

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused event {
  return YES;
}

- (void)mouseDown:(NSEvent*)event {
  vistrel::fake::note("down " + std::to_string(event.modifierFlags));
}

- (void)mouseDragged:(NSEvent*)__unused event {
  vistrel::fake::note("dragged");
}

- (void)mouseUp:(NSEvent*)__unused event {
  vistrel::fake::note("up");
}

@end

namespace vistrel::fake {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsSupersetOf;
using testing::Not;
using testing::SizeIs;

class Fakes : public testing::Test {
 protected:
  static NSWindow* makeWindow(NSWindowStyleMask style) {
    return [[NSWindow alloc] initWithContentRect:{
      {0, 0}, { 100, 100 }
    }
                                       styleMask:style
                                         backing:NSBackingStoreBuffered
                                           defer:NO];
  }
  static NSWindow* makeOwnedWindow(NSWindowStyleMask style) {
    NSWindow* const window = makeWindow(style);
    window.releasedWhenClosed = NO;
    return window;
  }

  SCStream* startStream(VLListener* listener, dispatch_queue_t queue) {
    SCContentFilter* const filter =
        [[SCContentFilter alloc] initWithDesktopIndependentWindow:[[SCWindow alloc] init]];
    SCStream* const stream = [[SCStream alloc] initWithFilter:filter
                                                configuration:[[SCStreamConfiguration alloc] init]
                                                     delegate:listener];
    [stream addStreamOutput:listener
                       type:SCStreamOutputTypeScreen
         sampleHandlerQueue:queue
                      error:nil];
    [stream startCaptureWithCompletionHandler:^(NSError* error) {
      note(error == nil ? "started" : "refused");
    }];
    turn();
    return stream;
  }

  World world_;
};

using FakesDeathTest = Fakes;

TEST_F(FakesDeathTest, AViewIsForTheMainThreadAlone) {
  NSView* const view = [[NSView alloc] init];
  runLater(serviceQueue(), 0, ^{
    view.hidden = YES;
  });
  EXPECT_DEATH(turn(), "NSView#1 setHidden: comes on the queue service");
}

TEST_F(FakesDeathTest, AMessageToAReleasedObjectEndsTheTest) {
  __unsafe_unretained NSView* gone = nil;
  @autoreleasepool {
    NSView* const view = [[NSView alloc] init];
    gone = view;
  }
  EXPECT_DEATH(gone.hidden = YES, "heap-use-after-free");
}

TEST_F(FakesDeathTest, AMessageWithoutBehaviourEndsTheTest) {
  NSValue* const value = [[NSValue alloc] init];
  EXPECT_DEATH((void)value.objCType, "objCType has no behaviour here");
}

TEST_F(Fakes, DelegatesAreHeldWeakly) {
  NSWindow* const window = makeOwnedWindow(NSWindowStyleMaskTitled);
  NSMenu* const menu = [[NSMenu alloc] initWithTitle:@""];
  @autoreleasepool {
    VLListener* const listener = [[VLListener alloc] init];
    window.delegate = listener;
    menu.delegate = listener;
    EXPECT_TRUE(window.delegate != nil);
  }
  EXPECT_TRUE(window.delegate == nil);
  EXPECT_TRUE(menu.delegate == nil);
}

TEST_F(Fakes, AMenuAsksItsDelegateEachTimeBeforeItShows) {
  NSMenu* const menu = [[NSMenu alloc] initWithTitle:@""];
  VLListener* const listener = [[VLListener alloc] init];
  menu.delegate = listener;
  EXPECT_TRUE(menu.itemArray.firstObject == nil);
  open(menu);
  NSMenuItem* const first = menu.itemArray.firstObject;
  EXPECT_TRUE(first != nil);
  open(menu);
  EXPECT_TRUE(menu.itemArray.firstObject != first);
}

TEST_F(FakesDeathTest, ACollectionStaysAsItIsWhileItIsEnumerated) {
  NSMutableArray* const array = [NSMutableArray array];
  [array addObject:@"a"];
  [array addObject:@"b"];
  const auto grow = [array] {
    for (id each in array) [array addObject:each];
  };
  EXPECT_DEATH(grow(), "changed while it is enumerated");
}

TEST_F(FakesDeathTest, ALineIsInOneMenu) {
  NSMenu* const first = [[NSMenu alloc] initWithTitle:@""];
  NSMenu* const second = [[NSMenu alloc] initWithTitle:@""];
  NSMenuItem* const shared = [NSMenuItem separatorItem];
  [first addItem:shared];
  EXPECT_DEATH([second addItem:shared], "is in a menu already");
}

TEST_F(Fakes, ALineIsEnabledWhenSomebodyPerformsItsAction) {
  NSMenu* const menu = [[NSMenu alloc] initWithTitle:@""];
  NSMenuItem* const idle = [[NSMenuItem alloc] initWithTitle:@"" action:nil keyEquivalent:@""];
  NSMenuItem* const hide = [[NSMenuItem alloc] initWithTitle:@""
                                                      action:@selector(hide:)
                                               keyEquivalent:@""];
  [menu addItem:idle];
  [menu addItem:hide];
  EXPECT_FALSE(isEnabled(idle));
  EXPECT_TRUE(isEnabled(hide));
  menu.autoenablesItems = NO;
  EXPECT_TRUE(isEnabled(idle));
}

TEST_F(Fakes, ATableAsksItsDataSourceWhenItShowsWhatItReloaded) {
  NSTableView* const table = [[NSTableView alloc] initWithFrame:NSRect()];
  VLListener* const listener = [[VLListener alloc] init];
  table.dataSource = listener;
  table.delegate = listener;
  [table reloadData];
  EXPECT_THAT(messages(), Not(Contains("row 0")));
  EXPECT_THAT(rowViews(table), SizeIs(2));
  EXPECT_THAT(messages(), IsSupersetOf({"row 0", "row 1"}));
}

TEST_F(Fakes, TheStyleMaskDecidesWhetherAWindowBecomesKey) {
  NSWindow* const bare = makeOwnedWindow(NSWindowStyleMaskBorderless);
  NSWindow* const titled = makeOwnedWindow(NSWindowStyleMaskTitled);
  [bare makeKeyAndOrderFront:nil];
  EXPECT_FALSE(bare.isKey);
  [titled makeKeyAndOrderFront:nil];
  EXPECT_TRUE(titled.isKey);
}

TEST_F(Fakes, AClickReachesTheFrontmostViewThatWantsIt) {
  NSWindow* const window = makeOwnedWindow(NSWindowStyleMaskBorderless);
  NSView* const lower = [[NSView alloc] initWithFrame:{{0, 0}, {50, 50}}];
  VLPad* const upper = [[VLPad alloc] initWithFrame:{{10, 10}, {20, 20}}];
  NSView* const hidden = [[NSView alloc] initWithFrame:{{0, 0}, {100, 100}}];
  hidden.hidden = YES;
  window.contentView.subviews = @[ lower, upper, hidden ];
  EXPECT_EQ(viewAt(window, {5, 5}), lower);
  EXPECT_EQ(viewAt(window, {15, 15}), upper);
  EXPECT_EQ(viewAt(window, {60, 60}), window.contentView);
  forgetMessages();
  mouseDown(window, {5, 5});
  mouseDown(window, {15, 15}, NSEventModifierFlagCommand);
  mouseDragged({90, 90});
  mouseUp({90, 90});
  mouseUp({90, 90});
  EXPECT_THAT(messages(), ElementsAre("down 1048576", "dragged", "up"));
}

TEST_F(Fakes, AnAnimatedFrameRunsAnEventLoop) {
  NSWindow* const window = makeOwnedWindow(NSWindowStyleMaskTitled);
  VLListener* const listener = [[VLListener alloc] init];
  window.delegate = listener;
  runLater(dispatch_get_main_queue(), 0, ^{
    note("within");
  });
  forgetMessages();
  [window setFrame:{
    {0, 0}, { 300, 300 }
  }
           display:YES
           animate:YES];
  note("after");
  EXPECT_THAT(messages(), ElementsAre("NSWindow#1 setFrame:{{0,0},{300,300}} display:1 animate:1",
                                      "resized", "within", "resized", "after"));
}

TEST_F(Fakes, AWindowTellsOfTheScaleOfItsScreen) {
  world_.desktop().screens = {{{{0, 0}, {1000, 900}}, {{0, 0}, {1000, 900}}, 2},
                              {{{1000, 0}, {1000, 900}}, {{1000, 0}, {1000, 900}}, 1}};
  NSWindow* const window = makeOwnedWindow(NSWindowStyleMaskBorderless);
  VLListener* const listener = [[VLListener alloc] init];
  window.delegate = listener;
  [window setFrameOrigin:{949, 0}];
  EXPECT_THAT(messages(), Not(Contains("of another scale")));
  [window setFrameOrigin:{951, 0}];
  EXPECT_THAT(messages(), Contains("of another scale"));
}

TEST_F(Fakes, AWindowIsReleasedWhenItIsClosedUnlessToldOtherwise) {
  NSWindow* const owned = makeOwnedWindow(NSWindowStyleMaskTitled);
  VLListener* const listener = [[VLListener alloc] init];
  owned.delegate = listener;
  [owned close];
  EXPECT_THAT(messages(), Contains("closes"));
  EXPECT_THAT(windows(), SizeIs(1));
}

TEST_F(FakesDeathTest, AWindowThatReleasesItselfIsNotItsOwnersAnyMore) {
  EXPECT_DEATH(
      {
        NSWindow* const window = makeWindow(NSWindowStyleMaskTitled);
        [window close];
        window.title = @"";
      },
      "heap-use-after-free");
}

TEST_F(FakesDeathTest, ConstraintsTieViewsThatHaveACommonAncestor) {
  NSView* const first = [[NSView alloc] init];
  NSView* const second = [[NSView alloc] init];
  NSLayoutConstraint* const tie = [NSLayoutConstraint constraintWithItem:first
                                                               attribute:NSLayoutAttributeTop
                                                               relatedBy:NSLayoutRelationEqual
                                                                  toItem:second
                                                               attribute:NSLayoutAttributeTop
                                                              multiplier:1
                                                                constant:0];
  EXPECT_DEATH([NSLayoutConstraint activateConstraints:@[ tie ]], "without a common ancestor");
  first.subviews = @[ second ];
  [NSLayoutConstraint activateConstraints:@[ tie ]];
  EXPECT_EQ(activeConstraints(first), 1);
  first.subviews = @[];
}

TEST_F(FakesDeathTest, AnAlertWantsAnAnswer) {
  NSAlert* const alert = [[NSAlert alloc] init];
  alert.messageText = @"Really?";
  EXPECT_DEATH([alert runModal], "nobody answers the alert \"Really");
}

TEST_F(Fakes, TheRunLoopHoldsATimerUntilItIsInvalidated) {
  __weak NSTimer* seen = nil;
  @autoreleasepool {
    seen = [NSTimer scheduledTimerWithTimeInterval:1
                                           repeats:YES
                                             block:^(NSTimer*) {
                                               note("tick");
                                             }];
  }
  advance(2.5);
  EXPECT_EQ(std::count(messages().begin(), messages().end(), "tick"), 2);
  @autoreleasepool {
    [seen invalidate];
  }
  EXPECT_TRUE(seen == nil);
  advance(2);
  EXPECT_EQ(std::count(messages().begin(), messages().end(), "tick"), 2);
}

TEST_F(Fakes, TheServiceAnswersOnAQueueOfItsOwn) {
  [SCShareableContent getShareableContentExcludingDesktopWindows:NO
                                             onScreenWindowsOnly:NO
                                               completionHandler:^(SCShareableContent*, NSError*) {
                                                 note("listed");
                                               }];
  EXPECT_THAT(messages(), Not(Contains("service: listed")));
  turn();
  EXPECT_THAT(messages(), Contains("service: listed"));
}

TEST_F(Fakes, SamplesComeOnTheQueueOfTheirHandler) {
  VLListener* const listener = [[VLListener alloc] init];
  SCStream* const stream =
      startStream(listener, dispatch_queue_create("handler", DISPATCH_QUEUE_SERIAL));
  deliver(stream, {});
  EXPECT_THAT(messages(), IsSupersetOf({"service: started", "handler: sample"}));
  stopWithError(stream, "gone");
  EXPECT_THAT(messages(), Contains("service: stopped: \"gone\""));
}

TEST_F(Fakes, WhetherACallFailedItsResultSays) {
  VLListener* const listener = [[VLListener alloc] init];
  SCStream* const stream = startStream(listener, serviceQueue());
  const auto addOutput = [&](NSError** error) {
    return [stream addStreamOutput:listener
                              type:SCStreamOutputTypeScreen
                sampleHandlerQueue:serviceQueue()
                             error:error];
  };
  @autoreleasepool {
    NSError* error = nil;
    EXPECT_TRUE(addOutput(&error));
    EXPECT_TRUE(error != nil);
    world_.desktop().outputError = "";
    EXPECT_FALSE(addOutput(&error));
    EXPECT_TRUE(error == nil);
  }
}

TEST_F(Fakes, AFrameThatWaitsInItsQueueComesAfterAStopToo) {
  VLListener* const listener = [[VLListener alloc] init];
  SCStream* const stream =
      startStream(listener, dispatch_queue_create("handler", DISPATCH_QUEUE_SERIAL));
  enqueue(stream, {});
  [stream stopCaptureWithCompletionHandler:nil];
  turn();
  EXPECT_THAT(messages(), Contains("handler: sample"));
  forgetMessages();
  deliver(stream, {});
  EXPECT_THAT(messages(), Not(Contains("handler: sample")));
}

TEST_F(Fakes, AStreamHoldsNeitherItsOutputNorItsDelegate) {
  SCStream* stream = nil;
  __weak VLListener* seen = nil;
  @autoreleasepool {
    VLListener* const listener = [[VLListener alloc] init];
    seen = listener;
    stream = startStream(listener, serviceQueue());
  }
  EXPECT_TRUE(seen == nil);
  deliver(stream, {});
  EXPECT_THAT(messages(), Not(Contains("service: sample")));
}

TEST_F(FakesDeathTest, APictureIsReadUnderItsLock) {
  @autoreleasepool {
    const CVPixelBufferRef buffer = makePicture({});
    EXPECT_DEATH(CVPixelBufferGetBaseAddress(buffer), "read without a lock");
    EXPECT_DEATH(CVPixelBufferUnlockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly),
                 "that is not locked");
    CVPixelBufferLockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly);
    EXPECT_TRUE(CVPixelBufferGetBaseAddress(buffer) != nullptr);
    CVPixelBufferUnlockBaseAddress(buffer, kCVPixelBufferLock_ReadOnly);
    CFRelease(buffer);
  }
}

}  // namespace
}  // namespace vistrel::fake
