#include "tests/macos/scenarios/MirrorScenario.h"

namespace vistrel {

using testing::IsEmpty;

void MirrorScenario::runWithMirror(const std::function<void()>& person) {
  run([&] {
    openMirror();
    @autoreleasepool {
      person();
    }
    for (std::size_t left = panels().size(); left > 0; --left) closeMirror();
    EXPECT_THAT(panels(), IsEmpty());
    fake::advance(desktop().serviceSeconds);
    EXPECT_THAT(fake::streams(), IsEmpty());
  });
}

void MirrorScenario::openMirror(NSInteger row) {
  fake::forgetMessages();
  doubleClick(static_cast<NSTableView*>(findView(picker().contentView, [NSTableView class])), row);
}

void MirrorScenario::closeMirror(std::size_t index) {
  @autoreleasepool {
    fake::press(closeButton(index));
  }
}

NSWindow* MirrorScenario::panel(std::size_t index) { return panels().at(index); }

NSView* MirrorScenario::card(std::size_t index) { return panel(index).contentView; }

NSButton* MirrorScenario::closeButton(std::size_t index) {
  return static_cast<NSButton*>(findView(card(index), [NSButton class]));
}

SCStream* MirrorScenario::stream(std::size_t index) { return fake::streams().at(index); }

id MirrorScenario::picture(std::size_t index) {
  return card(index).subviews.firstObject.layer.contents;
}

std::string MirrorScenario::dot(const std::string& label, std::size_t index) {
  return fake::describe(findLabelled(card(index), label).layer.backgroundColor);
}

NSPoint MirrorScenario::onTitleBar(NSWindow* panel) { return {200, panel.frame.size.height - 13}; }

NSPoint MirrorScenario::onPicture(NSWindow* panel) {
  return {100, (panel.frame.size.height - 26) / 2};
}

NSPoint MirrorScenario::onGrip(NSWindow* panel) { return {panel.frame.size.width - 8, 8}; }

void MirrorScenario::command(const std::string& title, std::size_t index) {
  @autoreleasepool {
    NSWindow* const asked = panel(index);
    fake::choose(line(fake::contextMenu(asked, onTitleBar(asked)), title));
  }
}

void MirrorScenario::scale(const std::string& title, std::size_t index) {
  @autoreleasepool {
    NSWindow* const asked = panel(index);
    NSMenu* const menu = fake::contextMenu(asked, onTitleBar(asked));
    fake::choose(line(line(menu, "Scale").submenu, title));
  }
}

void MirrorScenario::drag(NSWindow* panel, NSPoint place, CGSize by,
                          NSEventModifierFlags modifiers) {
  fake::mouseDown(panel, place, modifiers);
  desktop().mouse.x += by.width;
  desktop().mouse.y += by.height;
  fake::mouseDragged(place, modifiers);
}

}  // namespace vistrel
