#include <gtest/gtest.h>
#include <map>
#include <random>

#include "catalogue/WindowMirrorManager.h"
#include "tests/core/CoreTest.h"

namespace vistrel {
namespace {

using platform::Menu;
using platform::MenuItem;
using enum PeerCall::Kind;

class MirrorRegistryTest : public CoreTest {
 protected:
  WindowMirrorHUDController& mirrorOf(const WindowRecord& source) {
    return *manager_->mirrors().at(source->windowID);
  }
  /// The index that the mirror was placed by.
  int cascadeOf(const WindowRecord& source) {
    const auto screen = platform::mainScreen();
    const double inset = mirrorOf(source).panel()->frame().minX() - screen->visibleFrame.minX();
    return static_cast<int>((inset - 32) / 28);
  }
  platform::Window* frontmost() { return windows().windowsFrontToBack().front(); }

  std::shared_ptr<WindowMirrorManager> manager_ = WindowMirrorManager::make();
};

TEST_F(MirrorRegistryTest, OpensAMirrorAndShowsIt) {
  const auto source = openSource();
  manager_->mirror(source);
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_EQ(mirrorOf(source).windowID(), source->windowID);
  EXPECT_TRUE(mirrorOf(source).panel()->isVisible());
  desktop_.turnMainQueue();
  EXPECT_TRUE(capture().lastStream()->isRunning());
}

TEST_F(MirrorRegistryTest, BringsTheMirrorThatAWindowHasForward) {
  const auto first = openSource();
  const auto second = openSource();
  manager_->mirror(first);
  manager_->mirror(second);
  desktop_.turnMainQueue();
  mirrorOf(first).panel()->setFrame(rect(5, 6, 500, 400), Redisplay::atOnce);
  EXPECT_EQ(frontmost(), mirrorOf(second).panel().get());
  manager_->mirror(first);
  desktop_.turnMainQueue();
  EXPECT_EQ(manager_->mirrors().size(), 2U);
  EXPECT_EQ(frontmost(), mirrorOf(first).panel().get());
  EXPECT_EQ(mirrorOf(first).panel()->frame(), rect(5, 6, 500, 400));
  EXPECT_EQ(capture().streams().size(), 2U);
  EXPECT_THAT(desktop_.application().activations(), IsEmpty());
}

TEST_F(MirrorRegistryTest, UnrollsAMirrorThatItBringsForward) {
  const auto source = openSource();
  manager_->mirror(source);
  const Rect frame = mirrorOf(source).panel()->frame();
  mirrorOf(source).toggleRollUp();
  const auto history = windows().historyOf(*mirrorOf(source).panel());
  history->calls.clear();
  manager_->mirror(source);
  EXPECT_FALSE(inside(mirrorOf(source)).rolledUp());
  EXPECT_EQ(mirrorOf(source).panel()->frame(), frame);
  EXPECT_THAT(history->steps(), ElementsAre(frameDidChange, orderFrontRegardless));
}

TEST_F(MirrorRegistryTest, KnowsAWindowByItsNumberAlone) {
  const auto source = openSource();
  manager_->mirror(source);
  auto renamed = *source;
  renamed.title = "Other";
  manager_->mirror(std::make_shared<const ShareableWindow>(renamed));
  EXPECT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_EQ(inside(mirrorOf(source)).sourceTitle(), "Title");
}

TEST_F(MirrorRegistryTest, CascadesByTheNumberOfOpenMirrors) {
  const auto first = openSource();
  const auto second = openSource();
  const auto third = openSource();
  manager_->mirror(first);
  manager_->mirror(second);
  EXPECT_EQ(cascadeOf(first), 0);
  EXPECT_EQ(cascadeOf(second), 1);
  mirrorOf(first).closeClicked();
  manager_->mirror(third);
  EXPECT_EQ(cascadeOf(third), 1);
}

TEST_F(MirrorRegistryTest, ForgetsAMirrorThatAPersonCloses) {
  const auto source = openSource();
  manager_->mirror(source);
  const std::weak_ptr<WindowMirrorHUDController> mirror = manager_->mirrors().begin()->second;
  desktop_.turnMainQueue();
  mirror.lock()->closeClicked();
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
  desktop_.turnMainQueue();
  EXPECT_TRUE(mirror.expired());
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
}

TEST_F(MirrorRegistryTest, OpensAWindowAgainAfterItsMirrorWasClosed) {
  const auto source = openSource();
  manager_->mirror(source);
  mirrorOf(source).closeClicked();
  manager_->mirror(source);
  EXPECT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_TRUE(mirrorOf(source).panel()->isVisible());
}

TEST_F(MirrorRegistryTest, MirrorsAWindowThatIsGone) {
  const auto source = openSource();
  capture().closeWindow(source->windowID);
  manager_->mirror(source);
  desktop_.turnMainQueue();
  EXPECT_EQ(partsOf(mirrorOf(source)).statusLabel->stringValue(),
            "Source window is no longer available.");
}

TEST_F(MirrorRegistryTest, ClosesAllMirrorsAtOnce) {
  std::vector<std::weak_ptr<WindowMirrorHUDController>> mirrors;
  std::vector<std::shared_ptr<platform::simulated::WindowHistory>> histories;
  for (int i = 0; i < 3; ++i) manager_->mirror(openSource());
  desktop_.turnMainQueue();
  for (const auto& [id, mirror] : manager_->mirrors()) {
    mirrors.push_back(mirror);
    histories.push_back(windows().historyOf(*mirror->panel()));
  }
  manager_->closeAll();
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
  desktop_.turnMainQueue();
  for (const auto& mirror : mirrors) EXPECT_TRUE(mirror.expired());
  for (const auto& history : histories) {
    EXPECT_EQ(history->count(orderOut), 1);
    EXPECT_EQ(history->count(PeerCall::Kind::close), 1);
  }
  for (const auto& stream : capture().streams()) {
    EXPECT_EQ(stream->steps().back(), StreamCall::Kind::stop);
  }
}

TEST_F(MirrorRegistryTest, ClosesAllMirrorsFromTheMenu) {
  manager_->mirror(openSource());
  manager_->hideAllAction();
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

class ClosingCallsOutTest : public MirrorRegistryTest {
 protected:
  /// Opens mirrors of parked windows; `reaction` comes while closing them moves the first one home.
  void openParkedMirrors(const std::function<void()>& reaction) {
    for (int i = 0; i < 3; ++i) {
      const auto source = openSource();
      sources_.push_back(source);
      manager_->mirror(source);
      mirrorOf(source).toggleKeepAwake();
      panels_.push_back(mirrorOf(source).panel());
    }
    desktop_.accessibility().setWhenTold([this, reaction](WindowID) {
      if (!std::exchange(hasReacted_, true)) reaction();
    });
  }
  void expectAllClosed() {
    for (const auto& panel : panels_) EXPECT_FALSE(panel->isVisible());
  }

  std::vector<platform::WindowRecord> sources_;
  std::vector<std::shared_ptr<platform::Window>> panels_;
  bool hasReacted_ = false;
};

TEST_F(ClosingCallsOutTest, MirrorOpenedMeanwhileStaysOpen) {
  const auto opened = openSource();
  openParkedMirrors([&] { manager_->mirror(opened); });
  manager_->closeAll();
  expectAllClosed();
  ASSERT_EQ(manager_->mirrors().size(), 1U);
  EXPECT_TRUE(mirrorOf(opened).panel()->isVisible());
}

// Each mirror's onClosed would have the registry forget what it holds under that source.
TEST_F(ClosingCallsOutTest, CallsNoOnClosed) {
  openParkedMirrors([&] {
    for (const auto& source : sources_) manager_->mirror(source);
  });
  manager_->closeAll();
  expectAllClosed();
  EXPECT_EQ(manager_->mirrors().size(), sources_.size());
}

TEST_F(ClosingCallsOutTest, AllMayBeClosedMeanwhile) {
  openParkedMirrors([&] { manager_->closeAll(); });
  manager_->closeAll();
  expectAllClosed();
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(MirrorRegistryTest, EachOfTwoMirrorsOffersToHideThemAll) {
  const auto first = openSource();
  const auto second = openSource();
  manager_->mirror(first);
  EXPECT_EQ(mirrorOf(first).makeContextMenu()->items().size(), 7U);
  manager_->mirror(second);
  for (const auto& source : {first, second}) {
    const auto menu = mirrorOf(source).makeContextMenu();
    ASSERT_EQ(menu->items().size(), 8U);
    EXPECT_EQ(menu->items().back()->title(), "Hide All Window Mirrors");
  }
  platform::performAction(mirrorOf(second).makeContextMenu()->items().back());
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(MirrorRegistryTest, ClosingWithoutAnyMirrorIsHarmless) {
  manager_->closeAll();
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(MirrorRegistryTest, MirrorThatOutlivesItsRegistryMayStillBeClosed) {
  manager_->mirror(openSource());
  const auto mirror = manager_->mirrors().begin()->second;
  manager_.reset();
  desktop_.turnMainQueue();
  mirror->closeClicked();
  EXPECT_FALSE(mirror->panel()->isVisible());
}

/// What the registry is to do, in the plainest way.
struct RegistryModel {
  struct Mirror {
    int cascade = 0;
    bool rolledUp = false;
  };
  std::map<WindowID, Mirror> mirrors;

  void mirror(WindowID id) {
    const auto found = mirrors.find(id);
    if (found != mirrors.end()) {
      found->second.rolledUp = false;
    } else {
      mirrors[id] = {static_cast<int>(mirrors.size()), false};
    }
  }
};

class RegistryWalkTest : public MirrorRegistryTest {
 protected:
  RegistryWalkTest() {
    for (int i = 0; i < 6; ++i) sources_.push_back(openSource());
  }

  void step() {
    const auto& source = sources_[random_() % sources_.size()];
    const WindowID id = source->windowID;
    const bool isOpen = model_.mirrors.contains(id);
    switch (random_() % 12) {
      case 0:
        manager_->closeAll();
        model_.mirrors.clear();
        break;
      case 1:
      case 2:
      case 3:
        if (isOpen) manager_->mirrors().at(id)->closeClicked();
        model_.mirrors.erase(id);
        break;
      case 4:
      case 5:
        if (isOpen) manager_->mirrors().at(id)->toggleRollUp();
        if (isOpen) model_.mirrors[id].rolledUp ^= true;
        break;
      case 6:
        desktop_.turnMainQueue();
        break;
      case 7:
        desktop_.virtualTime().turnOtherQueues();
        break;
      case 8:
        if (const auto stream = capture().lastStream()) stream->deliver({.image = brightPixels()});
        break;
      default:
        manager_->mirror(source);
        model_.mirror(id);
    }
  }

  void expectAgreement() {
    ASSERT_EQ(manager_->mirrors().size(), model_.mirrors.size());
    for (const auto& source : sources_) {
      const auto found = model_.mirrors.find(source->windowID);
      ASSERT_EQ(manager_->mirrors().contains(source->windowID), found != model_.mirrors.end());
      if (found == model_.mirrors.end()) continue;
      ASSERT_EQ(mirrorOf(source).windowID(), source->windowID);
      ASSERT_EQ(inside(mirrorOf(source)).rolledUp(), found->second.rolledUp);
      ASSERT_EQ(cascadeOf(source), found->second.cascade);
      ASSERT_TRUE(mirrorOf(source).panel()->isVisible());
    }
  }

  std::vector<WindowRecord> sources_;
  RegistryModel model_;
  std::mt19937 random_{23};
};

TEST_F(RegistryWalkTest, AgreesWithAModel) {
  for (int i = 0; i < 10'000; ++i) {
    step();
    ASSERT_NO_FATAL_FAILURE(expectAgreement()) << "after step " << i;
  }
}

TEST_F(RegistryWalkTest, LeavesNoPanelAndNoStreamBehind) {
  for (int i = 0; i < 1000; ++i) step();
  manager_->closeAll();
  desktop_.turnMainQueue();
  EXPECT_THAT(windows().windowsFrontToBack(), IsEmpty());
  for (const auto& stream : capture().streams()) EXPECT_FALSE(stream->isHeld());
}

class FocusMenuTest : public MirrorRegistryTest {
 protected:
  std::vector<std::string> titles() {
    std::vector<std::string> titles;
    for (const auto& item : menu_->items()) titles.push_back(item->title());
    return titles;
  }
  void choose(std::size_t index) { platform::performAction(menu_->items().at(index)); }

  const std::shared_ptr<Menu> menu_ = std::make_shared<Menu>("Focus Window Mirror");
};

TEST_F(FocusMenuTest, SaysThatNoMirrorIsOpen) {
  manager_->menuNeedsUpdate(*menu_);
  ASSERT_THAT(titles(), ElementsAre("No window mirrors open"));
  const MenuItem& item = *menu_->items().front();
  EXPECT_FALSE(item.isEnabled());
  EXPECT_EQ(item.action().selector(), "");
  EXPECT_EQ(item.representedObject(), nullptr);
}

TEST_F(FocusMenuTest, ListsMirrorsWithoutRegardToCase) {
  manager_->mirror(openSource("Viewer", "b"));
  manager_->mirror(openSource("mail", "a"));
  manager_->menuNeedsUpdate(*menu_);
  EXPECT_THAT(titles(), ElementsAre("mail — a", "Viewer — b"));
}

TEST_F(FocusMenuTest, ListsMirrorsAsPlainItems) {
  const auto source = openSource("Viewer", "b");
  manager_->mirror(source);
  manager_->menuNeedsUpdate(*menu_);
  const MenuItem& item = *menu_->items().front();
  EXPECT_TRUE(item.isEnabled());
  EXPECT_EQ(item.keyEquivalent(), "");
  EXPECT_EQ(item.action().selector(), "focusFromMenu:");
  EXPECT_EQ(item.action().target(), manager_);
  EXPECT_EQ(item.representedObject(), manager_->mirrors().at(source->windowID));
}

TEST_F(FocusMenuTest, IsFilledAnewEachTime) {
  manager_->mirror(openSource("Viewer", "b"));
  manager_->menuNeedsUpdate(*menu_);
  manager_->mirror(openSource("mail", "a"));
  manager_->menuNeedsUpdate(*menu_);
  EXPECT_EQ(menu_->items().size(), 2U);
  manager_->closeAll();
  manager_->menuNeedsUpdate(*menu_);
  EXPECT_THAT(titles(), ElementsAre("No window mirrors open"));
}

TEST_F(FocusMenuTest, BringsTheChosenMirrorForwardUnrolled) {
  const auto first = openSource("a", "a");
  manager_->mirror(first);
  manager_->mirror(openSource("b", "b"));
  mirrorOf(first).toggleRollUp();
  manager_->menuNeedsUpdate(*menu_);
  choose(0);
  EXPECT_FALSE(inside(mirrorOf(first)).rolledUp());
  EXPECT_EQ(frontmost(), mirrorOf(first).panel().get());
}

TEST_F(FocusMenuTest, IgnoresItemsThatStandForNothingOrSomethingElse) {
  manager_->mirror(openSource());
  MenuItem item("x", {}, "");
  manager_->focusFromMenu(item);
  item.setRepresentedObject(std::make_shared<platform::RepresentedObject>());
  manager_->focusFromMenu(item);
}

TEST_F(FocusMenuTest, BringsForwardAMirrorThatWasClosedMeanwhileWithoutHarm) {
  manager_->mirror(openSource());
  manager_->menuNeedsUpdate(*menu_);
  manager_->closeAll();
  desktop_.turnMainQueue();
  choose(0);
  EXPECT_THAT(manager_->mirrors(), IsEmpty());
}

TEST_F(FocusMenuTest, IsToldByItsTitleAlone) {
  const std::string selectorOfWindows = "pickFromMenu:";
  const std::string selectorOfMirrors = "focusFromMenu:";
  manager_->mirror(openSource("Viewer", "b"));
  const auto selectorIn = [this](const std::string& title) {
    const auto menu = std::make_shared<Menu>(title);
    manager_->menuNeedsUpdate(*menu);
    desktop_.turnMainQueue();
    return menu->items().back()->action().selector();
  };
  for (const char* title : {"Mirror Window", "Focus Mirror", "focus window mirror",
                            "Focus Window Mirror ", "Focus Window Mirrors", ""}) {
    EXPECT_EQ(selectorIn(title), selectorOfWindows) << title;
  }
  for (int i = 0; i < 2; ++i) EXPECT_EQ(selectorIn("Focus Window Mirror"), selectorOfMirrors);
}

}  // namespace
}  // namespace vistrel
