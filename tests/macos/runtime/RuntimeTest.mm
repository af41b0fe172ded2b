#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "tests/macos/runtime/Objects.h"

extern "C" {
id class_createInstance(Class type, unsigned long extraBytes) __attribute__((ns_returns_retained));
void object_dispose(id object);
void objc_setAssociatedObject(id object, const void* key, id value, unsigned long policy);
id objc_getAssociatedObject(id object, const void* key);
id objc_autorelease(id object) __attribute__((ns_returns_not_retained));
}

struct Extent {
  double width;
  double height;
};

__attribute__((objc_root_class))
@interface Thing
+ (instancetype)alloc;
- (instancetype)init;
- (int)size;
- (double)weight;
- (Extent)extent;
- (Thing*)freshThing;
@end

@implementation Thing
+ (instancetype)alloc {
  return class_createInstance(self, 0);
}
- (instancetype)init {
  return self;
}
- (int)size {
  return 1;
}
- (double)weight {
  return 2.5;
}
- (Extent)extent {
  return {3, 4};
}
- (Thing*)freshThing {
  return [[Thing alloc] init];
}
- (void)dealloc {
  // As a dealloc does that hands its object to others.
  {
    Thing* const held = self;
    (void)held.size;
  }
  object_dispose(self);
}
@end

// The class of string literals, which the compiler names.
@interface NSConstantString : Thing
@end

@implementation NSConstantString
@end

@interface Box : Thing
@property(nonatomic, strong) Thing* content;
@property(nonatomic, weak) Thing* label;
@property(nonatomic, copy) int (^rule)(int);
- (instancetype)initWithToken:(std::shared_ptr<int>)token;
@end

@implementation Box {
  char _before;
  std::shared_ptr<int> _token;
}
- (instancetype)initWithToken:(std::shared_ptr<int>)token {
  self = [super init];
  _token = std::move(token);
  return self;
}
- (int)size {
  return [super size] + 10;
}
@end

@interface Box (Lid)
- (int)lidSize;
@end

@implementation Box (Lid)
- (int)lidSize {
  return self.size + 100;
}
@end

namespace vistrel::objc {
namespace {

using Live = std::map<std::string, long>;

TEST(ObjectiveCRuntime, AnObjectGoesWithItsLastReference) {
  __weak Thing* seen = nullptr;
  @autoreleasepool {
    Thing* first = [[Thing alloc] init];
    Thing* second = first;
    seen = first;
    first = nullptr;
    EXPECT_TRUE(seen != nullptr);
    EXPECT_EQ(second, seen);
  }
  EXPECT_TRUE(seen == nullptr);
  EXPECT_EQ(liveObjects(), Live());
}

TEST(ObjectiveCRuntime, VariablesOfAnObjectGoWithIt) {
  const auto token = std::make_shared<int>();
  __weak Thing* content = nullptr;
  @autoreleasepool {
    Box* box = [[Box alloc] initWithToken:token];
    box.content = [[Thing alloc] init];
    content = box.content;
    EXPECT_EQ(token.use_count(), 2);
    EXPECT_EQ(liveObjects(), (Live{{"Box", 1}, {"Thing", 1}}));
  }
  EXPECT_EQ(token.use_count(), 1);
  EXPECT_TRUE(content == nullptr);
  EXPECT_EQ(liveObjects(), Live());
}

TEST(ObjectiveCRuntime, AWeakPropertyKeepsNothing) {
  @autoreleasepool {
    Box* box = [[Box alloc] init];
    @autoreleasepool {
      Thing* label = [[Thing alloc] init];
      box.label = label;
      EXPECT_EQ(box.label, label);
    }
    EXPECT_TRUE(box.label == nullptr);
  }
}

TEST(ObjectiveCRuntime, ABlockKeepsWhatItCapturesStrongly) {
  __weak Thing* seen = nullptr;
  @autoreleasepool {
    Box* box = [[Box alloc] init];
    @autoreleasepool {
      Thing* captured = [[Thing alloc] init];
      seen = captured;
      box.rule = ^(int number) {
        return number + captured.size;
      };
    }
    EXPECT_TRUE(seen != nullptr);
    EXPECT_EQ(box.rule(6), 7);
  }
  EXPECT_TRUE(seen == nullptr);
}

TEST(ObjectiveCRuntime, MethodsAreInheritedOverriddenAndAddedByCategories) {
  @autoreleasepool {
    Box* box = [[Box alloc] init];
    EXPECT_EQ(box.size, 11);
    EXPECT_EQ(box.weight, 2.5);
    EXPECT_EQ([box lidSize], 111);
  }
}

TEST(ObjectiveCRuntime, NilAnswersNothingOfEachKind) {
  Box* box = nullptr;
  EXPECT_EQ(box.size, 0);
  EXPECT_EQ(box.weight, 0);
  EXPECT_EQ(box.extent.height, 0);
  EXPECT_TRUE(box.content == nullptr);
}

TEST(ObjectiveCRuntime, EachThreadHasItsOwnPools) {
  __weak Thing* seen = nullptr;
  @autoreleasepool {
    Thing* maker = [[Thing alloc] init];
    std::thread([&] {
      @autoreleasepool {
        seen = [maker freshThing];
      }
      EXPECT_TRUE(seen == nullptr);
    }).join();
  }
}

TEST(ObjectiveCRuntime, AResultThatItsCallerTakesOverNeedsNoPool) {
  Thing* thing = [[Thing alloc] init];
  __weak Thing* seen = nullptr;
  {
    Thing* fresh = [thing freshThing];
    seen = fresh;
    EXPECT_TRUE(seen != nullptr);
  }
  EXPECT_TRUE(seen == nullptr);
}

TEST(ObjectiveCRuntime, AnAssociatedObjectGoesWithItsOwner) {
  static const char key = 0;
  __weak Thing* seen = nullptr;
  @autoreleasepool {
    Thing* owner = [[Thing alloc] init];
    @autoreleasepool {
      Thing* associated = [[Thing alloc] init];
      seen = associated;
      objc_setAssociatedObject(owner, &key, associated, 1);
    }
    EXPECT_EQ(objc_getAssociatedObject(owner, &key), seen);
    EXPECT_TRUE(seen != nullptr);
  }
  EXPECT_TRUE(seen == nullptr);
}

TEST(ObjectiveCRuntimeDeathTest, AMessageThatNobodyImplementsEndsTheProcess) {
  id thing = [[Thing alloc] init];
  EXPECT_DEATH([thing lidSize], R"(-\[Thing lidSize\]: no such method)");
}

TEST(ObjectiveCRuntimeDeathTest, LeavingAnObjectToAMissingPoolEndsTheProcess) {
  Thing* thing = [[Thing alloc] init];
  EXPECT_DEATH(objc_autorelease(thing), "where there is none: a leak");
}

}  // namespace
}  // namespace vistrel::objc
