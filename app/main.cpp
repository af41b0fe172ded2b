#include <cstdio>
#include <memory>

#include "app/AppDelegate.h"
#include "app/SelfTests.h"
#include "platform/Application.h"
#include "platform/Backend.h"
#include "platform/Factory.h"

namespace vistrel {

platform::Application* app = nullptr;
/// Held here because the application object keeps its delegate only weakly.
std::shared_ptr<AppDelegate> delegate;

namespace {

void runApplication() {
  app = &platform::Application::shared();
  app->setActivationPolicy(platform::ActivationPolicy::regular);
  delegate = std::make_shared<AppDelegate>();
  app->setDelegate(delegate);
  app->run();
}

int runSelfTest(SelfTest test, int argc, char** argv) {
  const auto backend = platform::makeSelfTestBackend(argc, argv);
  const platform::BackendInstallation installation(*backend);
  return run(test);
}

}  // namespace

}  // namespace vistrel

int main(int argc, char** argv) {
  using namespace vistrel::platform;
  if (const auto test = vistrel::selfTestAskedFor({argv, argv + argc})) {
    return vistrel::runSelfTest(*test, argc, argv);
  }
  const auto [backend, failure] = makeBackend(argc, argv, Instances::one);
  if (!backend) {
    if (failure.empty()) return 0;
    std::fprintf(stderr, "%s\n", failure.c_str());
    return 1;
  }
  const BackendInstallation installation(*backend);
  vistrel::runApplication();
  return 0;
}
