#include "platform/linux/x11/monitors/GrownScreen.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/linux/Trace.h"
#include "platform/linux/x11/server/FaultPoint.h"
#include "platform/linux/x11/server/Property.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// On the root window.
constexpr auto recordName = "_VISTREL_GROWN_SCREEN";

struct ScreenSize {
  PixelSize pixels;
  PixelSize millimetres;
};

struct Record {
  ScreenSize before;
  PixelSize grown;
  /// What has been made primary where nothing was; none otherwise.
  xcb_randr_output_t madePrimary = XCB_NONE;
};

std::optional<Record> readRecord(Connection& connection) {
  const auto values = propertyOf(connection, connection.root(), recordName).values();
  if (values.size() != 7) return std::nullopt;
  const auto size = [&](std::size_t first) {
    return PixelSize{static_cast<int>(values[first]), static_cast<int>(values[first + 1])};
  };
  return Record{{size(0), size(2)}, size(4), values[6]};
}

void writeRecord(Connection& connection, const Record& record) {
  const auto number = [](int value) { return static_cast<std::uint32_t>(value); };
  const std::array<std::uint32_t, 7> values{number(record.before.pixels.width),
                                            number(record.before.pixels.height),
                                            number(record.before.millimetres.width),
                                            number(record.before.millimetres.height),
                                            number(record.grown.width),
                                            number(record.grown.height),
                                            record.madePrimary};
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, connection.root(),
                      connection.atom(recordName), XCB_ATOM_CARDINAL, 32, values.size(),
                      values.data());
}

bool setSize(Connection& connection, const ScreenSize& size) {
  return !failureOf(connection.xcb(), xcb_randr_set_screen_size_checked(
                                          connection.xcb(), connection.root(),
                                          static_cast<std::uint16_t>(size.pixels.width),
                                          static_cast<std::uint16_t>(size.pixels.height),
                                          static_cast<std::uint32_t>(size.millimetres.width),
                                          static_cast<std::uint32_t>(size.millimetres.height)));
}

/// As it was before anybody of ours made it grow.
Record currentRecord(Connection& connection) {
  const auto record = readRecord(connection);
  const PixelSize pixels = screenSize(connection);
  if (record && record->grown == pixels) return *record;
  // A person has changed the screen since.
  const auto madePrimary = record ? record->madePrimary : xcb_randr_output_t{XCB_NONE};
  return {{pixels, connection.screenMillimetres()}, pixels, madePrimary};
}

int scaled(int pixels, int millimetres, int ofPixels) {
  return static_cast<int>(std::int64_t{pixels} * millimetres / std::max(ofPixels, 1));
}

PixelSize millimetresLike(const ScreenSize& screen, PixelSize pixels) {
  return {scaled(pixels.width, screen.millimetres.width, screen.pixels.width),
          scaled(pixels.height, screen.millimetres.height, screen.pixels.height)};
}

xcb_randr_output_t primaryOutput(Connection& connection) {
  const auto reply = replyTo<xcb_randr_get_output_primary_reply>(
      connection.xcb(), xcb_randr_get_output_primary(connection.xcb(), connection.root()));
  return reply ? reply->output : xcb_randr_output_t{XCB_NONE};
}

void setPrimaryOutput(Connection& connection, xcb_randr_output_t output) {
  forgive(connection.xcb(),
          xcb_randr_set_output_primary_checked(connection.xcb(), connection.root(), output));
}

}  // namespace

PixelSize screenSize(Connection& connection) {
  const auto root = replyTo<xcb_get_geometry_reply>(
      connection.xcb(), xcb_get_geometry(connection.xcb(), connection.root()));
  return root ? PixelSize{root->width, root->height} : PixelSize{};
}

PixelSize largestScreen(Connection& connection) {
  const auto range = replyTo<xcb_randr_get_screen_size_range_reply>(
      connection.xcb(), xcb_randr_get_screen_size_range(connection.xcb(), connection.root()));
  return range ? PixelSize{range->max_width, range->max_height} : PixelSize{};
}

PixelSize millimetresOf(Connection& connection, PixelSize pixels) {
  return millimetresLike(currentRecord(connection).before, pixels);
}

bool growScreen(Connection& connection, int right, xcb_randr_output_t primary) {
  const auto former = currentRecord(connection);
  auto record = former;
  if (primary != XCB_NONE) record.madePrimary = primary;
  if (right > screenSize(connection).width) {
    record.grown = {right, record.before.pixels.height};
    // Leaves in one piece with the request that it is about, so that whoever is killed has sent
    // both or neither.
    writeRecord(connection, record);
    if (!setSize(connection, {record.grown, millimetresLike(record.before, record.grown)})) {
      writeRecord(connection, former);
      return false;
    }
    VISTREL_FAULT_POINT(connection, "screen: grown");
    trace(TraceTopic::monitors,
          [&] { return "screen grown to " + areaText(rectOf(record.grown)); });
  } else {
    writeRecord(connection, record);
  }
  if (primary != XCB_NONE) setPrimaryOutput(connection, primary);
  return true;
}

void putScreenBack(Connection& connection) {
  const auto record = readRecord(connection);
  if (!record) return;
  if (record->madePrimary != XCB_NONE && primaryOutput(connection) == record->madePrimary) {
    setPrimaryOutput(connection, XCB_NONE);
  }
  if (screenSize(connection) == record->grown) {
    const bool isBack = setSize(connection, record->before);
    trace(TraceTopic::monitors, [&] {
      return "screen put back to " + areaText(rectOf(record->before.pixels)) +
             (isBack ? "" : ": refused");
    });
  }
  VISTREL_FAULT_POINT(connection, "screen: put back");
  xcb_delete_property(connection.xcb(), connection.root(), connection.atom(recordName));
}

}  // namespace vistrel::platform::linux_desktop
