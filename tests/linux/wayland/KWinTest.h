#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/session/Session.h"
#include "tests/support/KWinScripts.h"
#include "tests/support/KWinSession.h"
#include "tests/support/NativeWindow.h"
#include "tests/support/TestWindow.h"

namespace vistrel::platform::linux_desktop {

using testbed::eventually;
using testbed::NativeWindow;

/// What the program's session offers in one of KWin. One test for a process.
class KWinTest : public ::testing::Test {
 protected:
  KWinTest() : KWinTest(testbed::KWinSession::Options{}) {}
  explicit KWinTest(const testbed::KWinSession::Options& options);
  ~KWinTest() override;

  /// The program ends, and starts again.
  void end() { session_.reset(); }
  void begin();
  /// Topmost first.
  std::vector<WindowRecord> list(ListedWindows which = ListedWindows::all) const;
  /// Of ordinary windows, topmost first.
  std::vector<std::string> titles(ListedWindows which = ListedWindows::all) const;
  /// Null when there is none.
  WindowRecord titled(const std::string& title) const;

  const testbed::KWinSession desktop_;
  testbed::KWinScripts kwin_{desktop_.busAddress()};
  std::unique_ptr<Session> session_;
};

}  // namespace vistrel::platform::linux_desktop
