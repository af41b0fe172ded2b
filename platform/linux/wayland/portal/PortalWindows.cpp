#include "platform/linux/wayland/portal/PortalWindows.h"

#include <optional>
#include <utility>

namespace vistrel::platform::linux_desktop {

/// A stream of a picked window. On its mirror's queue.
class PortalWindows::Offer final : public StreamOffer {
 public:
  Offer(std::shared_ptr<PortalWindows> windows, WindowID window, int number)
      : windows_(std::move(windows)), window_(window), number_(number) {}
  ~Offer() override {
    windows_->withWindows([window = window_, number = number_](PickedWindows& windows) {
      windows.release(window, number);
    });
  }

  std::optional<PipeWireNode> node() const override {
    if (!state_->remote) return std::nullopt;
    return pickedNode(state_->node, *state_->remote);
  }
  bool hasEnded() const override { return state_->hasEnded; }
  void setOnChange(std::function<void()> changed) override { state_->changed = std::move(changed); }
  void setWanted(bool isWanted) override {
    windows_->withWindows([window = window_, number = number_, isWanted](PickedWindows& windows) {
      windows.setWanted(window, number, isWanted);
    });
  }

  /// For any thread: has what is told come to the offer on `queue`, if both are still there.
  PickedWindows::Tell teller(const std::shared_ptr<SerialQueue>& queue) const {
    return [queue = std::weak_ptr(queue), state = std::weak_ptr(state_)](std::uint32_t node,
                                                                         SharedDescriptor remote) {
      const auto strong = queue.lock();
      if (!strong) return;
      strong->async([state, node, remote = std::move(remote)] {
        if (const auto told = state.lock()) tell(*told, node, remote);
      });
    };
  }

 private:
  struct State {
    std::function<void()> changed;
    std::uint32_t node = 0;
    SharedDescriptor remote;
    bool hasEnded = false;
  };

  /// Last of all: it may destroy the offer.
  static void tell(State& state, std::uint32_t node, const SharedDescriptor& remote) {
    state.hasEnded = !remote;
    state.node = node;
    state.remote = remote;
    const auto changed = state.changed;
    if (changed) changed();
  }

  const std::shared_ptr<PortalWindows> windows_;
  const WindowID window_;
  const int number_;
  const std::shared_ptr<State> state_ = std::make_shared<State>();
};

PortalWindows::PortalWindows(std::shared_ptr<const SharedScreenLayout> layout, double longestIdle)
    : queue_(SerialQueue::make("vistrel.portal", QualityOfService::standard)) {
  queue_->async([queue = std::weak_ptr(queue_), layout = std::move(layout), longestIdle,
                 listed = listed_, offerChanged = offerChanged_] {
    const auto strong = queue.lock();
    if (!strong) return;
    strong->attachment() = std::make_shared<PickedWindows>(
        strong, layout, longestIdle,
        [offerChanged](PickingOffer offer) {
          if (const auto changed = offerChanged->load()) changed(offer);
        },
        [listed](std::vector<WindowRecord> shared, std::vector<WindowRecord> all) {
          listed->store({std::move(shared), std::move(all)});
        });
  });
}

template <class Work>
void PortalWindows::withWindows(Work work) const {
  queue_->async([queue = std::weak_ptr(queue_), work = std::move(work)] {
    const auto strong = queue.lock();
    if (strong) work(*std::static_pointer_cast<PickedWindows>(strong->attachment()));
  });
}

void PortalWindows::askPortal(std::function<void(PickingOffer offer)> changed) {
  offerChanged_->store(std::move(changed));
  withWindows([](PickedWindows& windows) { windows.askPortal(); });
}

void PortalWindows::pick(std::string parentWindow, PickedWindows::Picked picked) {
  withWindows([parent = std::move(parentWindow), picked = std::move(picked)](
                  PickedWindows& windows) { windows.pick(parent, picked); });
}

std::vector<WindowRecord> PortalWindows::records(ListedWindows listed) const {
  auto windows = listed_->load();
  return listed == ListedWindows::all ? std::move(windows.all) : std::move(windows.shared);
}

StreamRequest PortalWindows::request(const std::shared_ptr<SerialQueue>& queue, WindowID window) {
  return {.ask = [self = shared_from_this(), window, weak = std::weak_ptr(queue)](
                     StreamRequest::Occasion occasion) -> std::unique_ptr<StreamOffer> {
            const auto strong = weak.lock();
            return strong ? self->stream(strong, window, occasion) : nullptr;
          },
          .hasShadow = true};
}

std::unique_ptr<StreamOffer> PortalWindows::stream(const std::shared_ptr<SerialQueue>& queue,
                                                   WindowID window,
                                                   StreamRequest::Occasion occasion) {
  const int number = ++streams_;
  auto offer = std::make_unique<Offer>(shared_from_this(), window, number);
  withWindows([window, number, occasion, tell = offer->teller(queue)](PickedWindows& windows) {
    windows.open(window, number, occasion, tell);
  });
  return offer;
}

}  // namespace vistrel::platform::linux_desktop
