#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <objc/runtime.h>
#include <cstdlib>

#include "tests/macos/fakes/Displays.h"
#include "tests/macos/fakes/Recorder.h"
#include "tests/macos/fakes/World.h"

// Messages made at run time, and the displays that they are sent to.

namespace vistrel::fake {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class Invocations : public testing::Test {
 protected:
  static NSInvocation* invocation(Class type, SEL selector) {
    NSInvocation* const made = [NSInvocation
        invocationWithMethodSignature:[type instanceMethodSignatureForSelector:selector]];
    made.selector = selector;
    return made;
  }

  World world_;
};

using InvocationsDeathTest = Invocations;

TEST_F(Invocations, CarryNumbersOfAnyWidthAndStructures) {
  @autoreleasepool {
    NSInvocation* const making =
        invocation([CGVirtualDisplayMode class], @selector(initWithWidth:height:refreshRate:));
    unsigned int width = 3;
    unsigned int height = 4;
    double rate = 59.5;
    [making setArgument:&width atIndex:2];
    [making setArgument:&height atIndex:3];
    [making setArgument:&rate atIndex:4];
    CGVirtualDisplayMode* const mode = [CGVirtualDisplayMode alloc];
    [making invokeWithTarget:(__bridge id)(__bridge_retained void*)mode];
    EXPECT_EQ(mode.width, 3U);
    EXPECT_EQ(mode.height, 4U);
    EXPECT_EQ(mode.refreshRate, 59.5);

    NSInvocation* const sizing =
        invocation([CGVirtualDisplayDescriptor class], @selector(setSizeInMillimeters:));
    CGSize size = {5, 6};
    [sizing setArgument:&size atIndex:2];
    CGVirtualDisplayDescriptor* const descriptor = [[CGVirtualDisplayDescriptor alloc] init];
    [sizing invokeWithTarget:descriptor];
    EXPECT_EQ(describe(descriptor.sizeInMillimeters), "{5,6}");
  }
}

/// NSInvocation, retainArguments.
TEST_F(Invocations, HoldTheirArgumentsWhenToldTo) {
  __weak NSObject* argument = nil;
  @autoreleasepool {
    NSInvocation* const naming = invocation([CGVirtualDisplay class], @selector(applySettings:));
    [naming retainArguments];
    @autoreleasepool {
      CGVirtualDisplaySettings* settings = [[CGVirtualDisplaySettings alloc] init];
      argument = settings;
      [naming setArgument:&settings atIndex:2];
    }
    EXPECT_TRUE(argument != nil);
  }
  EXPECT_TRUE(argument == nil);
}

TEST_F(InvocationsDeathTest, NeedAllTheirArguments) {
  @autoreleasepool {
    NSInvocation* const making = invocation([CGVirtualDisplay class], @selector(applySettings:));
    CGVirtualDisplay* const display = [[CGVirtualDisplay alloc] initWithDescriptor:nil];
    EXPECT_DEATH([making invokeWithTarget:display], "without some of its arguments");
    int nothing = 0;
    EXPECT_DEATH([making setArgument:&nothing atIndex:3], "no such argument");
  }
}

TEST_F(Invocations, HaveNoSignatureForAMessageThatNobodyKnows) {
  EXPECT_TRUE([CGVirtualDisplay instanceMethodSignatureForSelector:@selector(setHiDPI:)] == nil);
}

TEST_F(Invocations, AVirtualDisplayGoesAtATurnOfTheMainLoop) {
  const auto& displays = world_.desktop().virtualDisplays.displays;
  @autoreleasepool {
    CGVirtualDisplayDescriptor* const descriptor = [[CGVirtualDisplayDescriptor alloc] init];
    descriptor.maxPixelsWide = 1280;
    descriptor.maxPixelsHigh = 960;
    CGVirtualDisplay* const display = [[CGVirtualDisplay alloc] initWithDescriptor:descriptor];
    CGVirtualDisplaySettings* const settings = [[CGVirtualDisplaySettings alloc] init];
    settings.hiDPI = YES;
    EXPECT_FALSE([display applySettings:settings]);
    CGVirtualDisplayMode* const mode = [[CGVirtualDisplayMode alloc] initWithWidth:1280
                                                                            height:960
                                                                       refreshRate:60];
    settings.modes = @[ mode ];
    EXPECT_TRUE([display applySettings:settings]);
    EXPECT_EQ(describe(CGDisplayBounds(display.displayID)), "{{-5000,0},{640,480}}");
  }
  EXPECT_THAT(displays, SizeIs(1));
  turn();
  EXPECT_THAT(displays, IsEmpty());
}

TEST_F(Invocations, AClassTellsWhatItDeclaresItself) {
  unsigned int count = 0;
  objc_property_t* const properties =
      class_copyPropertyList([CGVirtualDisplaySettings class], &count);
  ASSERT_EQ(count, 2U);
  EXPECT_STREQ(property_getName(properties[0]), "hiDPI");
  EXPECT_THAT(property_getAttributes(properties[1]), HasSubstr("T@\"NSArray\",C,N"));
  std::free(properties);
  EXPECT_TRUE(class_copyPropertyList([NSMutableArray class], &count) == nullptr);
  EXPECT_EQ(count, 0U);
}

}  // namespace
}  // namespace vistrel::fake
