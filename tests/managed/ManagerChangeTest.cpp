#include "tests/managed/ManagedTest.h"

namespace vistrel::testbed {
namespace {

class ManagerChange : public ManagedTest {
 protected:
  ManagerChange() : ManagedTest(WindowManager::none) {}

  static WindowManager successor() {
    return GetParam() == WindowManager::openbox ? WindowManager::xfwm4 : WindowManager::openbox;
  }
};

TEST_P(ManagerChange, ThePictureGoesOnWhileManagersComeAndGo) {
  const auto window = open();
  const auto streamed = session_.stream(window->id());
  const auto follows = [&] { return matchesScreen(*streamed, window->id()); };
  EXPECT_TRUE(eventually(follows)) << "without a manager";
  EXPECT_EQ(listedFrame(window->id()), window->area());

  session_.display().replaceWindowManager(GetParam());
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()).height > 300; }));
  EXPECT_TRUE(eventually(follows)) << "under the first manager";
  session_.display().replaceWindowManager(successor());
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()).height > 300; }));
  window->show(otherColours);
  EXPECT_TRUE(eventually(follows)) << "under its successor";

  session_.display().replaceWindowManager(WindowManager::none);
  EXPECT_TRUE(eventually([&] { return listedFrame(window->id()) == window->area(); }));
  window->show(fourColours);
  EXPECT_TRUE(eventually(follows)) << "after the last one has gone";
  EXPECT_FALSE(streamed->hasEnded());
}

VISTREL_WITH_EACH_MANAGER(ManagerChange);

}  // namespace
}  // namespace vistrel::testbed
