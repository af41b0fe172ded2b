#pragma once

#include <memory>
#include <string>
#include <utility>

#include "mirror/LiveDotColors.h"
#include "mirror/MirrorCardView.h"
#include "mirror/MirrorContentView.h"
#include "mirror/MirrorResizeGrip.h"
#include "platform/Controls.h"
#include "platform/Image.h"

namespace vistrel {

/// How much of a panel is seen.
enum class PanelExtent { whole, titleBarAlone };

/// The views of one panel and what they show: the card, which is the panel's content view, with the
/// picture, the title bar, the status over the picture and the grip. Main thread.
class PanelViews {
 public:
  /// `title` is what the mirror is called.
  explicit PanelViews(const std::string& title);
  PanelViews(const PanelViews&) = delete;
  PanelViews& operator=(const PanelViews&) = delete;

  /// Holds the other views.
  const std::shared_ptr<MirrorCardView>& card() const { return card_; }
  void setCloseAction(platform::Action action) { closeButton_->setAction(std::move(action)); }

  /// Lays the views out for the card's size.
  void layOut(PanelExtent extent);
  void showPicture(std::shared_ptr<const platform::Image> picture);
  void setLiveDot(const LiveDotState& state);
  /// Shows a text over the picture, and a red dot.
  void showStatus(const std::string& text);
  /// Leaves the dot as it is.
  void hideStatus() { statusLabel_->setHidden(true); }

 private:
  void buildCard(const std::string& title);
  void buildContent(const std::string& title);
  void buildTitleBar(const std::string& title);
  void buildStatusLabel();

  const std::shared_ptr<MirrorCardView> card_ = std::make_shared<MirrorCardView>();
  const std::shared_ptr<platform::View> titleBar_ = std::make_shared<platform::View>();
  const std::shared_ptr<platform::ImageView> brandIcon_ = std::make_shared<platform::ImageView>();
  const std::shared_ptr<platform::Label> titleLabel_ = std::make_shared<platform::Label>();
  const std::shared_ptr<platform::View> liveDot_ = std::make_shared<platform::View>();
  const std::shared_ptr<platform::Button> closeButton_ = std::make_shared<platform::Button>();
  const std::shared_ptr<platform::Label> statusLabel_ = std::make_shared<platform::Label>();
  const std::shared_ptr<MirrorContentView> content_ = std::make_shared<MirrorContentView>();
  const std::shared_ptr<MirrorResizeGrip> grip_ = std::make_shared<MirrorResizeGrip>();
};

}  // namespace vistrel
