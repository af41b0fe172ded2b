#include "bench/peers/MirrorSubject.h"

#include <stdexcept>
#include <utility>
#include <xcb/composite.h>

#include "bench/ProcessorTime.h"
#include "tests/support/Poll.h"

namespace vistrel::bench {
namespace {

constexpr std::uint32_t betweenClicks = 700;

/// Costs the server what a redirected window costs, and shows nothing.
class Redirection : public Subject {
 public:
  Redirection(const Bed& bed, xcb_window_t source)
      : connection_(bed.display().name()), source_(source) {
    const testbed::XReply<xcb_composite_query_version_reply_t> version(
        xcb_composite_query_version_reply(
            connection_.get(),
            xcb_composite_query_version(connection_.get(), XCB_COMPOSITE_MAJOR_VERSION,
                                        XCB_COMPOSITE_MINOR_VERSION),
            nullptr));
    xcb_composite_redirect_window(connection_.get(), source_, XCB_COMPOSITE_REDIRECT_AUTOMATIC);
    connection_.sync();
  }

  double clientSeconds() const override { return 0; }
  xcb_window_t window() const override { return XCB_WINDOW_NONE; }
  testbed::Rect picture() const override { return {}; }

 private:
  testbed::XConnection connection_;
  xcb_window_t source_;
};

}  // namespace

MirrorSubject::MirrorSubject(Bed& bed) : bed_(&bed), program_(bed.display(), bed.connection()) {
  constexpr std::uint32_t byPerson = 2;
  const testbed::PickerOnScreen picker = program_.picker();
  bed.hand().clickAt(program_.pickerRows(1).front().centre(), 2);
  panel_ = program_.panels(1).front();
  bed.connection().sendToManager(picker.id(), "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, byPerson});
  if (!testbed::eventually([&] { return !picker.isOnScreen(); })) {
    throw std::runtime_error("the picker does not close");
  }
  putBeside();
}

// As the peers' windows are: over the source it would spare the server a part of that.
void MirrorSubject::putBeside() {
  const testbed::Point from = panel_->titleBar();
  const int left = Bed::sourceArea.width + 30 - panel_->area().x;
  bed_->hand().rest(betweenClicks);
  bed_->hand().drag(from, {from.x + left, from.y});
  if (!testbed::eventually([&] { return panel_->area().x >= Bed::sourceArea.width; })) {
    throw std::runtime_error("the panel does not follow the pointer");
  }
  bed_->putHandAway();
}

double MirrorSubject::clientSeconds() const { return processorSeconds(program_.process().pid()); }

testbed::Rect MirrorSubject::picture() const {
  const testbed::Rect panel = panel_->area();
  const testbed::Rect contents = panel_->contents();
  return {contents.x - panel.x, contents.y - panel.y, contents.width, contents.height};
}

void MirrorSubject::resizeTo(Extent extent) {
  const testbed::Rect now = panel_->contents();
  const testbed::Point grip = panel_->grip();
  bed_->hand().rest(betweenClicks);
  bed_->hand().drag(grip, {grip.x + extent.width - now.width, grip.y + extent.height - now.height});
  if (!testbed::eventually([&] {
        const testbed::Rect contents = panel_->contents();
        return contents.width == extent.width && contents.height == extent.height;
      })) {
    throw std::runtime_error("the panel does not take the size it is dragged to");
  }
  bed_->putHandAway();
}

void MirrorSubject::rollUp() {
  bed_->hand().rest(betweenClicks);
  bed_->hand().clickAt(panel_->titleBar(), 2);
  if (!testbed::eventually(
          [&] { return panel_->area().height == testbed::PanelOnScreen::titleBarHeight; })) {
    throw std::runtime_error("the panel does not roll up");
  }
  bed_->putHandAway();
}

Contestant vistrel() {
  return {.name = "Vistrel", .start = [](Bed& bed, const ChangingSource&, Extent) {
            return std::make_unique<MirrorSubject>(bed);
          }};
}

Contestant redirection() {
  return {.name = "redirection alone", .start = [](Bed& bed, const ChangingSource& source, Extent) {
            return std::make_unique<Redirection>(bed, source.id());
          }};
}

}  // namespace vistrel::bench
