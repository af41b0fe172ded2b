#include "platform/linux/x11/parking/ParkingRecord.h"

#include <algorithm>

#include "platform/linux/x11/server/Property.h"
#include "platform/linux/x11/server/ServerGrab.h"

namespace vistrel::platform::linux_desktop {
namespace {

/// On a parked window: its record.
constexpr auto recordName = "_VISTREL_PARKED";

/// On the root window: the parked windows, since managers list only what they manage.
constexpr auto listName = "_VISTREL_PARKED_WINDOWS";

/// What the first value of a record is. Another one stands for another order of what follows.
constexpr std::uint32_t form = 1;
constexpr std::size_t length = 9;

// What the fourth value is made of.
constexpr std::uint32_t isFree = 1 << 0;
constexpr std::uint32_t wasHorizontal = 1 << 1;
constexpr std::uint32_t wasVertical = 1 << 2;
constexpr std::uint32_t wasFullScreen = 1 << 3;
constexpr std::uint32_t wasSticky = 1 << 4;
constexpr std::uint32_t hasDesktop = 1 << 5;
constexpr std::uint32_t hasLayer = 1 << 6;
constexpr std::uint32_t wasAbove = 1 << 7;
constexpr std::uint32_t wasBelow = 1 << 8;

std::uint32_t flagsOf(const ParkingRecord& record) {
  const auto flag = [](bool isSet, std::uint32_t value) { return isSet ? value : 0U; };
  return flag(record.client.has_value(), isFree) | flag(record.ties.horizontally, wasHorizontal) |
         flag(record.ties.vertically, wasVertical) | flag(record.ties.fullScreen, wasFullScreen) |
         flag(record.isSticky, wasSticky) | flag(record.desktop.has_value(), hasDesktop) |
         flag(record.layer.has_value(), hasLayer) |
         flag(record.layer && record.layer->isAbove, wasAbove) |
         flag(record.layer && record.layer->isBelow, wasBelow);
}

void addToList(Connection& connection, xcb_window_t window) {
  xcb_change_property(connection.xcb(), XCB_PROP_MODE_APPEND, connection.root(),
                      connection.atom(listName), XCB_ATOM_WINDOW, 32, 1, &window);
}

void removeFromList(Connection& connection, xcb_window_t window) {
  const ServerGrab grab(connection);
  auto windows = recordedWindows(connection);
  std::erase(windows, window);
  const auto list = connection.atom(listName);
  if (windows.empty()) {
    xcb_delete_property(connection.xcb(), connection.root(), list);
  } else {
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, connection.root(), list,
                        XCB_ATOM_WINDOW, 32, static_cast<std::uint32_t>(windows.size()),
                        windows.data());
  }
}

}  // namespace

std::vector<std::uint32_t> valuesOf(const ParkingRecord& record) {
  const PixelRect client = record.client.value_or(PixelRect{});
  const auto number = [](int value) { return static_cast<std::uint32_t>(value); };
  return {form,
          record.owner.window,
          record.owner.token,
          flagsOf(record),
          number(client.x),
          number(client.y),
          number(client.width),
          number(client.height),
          record.desktop.value_or(0)};
}

std::optional<ParkingRecord> recordFrom(const std::vector<std::uint32_t>& values) {
  if (values.size() != length || values[0] != form) return std::nullopt;
  const auto has = [&](std::uint32_t flag) { return (values[3] & flag) != 0; };
  const auto number = [&](std::size_t i) { return static_cast<int>(values[i]); };
  ParkingRecord record{
      .owner = {values[1], values[2]},
      .ties = {has(wasHorizontal), has(wasVertical), has(wasFullScreen)},
      .isSticky = has(wasSticky),
  };
  if (has(isFree)) record.client = {number(4), number(5), number(6), number(7)};
  if (has(hasDesktop)) record.desktop = values[8];
  if (has(hasLayer)) record.layer = StackingLayer{has(wasAbove), has(wasBelow)};
  return record;
}

std::optional<ParkingRecord> readRecord(Connection& connection, xcb_window_t window) {
  return recordFrom(propertyOf(connection, window, recordName).values());
}

void writeRecord(Connection& connection, xcb_window_t window, const ParkingRecord& record) {
  const auto values = valuesOf(record);
  forgive(connection.xcb(),
          xcb_change_property_checked(connection.xcb(), XCB_PROP_MODE_REPLACE, window,
                                      connection.atom(recordName), XCB_ATOM_CARDINAL, 32,
                                      static_cast<std::uint32_t>(values.size()), values.data()));
  // After the record: whoever finds a window listed without one takes it off the list.
  const auto listed = recordedWindows(connection);
  if (std::find(listed.begin(), listed.end(), window) == listed.end()) {
    addToList(connection, window);
    connection.sync();
  }
}

void removeRecord(Connection& connection, xcb_window_t window) {
  forgive(connection.xcb(),
          xcb_delete_property_checked(connection.xcb(), window, connection.atom(recordName)));
  removeFromList(connection, window);
  connection.sync();
}

std::vector<xcb_window_t> recordedWindows(Connection& connection) {
  return propertyOf(connection, connection.root(), listName).values();
}

}  // namespace vistrel::platform::linux_desktop
