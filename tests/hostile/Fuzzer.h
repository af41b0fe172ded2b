#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/x11/listing/ShareableContentService.h"
#include "platform/linux/x11/listing/WindowList.h"
#include "tests/linux/pictures/TestMirror.h"
#include "tests/support/InputDriver.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::hostile {

using platform::linux_desktop::TestMirror;

/// Programs gone mad on a display, and the window list and some mirrors in the midst of them. What
/// they do is random but for the seed: windows of every kind come, go, and move into one another;
/// properties of any type, format and length come and go; events are made up; selections change
/// hands; desktop files are written, or what is none; programs are killed; streams start, stop and
/// change at any moment.
///
/// The same seed does the same things in the same order; how far the mirrors' threads are by then
/// is up to the system.
class Fuzzer {
 public:
  /// `display` outlives this object, and is the process's own.
  Fuzzer(const testbed::PrivateDisplay& display, std::uint64_t seed);
  ~Fuzzer();
  Fuzzer(const Fuzzer&) = delete;
  Fuzzer& operator=(const Fuzzer&) = delete;

  /// Does `rounds` more things. Stops at the first defect and says what it is; empty when there was
  /// none.
  std::string run(int rounds);
  /// Brings everything to rest. Says what is not as it was at the start: requests without an
  /// answer, mirrors that mirror no more, objects that the server still keeps for us.
  std::string finish();

  int rounds() const { return rounds_; }
  int listings() const { return listings_; }
  /// Frames that all mirrors together were given.
  int samples() const;

 private:
  struct Window {
    xcb_window_t id;
    xcb_gcontext_t pen;
    std::uint8_t depth;
    /// As the list must give it, while nothing else has been written there.
    std::optional<std::string> title;
  };
  /// A thing to do, and how often compared with the others.
  struct Deed {
    int weight;
    void (Fuzzer::*perform)();
  };

  // The programs' deeds.
  void createWindow();
  void mapWindow();
  void unmapWindow();
  void destroyWindow();
  void reparentWindow();
  void configureWindow();
  void shapeWindow();
  void paint();
  void setProperty();
  void setTitle();
  void deleteProperty();
  void setClientList();
  void setManager();
  void sendEvent();
  void takeSelection();
  void writeDesktopFile();
  void movePointer();
  void killProgram();
  // A person's.
  void startMirror();
  void stopMirror();
  void configureMirror();
  void resizePanel();
  void list();

  void openProgram();
  void drainProgram();
  std::string defect();
  std::string wrongListing();
  /// What the list must hold, by asking about one window after another.
  std::vector<xcb_window_t> expectedIds();
  /// None where there is no manager, or no list of its.
  std::optional<std::vector<xcb_window_t>> managersList();
  void mirrorWellBehavedSource();
  std::string mirrorsThatAreWrong();
  std::vector<std::string> resources() const;

  static constexpr const char* checkProperty = "_NET_SUPPORTING_WM_CHECK";
  static constexpr const char* listProperty = "_NET_CLIENT_LIST";

  int below(int bound);
  bool oneIn(int count) { return below(count) == 0; }
  std::uint32_t anything();
  /// Mostly one of the programs' windows, sometimes any other, or none.
  xcb_window_t someWindow();
  Window* ownWindow();
  TestMirror& someMirror();
  std::string_view somePropertyName();
  xcb_atom_t someAtom();
  std::string someBytes();
  std::string someDesktopText();

  const testbed::PrivateDisplay& display_;
  std::mt19937_64 random_;
  testbed::XConnection person_;
  testbed::InputDriver pointer_;
  std::unique_ptr<testbed::XConnection> program_;
  std::vector<Window> windows_;
  const std::unique_ptr<platform::linux_desktop::Connection> lister_;
  platform::linux_desktop::ApplicationNames names_;
  platform::linux_desktop::ShareableContentService service_{
      std::make_shared<platform::linux_desktop::SharedScreenLayout>()};
  int listsAsked_ = 0;  // of service_
  std::shared_ptr<std::atomic<int>> answers_ = std::make_shared<std::atomic<int>>(0);
  std::vector<std::unique_ptr<TestMirror>> mirrors_;
  std::vector<std::string> resourcesAtStart_;
  int rounds_ = 0;
  int listings_ = 0;
};

}  // namespace vistrel::hostile
