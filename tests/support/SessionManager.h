#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace vistrel::testbed {

/// A session manager (X Session Management Protocol 1.0) that says yes to everything. One in a
/// process.
class SessionManager {
 public:
  /// Throws std::runtime_error when it cannot listen.
  SessionManager();
  SessionManager(const SessionManager&) = delete;
  SessionManager& operator=(const SessionManager&) = delete;
  ~SessionManager();

  /// As in the environment variable SESSION_MANAGER.
  const std::string& address() const { return address_; }
  /// How many clients have come so far.
  int clients() const { return clients_; }
  /// The person ends the session: every client is to save what it needs.
  void beginEnd() { isEndBegun_ = true; }
  /// The person has thought better of it.
  void cancelEnd() { isEndCancelled_ = true; }

 private:
  void serveUntil(const std::stop_token& stop);

  std::string address_;
  std::atomic<int> clients_ = 0;
  std::atomic<bool> isEndBegun_ = false;
  std::atomic<bool> isEndCancelled_ = false;
  std::jthread thread_;
};

}  // namespace vistrel::testbed
