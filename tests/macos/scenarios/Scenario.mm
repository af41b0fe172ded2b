#include "tests/macos/scenarios/Scenario.h"

#include <algorithm>
#include <utility>

/// The program's own, under another name.
int vistrelMain(int argc, char** argv);

namespace vistrel {

void Scenario::run(const std::function<void()>& person) {
  world_.person = [&] {
    countFromHere();
    @autoreleasepool {
      person();
    }
    @autoreleasepool {
      fake::advance(2);
    }
    EXPECT_EQ(fake::liveObjects(), objectsAtStart_);
  };
  runProgram({});
}

int Scenario::runWith(const std::vector<std::string>& options) {
  countFromHere();
  const int status = runProgram(options);
  fake::turn();
  EXPECT_EQ(fake::liveObjects(), objectsAtStart_);
  return status;
}

int Scenario::runProgram(const std::vector<std::string>& options) {
  static bool hasRun = false;
  if (std::exchange(hasRun, true)) fake::fail("a process runs one scenario: ctest does so");
  std::vector<std::string> given = {"vistrel"};
  given.insert(given.end(), options.begin(), options.end());
  std::vector<char*> arguments;
  for (std::string& each : given) arguments.push_back(each.data());
  arguments.push_back(nullptr);
  try {
    return vistrelMain(static_cast<int>(given.size()), arguments.data());
  } catch (const fake::Terminated&) {
    terminated_ = true;
    return 0;
  }
}

NSWindow* Scenario::picker() {
  for (NSWindow* window : fake::windows()) {
    if ([window.title isEqualToString:@"Vistrel"]) return window;
  }
  fake::fail("there is no picker");
}

std::vector<NSWindow*> Scenario::panels() {
  std::vector<NSWindow*> panels = fake::windows();
  std::erase_if(panels, [](NSWindow* window) {
    return ![window isKindOfClass:[NSPanel class]] || !window.isShown;
  });
  return panels;
}

void Scenario::doubleClick(NSTableView* table, NSInteger row) {
  fake::act(^{
    fake::rowViews(table);
    table.selectedRow = row;
    [table.target perform:table.doubleAction with:table];
  });
}

std::vector<std::string> titles(NSMenu* menu) {
  std::vector<std::string> titles;
  for (NSMenuItem* line in menu.itemArray)
    titles.push_back(line.isSeparator ? "-" : utf8(line.title));
  return titles;
}

NSMenuItem* line(NSMenu* menu, const std::string& title) {
  for (NSMenuItem* line in menu.itemArray) {
    if (!line.isSeparator && utf8(line.title) == title) return line;
  }
  fake::fail("there is no line " + title);
}

namespace {

bool isCalled(NSString* text, const std::string& wanted) {
  return text != nil && utf8(text) == wanted;
}

/// The first view at or below `root` that fits; nil for none.
NSView* firstView(NSView* root, const std::function<bool(NSView*)>& fits) {
  if (root == nil || fits(root)) return root;
  if ([root isKindOfClass:[NSScrollView class]]) {
    return firstView(static_cast<NSScrollView*>(root).documentView, fits);
  }
  for (NSView* view in root.subviews) {
    if (NSView* found = firstView(view, fits)) return found;
  }
  return nil;
}

NSView* theView(NSView* root, const std::string& what, const std::function<bool(NSView*)>& fits) {
  NSView* const found = firstView(root, fits);
  if (found == nil) fake::fail("there is no view " + what);
  return found;
}

}  // namespace

NSView* findView(NSView* root, Class type) {
  return theView(root, fake::describe(type),
                 [type](NSView* view) { return [view isKindOfClass:type]; });
}

NSView* findLabelled(NSView* root, const std::string& label) {
  return theView(root, label,
                 [&](NSView* view) { return isCalled(view.accessibilityLabel, label); });
}

NSButton* button(NSView* root, const std::string& title) {
  return static_cast<NSButton*>(theView(root, title, [&](NSView* view) {
    return [view isKindOfClass:[NSButton class]] &&
           isCalled(static_cast<NSButton*>(view).title, title);
  }));
}

std::vector<std::string> shownTexts(NSView* root) {
  std::vector<std::string> texts;
  if (root.isHidden) return texts;
  if ([root isKindOfClass:[NSTextField class]]) {
    texts.push_back(utf8(static_cast<NSTextField*>(root).stringValue));
  }
  for (NSView* view in root.subviews) {
    const auto below = shownTexts(view);
    texts.insert(texts.end(), below.begin(), below.end());
  }
  return texts;
}

std::vector<std::string> rows(NSTableView* table) {
  std::vector<std::string> rows;
  for (NSView* view : fake::rowViews(table)) {
    rows.push_back(utf8(static_cast<NSTableCellView*>(view).textField.stringValue));
  }
  return rows;
}

std::string utf8(NSString* text) { return text.UTF8String; }

testing::AssertionResult said(const std::vector<std::string>& parts) {
  auto message = fake::messages().begin();
  for (const std::string& part : parts) {
    message = std::find_if(message, fake::messages().end(), [&](const std::string& each) {
      return each.find(part) != std::string::npos;
    });
    if (message != fake::messages().end()) {
      ++message;
      continue;
    }
    auto failure = testing::AssertionFailure() << "not said, or not in its turn: " << part;
    for (const std::string& each : fake::messages()) failure << "\n  " << each;
    return failure;
  }
  return testing::AssertionSuccess();
}

}  // namespace vistrel
