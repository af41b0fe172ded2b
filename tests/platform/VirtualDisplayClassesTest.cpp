#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/VirtualDisplayClasses.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

using testing::ElementsAre;

/// The classes themselves, over the simulated desktop's server.
class VirtualDisplayClassesTest : public testing::Test {
 protected:
  std::shared_ptr<RuntimeObject> makeDisplay() {
    return classes_->classNamed("CGVirtualDisplay")
        ->make("initWithDescriptor:", {classes_->classNamed("CGVirtualDisplayDescriptor")->make()});
  }

  simulated::SimulatedBackend desktop_;
  std::shared_ptr<simulated::SimulatedVirtualDisplayServer> server_ =
      std::make_shared<simulated::SimulatedVirtualDisplayServer>(desktop_.displays());
  std::unique_ptr<VirtualDisplayClasses> classes_ =
      std::make_unique<VirtualDisplayClasses>(server_);
};

TEST_F(VirtualDisplayClassesTest, AreKnownByFourNames) {
  EXPECT_NE(classes_->classNamed("CGVirtualDisplayDescriptor"), nullptr);
  EXPECT_NE(classes_->classNamed("CGVirtualDisplaySettings"), nullptr);
  EXPECT_NE(classes_->classNamed("CGVirtualDisplayMode"), nullptr);
  EXPECT_NE(classes_->classNamed("CGVirtualDisplay"), nullptr);
  EXPECT_EQ(classes_->classNamed("CGVirtualDisplays"), nullptr);
  EXPECT_EQ(classes_->classNamed(""), nullptr);
}

TEST_F(VirtualDisplayClassesTest, AreMissingWhereTheServerHostsNoDisplays) {
  server_->setHosts(false);
  EXPECT_EQ(classes_->classNamed("CGVirtualDisplay"), nullptr);
}

TEST_F(VirtualDisplayClassesTest, KeepWhatTheirObjectsAreSet) {
  const auto descriptor = classes_->classNamed("CGVirtualDisplayDescriptor")->make();
  EXPECT_EQ(std::get<std::string>(descriptor->send("name")), "");
  descriptor->send("setName:", {std::string("Some name")});
  descriptor->send("setSizeInMillimeters:", {Size{3, 4}});
  EXPECT_EQ(std::get<std::string>(descriptor->send("name")), "Some name");
  EXPECT_EQ(std::get<Size>(descriptor->send("sizeInMillimeters")), (Size{3, 4}));
}

TEST_F(VirtualDisplayClassesTest, ListASetterForEachPropertyThatIsNotReadOnly) {
  const auto settings = classes_->classNamed("CGVirtualDisplaySettings");
  EXPECT_THAT(settings->properties(), ElementsAre(RuntimeProperty{"hiDPI", "TB,N"},
                                                  RuntimeProperty{"modes", "T@\"NSArray\",C,N"}));
  EXPECT_THAT(settings->selectors(), ElementsAre("hiDPI", "setHiDPI:", "modes", "setModes:"));
  EXPECT_THAT(classes_->classNamed("CGVirtualDisplay")->selectors(),
              ElementsAre("initWithDescriptor:", "applySettings:", "displayID"));
}

TEST_F(VirtualDisplayClassesTest, AnswerEverySelectorThatTheyListAsAGetter) {
  for (const char* name : {"CGVirtualDisplayDescriptor", "CGVirtualDisplaySettings",
                           "CGVirtualDisplayMode", "CGVirtualDisplay"}) {
    const auto listed = classes_->classNamed(name);
    const auto object = listed->make();
    for (const RuntimeProperty& property : listed->properties()) {
      EXPECT_THAT(listed->selectors(), testing::Contains(property.name));
      EXPECT_FALSE(std::holds_alternative<std::monostate>(object->send(property.name)));
    }
  }
}

TEST_F(VirtualDisplayClassesTest, LeaveADisplayToAServerThatIsGone) {
  auto display = makeDisplay();
  EXPECT_EQ(server_->live().size(), 1U);
  const std::weak_ptr gone = server_;
  classes_.reset();
  server_.reset();
  ASSERT_TRUE(gone.expired());
  display.reset();
  desktop_.turnMainQueue();
}

using VirtualDisplayClassesDeathTest = VirtualDisplayClassesTest;

TEST_F(VirtualDisplayClassesDeathTest, EndTheProgramOnMessagesThatTheyDoNotKnow) {
  const auto display = makeDisplay();
  const auto settings = classes_->classNamed("CGVirtualDisplaySettings")->make();
  const auto aborts = testing::KilledBySignal(SIGABRT);
  EXPECT_EXIT(display->send("setDisplayID:", {7U}), aborts, "^$");
  EXPECT_EXIT(display->send("displayID", {7U}), aborts, "^$");
  EXPECT_EXIT(settings->send("setHiDPI:"), aborts, "^$");
  EXPECT_EXIT(settings->send("setHiDPI:", {1U}), aborts, "^$");
  EXPECT_EXIT(settings->send("applySettings:", {settings}), aborts, "^$");
}

}  // namespace
}  // namespace vistrel::platform
