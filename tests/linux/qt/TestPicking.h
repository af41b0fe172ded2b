#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/session/WindowPicking.h"

namespace vistrel::platform::linux_desktop {

/// A dialog that tests answer.
class TestPicking final : public WindowPicking {
 public:
  bool canPickInteractively() const override { return canPick_; }
  std::string status() const override { return status_; }
  void setOnChange(std::function<void()> changed) override { changed_ = std::move(changed); }
  void pickInteractively(std::uint32_t parent, Completion completion) override {
    if (opened_) return completion(nullptr);
    parents_.push_back(parent);
    opened_ = std::move(completion);
  }

  void become(bool canPick, std::string status) {
    canPick_ = canPick;
    status_ = std::move(status);
    changed_();
  }
  /// Of the dialogs that were opened, in order.
  const std::vector<std::uint32_t>& parents() const { return parents_; }
  /// The open dialog closes; nothing is picked where `picked` is null.
  void answer(const WindowRecord& picked) { std::exchange(opened_, nullptr)(picked); }

 private:
  bool canPick_ = true;
  std::string status_;
  std::function<void()> changed_;
  std::vector<std::uint32_t> parents_;
  Completion opened_;
};

}  // namespace vistrel::platform::linux_desktop
