#include <gtest/gtest.h>

#include "platform/Dispatch.h"
#include "platform/simulated/SimulatedBackend.h"

namespace vistrel::platform {
namespace {

struct TellsWhenItGoes {
  explicit TellsWhenItGoes(bool& wentOnMain) : wentOnMain_(wentOnMain) {}
  ~TellsWhenItGoes() { wentOnMain_ = mainQueue().isCurrent(); }
  bool& wentOnMain_;
};

TEST(OwnedByMain, GoesAtTheNextTurnOfTheMainQueue) {
  simulated::SimulatedBackend desktop;
  bool wentOnMain = false;
  auto object = makeOwnedByMain<TellsWhenItGoes>(wentOnMain);
  object.reset();
  EXPECT_FALSE(wentOnMain);
  desktop.turnMainQueue();
  EXPECT_TRUE(wentOnMain);
}

TEST(OwnedByMain, GoesOnMainWhenAnotherQueueReleasesItLast) {
  simulated::SimulatedBackend desktop;
  bool wentOnMain = false;
  auto object = makeOwnedByMain<TellsWhenItGoes>(wentOnMain);
  makeSerialQueue("other", QualityOfService::standard)->async([last = std::move(object)] {});
  desktop.turnMainQueue();
  EXPECT_TRUE(wentOnMain);
}

}  // namespace
}  // namespace vistrel::platform
