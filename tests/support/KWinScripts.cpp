#include "tests/support/KWinScripts.h"

#include <chrono>
#include <cmath>
#include <fstream>
#include <memory>
#include <set>

#include "tests/support/Poll.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {
namespace {

constexpr const char* kwin = "org.kde.KWin";
constexpr const char* answerInterface = "com.example.Answer";
constexpr const char* scriptName = "test";

/// What a script calls with its answer.
struct Answer {
  std::string text;
  bool isThere = false;
};

int takeAnswer(sd_bus_message* message, void* data, sd_bus_error*) {
  if (sd_bus_message_is_method_call(message, answerInterface, nullptr) == 0) {
    return 0;
  }
  auto* const answer = static_cast<Answer*>(data);
  if (sd_bus_message_is_method_call(message, nullptr, "Tell") != 0) {
    const char* text = nullptr;
    sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text);
    answer->text = text;
  } else {
    answer->isThere = true;
  }
  return sd_bus_reply_method_return(message, nullptr);
}

std::string scriptText(const std::string& javaScript, const std::string& asker) {
  const auto call = [&](const std::string& method, const std::string& arguments) {
    return "callDBus('" + asker + "', '/', '" + answerInterface + "', '" + method + "'" +
           arguments + ");";
  };
  return "function tell(text) { " + call("Tell", ", String(text)") +
         " }\n"
         "function win(title) { return workspace.clientList().filter(function (each) {"
         " return each.caption == title; })[0]; }\n"
         "try {\n" +
         javaScript + "\n} catch (failure) { tell('failure: ' + failure); }\n" + call("Done", "") +
         "\n";
}

std::string quoted(const std::string& title) { return "'" + title + "'"; }

}  // namespace

std::string KWinScripts::run(const std::string& javaScript) {
  const TemporaryDirectory directory;
  const auto file = directory.path() / "script.js";
  const char* name = nullptr;
  sd_bus_get_unique_name(bus_.get(), &name);
  std::ofstream(file) << scriptText(javaScript, name);

  Answer answer;
  sd_bus_slot* raw = nullptr;
  sd_bus_add_filter(bus_.get(), &raw, takeAnswer, &answer);
  const std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)> filter(raw, sd_bus_slot_unref);
  const BusObject scripting(bus_, kwin, "/Scripting");
  const auto number =
      scripting.call("org.kde.kwin.Scripting", "loadScript", "ss", file.c_str(), scriptName)
          .signedNumber();
  BusObject(bus_, kwin, "/" + std::to_string(number)).call("org.kde.kwin.Script", "run");
  const bool isAnswered = eventually([&] {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
    return answer.isThere;
  });
  scripting.call("org.kde.kwin.Scripting", "unloadScript", "s", scriptName);
  if (!isAnswered) {
    throw std::runtime_error("KWin does not run: " + javaScript);
  }
  return answer.text;
}

Rect KWinScripts::frameOf(const std::string& title) {
  std::string& uuid = uuids_[title];
  if (uuid.empty()) {
    uuid = run("tell(win(" + quoted(title) + ").internalId);");
  }
  BusMessage info =
      BusObject(bus_, kwin, "/KWin").call("org.kde.KWin", "getWindowInfo", "s", uuid.c_str());
  std::map<std::string, double> numbers;
  info.array("{sv}", [&] {
    info.structure(
        "sv",
        [&] {
          const std::string name = info.text();
          if (std::set<std::string>{"x", "y", "width", "height"}.contains(name)) {
            numbers[name] = info.structure(
                "d", [&] { return info.real(); }, SD_BUS_TYPE_VARIANT);
          } else {
            info.skip("v");
          }
          return 0;
        },
        SD_BUS_TYPE_DICT_ENTRY);
  });
  const auto number = [&](const char* name) {
    return static_cast<int>(std::lround(numbers[name]));
  };
  return {number("x"), number("y"), number("width"), number("height")};
}

void KWinScripts::moveTo(const std::string& title, Point origin) {
  run("var window = win(" + quoted(title) + "), frame = window.frameGeometry; " +
      "window.frameGeometry = {x: " + std::to_string(origin.x) +
      ", y: " + std::to_string(origin.y) + ", width: frame.width, height: frame.height};");
}

void KWinScripts::raise(const std::string& title) {
  run("workspace.activeClient = win(" + quoted(title) + ");");
}

void KWinScripts::showDesktop(int number) {
  run("workspace.currentDesktop = " + std::to_string(number) + ";");
}

}  // namespace vistrel::testbed
