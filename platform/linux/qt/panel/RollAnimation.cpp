#include "platform/linux/qt/panel/RollAnimation.h"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

#include "platform/linux/CurrentThread.h"

namespace vistrel::platform::linux_desktop {

namespace {

constexpr int millisecondsPerStep = 16;
constexpr int longestRoll = 180;

}  // namespace

int heightOnTheWay(int from, int to, double progress) {
  const double t = std::clamp(progress, 0.0, 1.0);
  const double eased = t * t * (3 - 2 * t);
  return from + static_cast<int>(std::lround((to - from) * eased));
}

PanelChrome topOf(const PanelChrome& chrome, int height) {
  PanelChrome top = chrome;
  top.height = std::min(height, chrome.height);
  top.pixels = chrome.pixels.top(top.height);
  return top;
}

int rollDuration() {
  return std::min(longestRoll,
                  QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration));
}

RollAnimation::RollAnimation(std::function<void()> step) : step_(std::move(step)) {
  steps_.setInterval(millisecondsPerStep);
  steps_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&steps_, &QTimer::timeout, &steps_, [this] { this->step(); });
}

void RollAnimation::start(int from, int to) {
  assert(isMainThread());
  duration_ = rollDuration();
  if (duration_ <= 0) return;
  from_ = from;
  to_ = to;
  height_ = from;
  sinceStart_.start();
  steps_.start();
}

void RollAnimation::step() {
  const double progress = static_cast<double>(sinceStart_.elapsed()) / duration_;
  height_ = heightOnTheWay(from_, to_, progress);
  if (progress >= 1) stop();
  step_();
}

}  // namespace vistrel::platform::linux_desktop
