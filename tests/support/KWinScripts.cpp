#include "tests/support/KWinScripts.h"

#include <chrono>
#include <cmath>
#include <fstream>
#include <memory>
#include <set>
#include <vector>

#include "tests/support/Poll.h"
#include "tests/support/TemporaryDirectory.h"

namespace vistrel::testbed {
namespace {

constexpr const char* kwin = "org.kde.KWin";
constexpr const char* answerInterface = "com.example.Answer";
constexpr const char* scriptName = "test";

/// What a script calls with its answer, at a path that no other one calls.
struct Answer {
  std::string path;
  std::string text;
  bool isThere = false;
};

int takeAnswer(sd_bus_message* message, void* data, sd_bus_error*) {
  if (sd_bus_message_is_method_call(message, answerInterface, nullptr) == 0) {
    return 0;
  }
  auto* const answer = static_cast<Answer*>(data);
  if (sd_bus_message_get_path(message) != answer->path) {
    return sd_bus_reply_method_return(message, nullptr);
  }
  if (sd_bus_message_is_method_call(message, nullptr, "Tell") != 0) {
    const char* text = nullptr;
    sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, &text);
    answer->text = text;
  } else {
    answer->isThere = true;
  }
  return sd_bus_reply_method_return(message, nullptr);
}

std::string scriptText(const std::string& javaScript, const std::string& asker,
                       const std::string& path) {
  const auto call = [&](const std::string& method, const std::string& arguments) {
    return "callDBus('" + asker + "', '" + path + "', '" + answerInterface + "', '" + method + "'" +
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
  static int answers = 0;
  Answer answer{.path = "/Answer" + std::to_string(++answers)};
  std::ofstream(file) << scriptText(javaScript, name, answer.path);

  sd_bus_slot* raw = nullptr;
  sd_bus_add_filter(bus_.get(), &raw, takeAnswer, &answer);
  const std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)> filter(raw, sd_bus_slot_unref);
  const BusObject scripting(bus_, kwin, "/Scripting");
  const auto isThere = [&] {
    while (sd_bus_process(bus_.get(), nullptr) > 0) {
    }
    return answer.isThere;
  };
  // Where the program's script has the number of ours, the next one gets another number.
  constexpr std::chrono::seconds patience{2};
  std::vector<std::string> loaded;
  const bool isAnswered = eventually([&] {
    loaded.push_back(scriptName + answer.path + '-' + std::to_string(loaded.size()));
    const auto number =
        scripting
            .call("org.kde.kwin.Scripting", "loadScript", "ss", file.c_str(), loaded.back().c_str())
            .signedNumber();
    try {
      BusObject(bus_, kwin, "/" + std::to_string(number)).call("org.kde.kwin.Script", "run");
    } catch (const BusError&) {
      return isThere();
    }
    return eventually(isThere, patience);
  });
  for (const std::string& each : loaded) {
    scripting.call("org.kde.kwin.Scripting", "unloadScript", "s", each.c_str());
  }
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
