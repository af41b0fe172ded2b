#pragma once

#include <cstdint>

#include "tests/support/PersonInput.h"
#include "tests/support/WaylandClient.h"

struct org_kde_kwin_fake_input;

namespace vistrel::testbed {

/// A person's pointer and keyboard in a session of KWin (org_kde_kwin_fake_input).
class FakeInput : public PersonInput {
 public:
  /// `client` outlives this object. Throws std::runtime_error where this is not granted.
  explicit FakeInput(const WaylandClient& client);
  ~FakeInput() override;

  void moveTo(Point point) override;

 private:
  void turn(Button button, bool isDown) override;
  void turnKey(std::uint32_t key, bool isDown) override;

  const WaylandClient* client_;
  org_kde_kwin_fake_input* input_;
};

}  // namespace vistrel::testbed
