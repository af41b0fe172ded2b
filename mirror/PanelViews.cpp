#include "mirror/PanelViews.h"

#include <utility>

#include "mirror/PanelLayout.h"

namespace vistrel {

using platform::AccessibilityRole;
using platform::Color;
using platform::Font;
using platform::FontWeight;

PanelViews::PanelViews(const std::string& title) {
  buildCard(title);
  buildContent(title);
  buildTitleBar(title);
  buildStatusLabel();
  card_->addSubview(grip_);
}

void PanelViews::buildCard(const std::string& title) {
  card_->setWantsLayer(true);
  card_->layer()->setCornerRadius(10);
  card_->layer()->setMasksToBounds(true);
  card_->layer()->setBorderWidth(1);
  card_->layer()->setBorderColor(Color::white(0.18));
  card_->layer()->setBackgroundColor(Color::black());
  card_->setAccessibilityLabel(title);
}

void PanelViews::buildContent(const std::string& title) {
  content_->setWantsLayer(true);
  content_->setAccessibilityRole(AccessibilityRole::image);
  content_->setAccessibilityLabel(title);
  card_->addSubview(content_);
}

void PanelViews::buildTitleBar(const std::string& title) {
  titleBar_->setWantsLayer(true);
  titleBar_->layer()->setBackgroundColor(Color::black(0.55));
  card_->addSubview(titleBar_);

  brandIcon_->setImage({.name = "rectangle.on.rectangle.angled",
                        .accessibilityDescription = "Vistrel",
                        .pointSize = 13,
                        .weight = FontWeight::semibold});
  brandIcon_->setContentTintColor(Color::srgb(0.4, 0.78, 1.0));
  brandIcon_->setImageScaling(platform::ImageScaling::proportionallyDown);
  brandIcon_->setToolTip("Vistrel — live window mirror");
  titleBar_->addSubview(brandIcon_);

  liveDot_->setWantsLayer(true);
  liveDot_->layer()->setCornerRadius(4);
  liveDot_->setAccessibilityRole(AccessibilityRole::image);
  setLiveDot(liveState);
  titleBar_->addSubview(liveDot_);

  titleLabel_->setFont(Font{11, FontWeight::semibold});
  titleLabel_->setTextColor(Color::white());
  titleLabel_->setLineBreakMode(platform::LineBreakMode::truncatingTail);
  titleLabel_->setStringValue(title);
  titleLabel_->setToolTip(title);
  titleBar_->addSubview(titleLabel_);

  closeButton_->setBordered(false);
  closeButton_->setAttributedTitle(
      "✕", {.font = Font{12, FontWeight::bold}, .color = Color::white(0.75)});
  closeButton_->setAccessibilityLabel("Close");
  titleBar_->addSubview(closeButton_);
}

void PanelViews::buildStatusLabel() {
  statusLabel_->setFont(Font{11, FontWeight::regular});
  statusLabel_->setTextColor(Color::white(0.85));
  statusLabel_->setAlignment(platform::TextAlignment::center);
  statusLabel_->setLineBreakMode(platform::LineBreakMode::wordWrapping);
  statusLabel_->setMaximumNumberOfLines(3);
  statusLabel_->setHidden(true);
  statusLabel_->setAccessibilityRole(AccessibilityRole::status);
  card_->addSubview(statusLabel_);
}

void PanelViews::layOut(PanelExtent extent) {
  const bool isWhole = extent == PanelExtent::whole;
  const PanelLayout layout = panelLayout(card_->bounds().size);
  titleBar_->setFrame(layout.titleBar);
  brandIcon_->setFrame(layout.brandIcon);
  liveDot_->setFrame(layout.liveDot);
  closeButton_->setFrame(layout.closeButton);
  titleLabel_->setFrame(layout.titleLabel);
  content_->setHidden(!isWhole);
  grip_->setHidden(!isWhole);
  if (!isWhole) return hideStatus();
  content_->setFrame(layout.content);
  statusLabel_->setFrame(layout.statusLabel);
  grip_->setFrame(layout.grip);
}

void PanelViews::showPicture(std::shared_ptr<const platform::Image> picture) {
  if (content_->layer() != nullptr) content_->layer()->setContents(std::move(picture));
}

void PanelViews::setLiveDot(const LiveDotState& state) {
  liveDot_->layer()->setBackgroundColor(state.color);
  liveDot_->setAccessibilityLabel(state.accessibilityLabel);
}

void PanelViews::showStatus(const std::string& text) {
  statusLabel_->setStringValue(text);
  statusLabel_->setHidden(false);
  setLiveDot(errorState);
}

}  // namespace vistrel
