#pragma once

#include <map>
#include <string>

#include "platform/Geometry.h"

namespace vistrel::platform::linux_desktop {

/// Where a parked window belongs, and where it was sent.
struct ParkedPlaces {
  Point home;
  Point parked;

  friend bool operator==(const ParkedPlaces&, const ParkedPlaces&) = default;
};

/// By UUID.
using ParkedWindowsByUuid = std::map<std::string, ParkedPlaces>;

/// What is parked, in a file of the session's that outlives a program that ends without sending it
/// home. One program at a time owns it, by a lock that goes with its process.
class ParkedRecord {
 public:
  /// Of the session of the compositor that WAYLAND_DISPLAY names, in XDG_RUNTIME_DIR.
  ParkedRecord();
  ParkedRecord(const ParkedRecord&) = delete;
  ParkedRecord& operator=(const ParkedRecord&) = delete;
  ~ParkedRecord();

  /// Whether this is its owner, which it becomes where there is none any more.
  bool own();
  /// What an owner has left that has ended; nothing while another one lives.
  ParkedWindowsByUuid read() const;
  /// Returns once it would be found; nothing is written while another owner lives.
  void write(const ParkedWindowsByUuid& windows);

 private:
  std::string path_;  // empty where there is no place for it
  int file_ = -1;     // none where another program owns it
};

/// As the file has it; what is not whole in `text` is left out.
std::string recordText(const ParkedWindowsByUuid& windows);
ParkedWindowsByUuid parseRecord(const std::string& text);

}  // namespace vistrel::platform::linux_desktop
