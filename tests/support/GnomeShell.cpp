#include "tests/support/GnomeShell.h"

#include <cstdio>
#include <stdexcept>

namespace vistrel::testbed {
namespace {

std::string quoted(const std::string& title) { return "'" + title + "'"; }

}  // namespace

GnomeShell::GnomeShell(const WaylandSession& session)
    : shell_(connectToBus(session.busAddress()), "org.gnome.Shell", "/org/gnome/Shell") {}

std::string GnomeShell::evaluate(const std::string& javaScript) const {
  const std::string script =
      "const win = title => global.get_window_actors().map(each => each.meta_window)"
      ".find(each => each.title === title); " +
      javaScript;
  BusMessage answer = shell_.call("org.gnome.Shell", "Eval", "s", script.c_str());
  const bool isDone = answer.truth();
  std::string value = answer.text();
  if (!isDone) {
    throw std::runtime_error("gnome-shell does not evaluate " + javaScript + ": " + value);
  }
  return value;
}

std::optional<Rect> GnomeShell::frameOf(const std::string& title) const {
  const std::string frame =
      evaluate("const frame = win(" + quoted(title) +
               ")?.get_frame_rect(); frame && [frame.x, frame.y, frame.width, frame.height]");
  Rect rect;
  if (std::sscanf(frame.c_str(), "[%d,%d,%d,%d]", &rect.x, &rect.y, &rect.width, &rect.height) !=
      4) {
    return {};
  }
  return rect;
}

bool GnomeShell::isPointedAt(const std::string& title, Point point) const {
  const std::string place = std::to_string(point.x) + ", " + std::to_string(point.y);
  return evaluate(
             "const [x, y] = global.get_pointer();"
             "let actor = global.stage.get_actor_at_pos("
             "imports.gi.Clutter.PickMode.REACTIVE, x, y);"
             "while (actor && !actor.meta_window) actor = actor.get_parent();"
             "[x, y].join(', ') === '" +
             place + "' && actor?.meta_window.title === " + quoted(title)) == "true";
}

pid_t GnomeShell::processOf(const std::string& title) const {
  return std::stoi(evaluate("win(" + quoted(title) + ").get_pid()"));
}

void GnomeShell::moveTo(const std::string& title, Point origin) const {
  evaluate("win(" + quoted(title) + ").move_frame(true, " + std::to_string(origin.x) + ", " +
           std::to_string(origin.y) + ")");
}

void GnomeShell::raise(const std::string& title) const {
  evaluate("win(" + quoted(title) + ").activate(global.get_current_time())");
}

}  // namespace vistrel::testbed
