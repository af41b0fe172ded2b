#include <map>
#include <utility>

#include "platform/linux/SerialQueue.h"
#include "platform/linux/x11/panel/FloatingPanels.h"
#include "tests/hostile/HostileTest.h"

namespace vistrel::hostile {
namespace {

using namespace platform::linux_desktop;
using testing::ElementsAre;
using testing::IsEmpty;

/// Panels under a manager that the test plays, and that does as it pleases.
class Panels : public HostileTest {
 protected:
  Panels() {
    const std::uint32_t messages = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), connection_.root(), XCB_CW_EVENT_MASK,
                                 &messages);
    for (const RawSource* each : {&film_, &panel_, &witness_, &laterFilm_}) {
      connection_.setNumbers(each->id(), "WM_STATE", connection_.atom("WM_STATE"), {1, 0});
    }
    for (const RawSource* each : {&film_, &laterFilm_}) {
      setStates(*each, {"_NET_WM_STATE_FULLSCREEN"});
    }
    for (const RawSource* each : {&panel_, &witness_}) {
      setStates(*each, panelStates);
      connection_.setNumbers(each->id(), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {0xffffffff});
    }
    queue_->async([this] {
      panels_->add(panel_.id());
      panels_->add(witness_.id());
    });
  }
  ~Panels() override {
    asyncAndWait(*queue_, [] {});
  }

  void setStates(const RawSource& window, const std::vector<const char*>& names) const {
    std::vector<std::uint32_t> atoms;
    for (const char* name : names) atoms.push_back(connection_.atom(name));
    connection_.setNumbers(window.id(), "_NET_WM_STATE", XCB_ATOM_ATOM, atoms);
    connection_.sync();
  }
  /// The same again is news to whoever listens.
  void takeStateAway(const RawSource& panel) const {
    setStates(panel, {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"});
  }
  void setActive(xcb_window_t window) const {
    connection_.setNumbers(connection_.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
    connection_.sync();
    asyncAndWait(*queue_, [] {});
  }
  /// How often the manager has been asked by `message` about `window`, all in all.
  int timesAsked(const char* message, const RawSource& window) {
    while (
        const testbed::XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
      if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE) continue;
      const auto& asked = *reinterpret_cast<const xcb_client_message_event_t*>(event.get());
      ++asked_[{asked.type, asked.window}];
    }
    return asked_[{connection_.atom(message), window.id()}];
  }
  bool isAskedFor(const char* message, const RawSource& window, int times) {
    return testbed::eventually([&] { return timesAsked(message, window) == times; });
  }
  /// Until all that has happened so far has been looked at.
  void awaitLook() {
    const int times = timesAsked("_NET_WM_STATE", witness_);
    takeStateAway(witness_);
    ASSERT_TRUE(isAskedFor("_NET_WM_STATE", witness_, times + 1));
  }
  bool isTransientOf(const auto& owners) const {
    return testbed::eventually([&] {
      return testing::Matches(owners)(connection_.numbers(panel_.id(), "WM_TRANSIENT_FOR"));
    });
  }

  inline static const std::vector<const char*> panelStates{
      "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"};
  const RawSource film_{connection_, {}};
  const RawSource panel_{connection_, {}};
  const RawSource witness_{connection_, {}};
  const RawSource laterFilm_{connection_, {}};
  const std::shared_ptr<SerialQueue> queue_ =
      SerialQueue::make("panels", platform::QualityOfService::standard);
  const std::shared_ptr<FloatingPanels> panels_ = FloatingPanels::on(queue_);

 private:
  std::map<std::pair<xcb_atom_t, xcb_window_t>, int> asked_;
};

TEST_F(Panels, AreTransientsOfAFullScreenWindowOnlyWhereItLiesAboveThem) {
  setActive(film_.id());
  awaitLook();
  EXPECT_TRUE(isTransientOf(IsEmpty()));
  setActive(laterFilm_.id());
  EXPECT_TRUE(isTransientOf(ElementsAre(laterFilm_.id())));
  setActive(film_.id());
  EXPECT_TRUE(isTransientOf(IsEmpty()));
}

TEST_F(Panels, AreKeptAboveAfterTheRootWasSaidToBeActive) {
  setActive(connection_.root());
  setActive(laterFilm_.id());
  EXPECT_TRUE(isTransientOf(ElementsAre(laterFilm_.id())));
  setActive(XCB_WINDOW_NONE);
  EXPECT_TRUE(isTransientOf(IsEmpty()));
}

TEST_F(Panels, AreAskedForThreeTimesAndNoMoreWhereTheirStateIsAlwaysTakenAway) {
  constexpr auto state = "_NET_WM_STATE";
  for (const int times : {1, 2, 3}) {
    takeStateAway(panel_);
    ASSERT_TRUE(isAskedFor(state, panel_, times));
  }
  takeStateAway(panel_);
  awaitLook();
  EXPECT_EQ(timesAsked(state, panel_), 3);

  setActive(film_.id());
  EXPECT_TRUE(isAskedFor(state, panel_, 4)) << "another window is full-screen";
}

TEST_F(Panels, AreAskedForAgainOnceTheyAreShownAgain) {
  constexpr auto state = "_NET_WM_STATE";
  for (const int times : {1, 2, 3}) {
    takeStateAway(panel_);
    ASSERT_TRUE(isAskedFor(state, panel_, times));
  }
  asyncAndWait(*queue_, [&] { panels_->add(panel_.id()); });
  EXPECT_TRUE(isAskedFor(state, panel_, 4));
}

TEST_F(Panels, AreNotAskedForWhileTheyAreNotManaged) {
  connection_.setNumbers(panel_.id(), "WM_STATE", connection_.atom("WM_STATE"), {0, 0});
  takeStateAway(panel_);
  awaitLook();
  EXPECT_EQ(timesAsked("_NET_WM_STATE", panel_), 0);
}

TEST_F(Panels, ComeBackToEveryDesktopAndDemandNoAttention) {
  setStates(panel_, {"_NET_WM_STATE_ABOVE", "_NET_WM_STATE_SKIP_TASKBAR",
                     "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_DEMANDS_ATTENTION"});
  EXPECT_TRUE(isAskedFor("_NET_WM_STATE", panel_, 1));
  setStates(panel_, panelStates);
  connection_.setNumbers(panel_.id(), "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {2});
  connection_.sync();
  EXPECT_TRUE(isAskedFor("_NET_WM_DESKTOP", panel_, 1));
}

TEST_F(Panels, GiveTheKeyboardBackButNotForEver) {
  setActive(film_.id());
  awaitLook();
  for (int time = 0; time < 100; ++time) setActive(panel_.id());
  awaitLook();
  EXPECT_EQ(timesAsked("_NET_ACTIVE_WINDOW", film_), 20);
}

}  // namespace
}  // namespace vistrel::hostile
