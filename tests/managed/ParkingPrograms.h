#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/managed/Parked.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/MonitorReport.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {

/// Windows that programs park which do not live to restore them. This process is another one of the
/// kind, which has parked nothing.
class ParkedByAProgram : public Parked {
 protected:
  /// Whether programs find a guard to start.
  enum class Guard { present, missing };

  /// On the test's display, unless there is another. Ends by itself unless `deeds` ends with
  /// "pause", or at the step of that number.
  std::unique_ptr<ChildProcess> start(const TestWindow& window,
                                      const std::vector<std::string>& deeds, Guard guard,
                                      std::size_t killedAt = 0,
                                      const PrivateDisplay* display = nullptr);
  /// Returns once the program has parked it.
  std::unique_ptr<ChildProcess> startParked(const TestWindow& window, Guard guard);
  /// The steps of parking and restoring, in order, as one program has taken them.
  std::vector<std::string> stepsOf(const TestWindow& window);
  /// As another start of the program does, whatever becomes of it.
  void startAnother();

  /// The guards that run on this display.
  std::vector<pid_t> guards();
  std::string monitors() { return monitorReport(bed_.session().display()); }
  /// Whether nothing on the display tells of a window that is parked.
  bool isForgotten(const TestWindow& window);
  /// Waits until all of that is as it was, and says what is not.
  ::testing::AssertionResult isAsBefore(const Belongings& before, const std::string& monitorsBefore,
                                        const TestWindow& window);

  /// Kills a program at each step of parking and restoring a window, and has what is left made good
  /// by the guard, or by the next start.
  void expectKillsMadeGood(Guard guard);

  /// A window that has everything that parking takes off.
  std::unique_ptr<TestWindow> openTied();

 private:
  const TemporaryDirectory withoutGuard_;
};

}  // namespace vistrel::testbed
