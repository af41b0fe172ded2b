#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <systemd/sd-bus.h>
#include <utility>
#include <vector>

namespace vistrel::testbed {

// One thread. Everything here throws std::runtime_error when something is not as asked for.

/// A program answered that it cannot do that, or did not answer.
class BusError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

using BusConnection = std::shared_ptr<sd_bus>;
BusConnection connectToBus(const std::string& address);

/// What a program answered or told, read from its beginning to its end.
class BusMessage {
 public:
  explicit BusMessage(sd_bus_message* message) : message_(message) {}

  sd_bus_message* get() const { return message_.get(); }

  std::string text() { return basic<const char*>(SD_BUS_TYPE_STRING); }
  bool truth() { return basic<int>(SD_BUS_TYPE_BOOLEAN) != 0; }
  std::string path() { return basic<const char*>(SD_BUS_TYPE_OBJECT_PATH); }
  std::int32_t signedNumber() { return basic<std::int32_t>(SD_BUS_TYPE_INT32); }
  double real() { return basic<double>(SD_BUS_TYPE_DOUBLE); }
  std::vector<unsigned char> bytes();
  std::uint32_t number() { return basic<std::uint32_t>(SD_BUS_TYPE_UINT32); }

  /// Passes over what has `types`.
  void skip(const char* types);

  /// Reads an array of `types`, one item by each call of `readItem`.
  template <class ReadItem>
  void array(const char* types, const ReadItem& readItem) {
    enter(SD_BUS_TYPE_ARRAY, types);
    while (!isAtEnd()) {
      readItem();
    }
    leave();
  }
  /// Reads a structure, or a variant, of `types` by `readMembers`, which gives what it makes of it.
  template <class ReadMembers>
  auto structure(const char* types, const ReadMembers& readMembers,
                 char kind = SD_BUS_TYPE_STRUCT) {
    enter(kind, types);
    auto members = readMembers();
    leave();
    return members;
  }

 private:
  template <class Value>
  Value basic(char type) {
    Value value{};
    readBasic(type, &value);
    return value;
  }
  void readBasic(char type, void* value);
  void enter(char kind, const char* types);
  bool isAtEnd();
  void leave();

  struct Unref {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  std::unique_ptr<sd_bus_message, Unref> message_;
};

/// An object of a program on a bus.
class BusObject {
 public:
  BusObject(BusConnection bus, std::string program, std::string path)
      : bus_(std::move(bus)), program_(std::move(program)), path_(std::move(path)) {}

  const BusConnection& bus() const { return bus_; }
  const std::string& program() const { return program_; }
  const std::string& path() const { return path_; }

  /// `types` names the types of `arguments` as D-Bus does; null for none. Throws BusError.
  template <class... Arguments>
  BusMessage call(const char* interface, const char* method, const char* types = nullptr,
                  Arguments... arguments) const {
    sd_bus_error error{};  // as SD_BUS_ERROR_NULL, which is C99
    sd_bus_message* reply = nullptr;
    const int result = sd_bus_call_method(bus_.get(), program_.c_str(), path_.c_str(), interface,
                                          method, &error, &reply, types, arguments...);
    BusMessage message(reply);
    throwIfFailed(result, method, error);
    return message;
  }

  friend bool operator==(const BusObject& a, const BusObject& b) {
    return a.program_ == b.program_ && a.path_ == b.path_;
  }

 private:
  /// Frees `error`.
  void throwIfFailed(int result, const char* method, sd_bus_error& error) const;

  BusConnection bus_;
  std::string program_;
  std::string path_;
};

/// Whether a program has that name on the bus.
bool isOnBus(const BusConnection& bus, const std::string& name);

}  // namespace vistrel::testbed
