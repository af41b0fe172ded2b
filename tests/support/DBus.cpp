#include "tests/support/DBus.h"

#include <system_error>

namespace vistrel::testbed {
namespace {

// Negative results are errors; others mean what the call says.
int checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(-result, std::generic_category(), what);
  }
  return result;
}

}  // namespace

BusConnection connectToBus(const std::string& address) {
  sd_bus* raw = nullptr;
  checked(sd_bus_new(&raw), "sd_bus_new");
  BusConnection bus(raw, sd_bus_flush_close_unref);
  checked(sd_bus_set_address(raw, address.c_str()), address.c_str());
  checked(sd_bus_set_bus_client(raw, 1), "sd_bus_set_bus_client");
  checked(sd_bus_start(raw), address.c_str());
  // Answers once the bus has let it in: one that does not ask for that is soon thrown out.
  const char* name = nullptr;
  checked(sd_bus_get_unique_name(raw, &name), address.c_str());
  return bus;
}

void BusMessage::readBasic(char type, void* value) {
  if (checked(sd_bus_message_read_basic(get(), type, value), "a message") == 0) {
    throw std::runtime_error("a message is shorter than expected");
  }
}

void BusMessage::skip(const char* types) { checked(sd_bus_message_skip(get(), types), types); }
std::vector<unsigned char> BusMessage::bytes() {
  const void* first = nullptr;
  std::size_t count = 0;
  checked(sd_bus_message_read_array(get(), SD_BUS_TYPE_BYTE, &first, &count), "a message");
  const auto* const begin = static_cast<const unsigned char*>(first);
  return {begin, begin + count};
}

void BusMessage::enter(char kind, const char* types) {
  checked(sd_bus_message_enter_container(get(), kind, types), types);
}

bool BusMessage::isAtEnd() { return checked(sd_bus_message_at_end(get(), 0), "a message") != 0; }

void BusMessage::leave() { checked(sd_bus_message_exit_container(get()), "a message"); }

void BusObject::throwIfFailed(int result, const char* method, sd_bus_error& error) const {
  const std::string text = error.message != nullptr ? error.message : "no answer";
  sd_bus_error_free(&error);
  if (result < 0) {
    throw BusError(std::string(method) + " of " + path_ + ": " + text);
  }
}

bool isOnBus(const BusConnection& bus, const std::string& name) {
  return BusObject(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus")
      .call("org.freedesktop.DBus", "NameHasOwner", "s", name.c_str())
      .truth();
}

}  // namespace vistrel::testbed
