#include "tests/contract/BackendBed.h"

#include <QCoreApplication>
#include <chrono>
#include <stdexcept>
#include <utility>

#include "platform/Application.h"
#include "platform/Factory.h"
#include "tests/support/Poll.h"

namespace vistrel::contract {
namespace {

std::unique_ptr<platform::Backend> start() {
  static char program[] = "contract";
  static char* arguments[] = {program, nullptr};
  auto [backend, failure] = platform::makeBackend(1, arguments, platform::Instances::any);
  if (!backend) throw std::runtime_error(failure);
  return std::move(backend);
}

}  // namespace

testbed::Quadrants quadrants(const Quadrants& colors) {
  const auto rgb = [](platform::PixelBGRA color) {
    return testbed::Rgb{color.red, color.green, color.blue};
  };
  return {rgb(colors[0]), rgb(colors[1]), rgb(colors[2]), rgb(colors[3])};
}

BackendBed::BackendBed() : backend_(start()), installation_(*backend_) { wakeUp_.start(5); }

BackendBed::~BackendBed() {
  // The program's own way out: what is still queued runs, threads end.
  backend_->application().terminate();
  backend_->application().run();
}

bool BackendBed::turnUntil(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + testbed::generousDeadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

}  // namespace vistrel::contract
