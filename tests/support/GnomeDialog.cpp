#include "tests/support/GnomeDialog.h"

#include <optional>
#include <stdexcept>

#include "tests/support/Poll.h"

namespace vistrel::testbed {
namespace {

/// Of xdg-desktop-portal-gnome 43, in no language.
constexpr const char* dialogTitle = "Screen Share";

/// The one that takes input; none as long as there is none.
std::optional<Accessible> find(const Accessible& program, const std::string& role,
                               const std::string& name) {
  // A button of GTK 4.8 has its text with the mark of its key before it.
  const std::string ofButton = "_" + name + " " + name;
  for (const Accessible& each : program.all(role)) {
    const bool isIt = each.name() == name || each.name() == ofButton;
    if (isIt && each.is(AccessibleState::sensitive)) return each;
  }
  return {};
}

}  // namespace

bool GnomeDialog::isOpen() const { return shell_.frameOf(dialogTitle).has_value(); }

bool GnomeDialog::lists(const std::string& title) const {
  return isOpen() && find(reader_.program(shell_.processOf(dialogTitle)), "list item", title);
}

void GnomeDialog::share(const std::string& title) {
  awaitDialog();
  click("list item", title);
  click("button", "Share");
  awaitEnd();
}

void GnomeDialog::cancel() {
  awaitDialog();
  click("button", "Cancel");
  awaitEnd();
}

void GnomeDialog::awaitDialog() const {
  if (!eventually([&] { return isOpen(); })) {
    throw std::runtime_error("the portal opens no dialog");
  }
}

void GnomeDialog::awaitEnd() const {
  if (!eventually([&] { return !isOpen(); })) {
    throw std::runtime_error("the portal's dialog stays");
  }
}

void GnomeDialog::click(const std::string& role, const std::string& name) {
  const Accessible program = reader_.program(shell_.processOf(dialogTitle));
  std::optional<Accessible> found;
  if (!eventually([&] { return (found = find(program, role, name)).has_value(); })) {
    throw std::runtime_error("no " + role + " \"" + name + "\" in the portal's dialog");
  }
  // It opens elsewhere than where it then is.
  Point point;
  if (!eventually([&] {
        const Point inWindow = found->areaInWindow().centre();
        const Rect frame = shell_.frameOf(dialogTitle).value_or(Rect{});
        point = {frame.x + inWindow.x, frame.y + inWindow.y};
        hand_->moveTo(point);
        return shell_.isPointedAt(dialogTitle, point) && shell_.frameOf(dialogTitle) == frame;
      })) {
    throw std::runtime_error("the portal's dialog gets no pointer");
  }
  hand_->clickAt(point);
}

}  // namespace vistrel::testbed
