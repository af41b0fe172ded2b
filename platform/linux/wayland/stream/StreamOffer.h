#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace vistrel::platform::linux_desktop {

/// A node of PipeWire, and how it is reached.
struct PipeWireNode {
  std::uint32_t id = 0;
  /// A connection to PipeWire for one client, which takes a duplicate of it; -1 for one of its own
  /// to the session's PipeWire.
  int remote = -1;
  /// How many frames a second it is asked for at most; 0 for as many as there are changes.
  std::uint32_t mostFrames = 0;
};

/// What somebody streams of one window, for as long as this lives. On its queue only.
class StreamOffer {
 public:
  StreamOffer() = default;
  StreamOffer(const StreamOffer&) = delete;
  StreamOffer& operator=(const StreamOffer&) = delete;
  virtual ~StreamOffer() = default;

  /// What shows the window; none before that is known. Its connection is this object's.
  virtual std::optional<PipeWireNode> node() const = 0;
  /// There is no such window, it is closed, or it cannot be streamed (any more).
  virtual bool hasEnded() const = 0;
  /// To be called after either has changed, last of all: it may destroy the offer.
  virtual void setOnChange(std::function<void()> changed) = 0;
  /// Waits until either is known, a second at most; not at all where a person is asked.
  virtual void awaitAnswer() {}
  /// Whether anybody takes frames of it, as is so at first.
  virtual void setWanted(bool /*isWanted*/) {}
};

/// How a window's stream is asked for.
struct StreamRequest {
  enum class Occasion {
    /// A person has done something that the stream is wanted for.
    wish,
    /// One that ran has ended, and nobody has asked for another: no person is to be troubled.
    ending,
  };

  /// Null where nobody is there to be asked.
  std::function<std::unique_ptr<StreamOffer>(Occasion occasion)> ask;
  /// Whether the window is streamed with the shadow around it.
  bool hasShadow = false;
};

}  // namespace vistrel::platform::linux_desktop
