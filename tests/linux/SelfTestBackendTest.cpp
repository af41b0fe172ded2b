#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <unistd.h>

#include "platform/Backend.h"
#include "platform/Factory.h"
#include "tests/support/PrivateDisplay.h"

namespace vistrel::platform {
namespace {

struct FirstQuestion {
  std::string name;
  std::function<bool(Backend&)> isAnswered;

  /// As GoogleTest prints it.
  friend std::ostream& operator<<(std::ostream& stream, const FirstQuestion& question) {
    return stream << question.name;
  }
};

class SelfTestBackendOnADisplay : public testing::TestWithParam<FirstQuestion> {
 protected:
  static std::unique_ptr<Backend> makeBackend() {
    static char program[] = "self-test";
    static char* arguments[] = {program, nullptr};
    return makeSelfTestBackend(1, arguments);
  }
};

TEST_P(SelfTestBackendOnADisplay, AnswersBeforeItsApplicationIsAskedFor) {
  const testbed::PrivateDisplay display;
  display.adoptEnvironment();
  const auto backend = makeBackend();
  const BackendInstallation installation(*backend);
  EXPECT_TRUE(GetParam().isAnswered(*backend));
}

INSTANTIATE_TEST_SUITE_P(
    By, SelfTestBackendOnADisplay,
    testing::Values(FirstQuestion{"Clock",
                                  [](Backend& backend) {
                                    return backend.dispatch().now().secondsSinceReference > 0;
                                  }},
                    FirstQuestion{
                        "Screens",
                        [](Backend& backend) { return backend.windows().screens().size() == 1; }},
                    FirstQuestion{"Process",
                                  [](Backend& backend) {
                                    return backend.workspace().processIdentifier() == ::getpid();
                                  }}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace vistrel::platform
