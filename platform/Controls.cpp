#include "platform/Controls.h"

#include <algorithm>
#include <utility>

#include "platform/Backend.h"

namespace vistrel::platform {

Size Control::intrinsicContentSize() const {
  return backend().windows().intrinsicContentSize(*this);
}

void Control::invalidateIntrinsicContentSize() {
  if (!translatesAutoresizingMaskIntoConstraints() && superview() != nullptr) {
    superview()->setNeedsLayout();
  }
}

Label::Label(std::string text) : text_(std::move(text)) {
  setAccessibilityRole(AccessibilityRole::staticText);
}

void Label::setStringValue(std::string text) { assign(text_, std::move(text)); }
void Label::setFont(Font font) { assign(style_.font, font); }
void Label::setTextColor(Color color) { assign(style_.color, color); }
void Label::setAlignment(TextAlignment alignment) { assign(style_.alignment, alignment); }
void Label::setLineBreakMode(LineBreakMode mode) { assign(style_.lineBreakMode, mode); }
void Label::setMaximumNumberOfLines(int lines) { assign(style_.maximumNumberOfLines, lines); }

void Label::draw(GraphicsContext& context) { context.drawText(text_, bounds(), style_); }

Button::Button(std::string title, Action action)
    : title_(std::move(title)), action_(std::move(action)) {
  setAccessibilityRole(AccessibilityRole::button);
}

void Button::setTitle(std::string title) { assign(title_, std::move(title)); }
void Button::setBordered(bool bordered) { assign(bordered_, bordered); }
void Button::setBezelStyle(BezelStyle style) { assign(bezelStyle_, style); }
void Button::setKeyEquivalent(std::string key) { assign(keyEquivalent_, std::move(key)); }
void Button::setHighlighted(bool highlighted) { assign(highlighted_, highlighted); }

void Button::setAttributedTitle(std::string title, TextStyle style) {
  attributedStyle_ = style;
  setTitle(std::move(title));
}

void Button::performClick() {
  if (!isHidden()) action_.send();
}

std::string Button::accessibilityLabel() const {
  const std::string label = View::accessibilityLabel();
  return label.empty() ? title_ : label;
}

std::vector<AccessibilityAction> Button::accessibilityActions() const {
  return {AccessibilityAction::press};
}

void Button::accessibilityPerform(AccessibilityAction /*action*/) { performClick(); }

void Button::draw(GraphicsContext& context) {
  TextStyle style = attributedStyle_.value_or(TextStyle{.font = {}, .color = Color::label()});
  style.alignment = TextAlignment::center;
  if (highlighted_) style.color.alpha = 1;
  context.drawText(title_, bounds(), style);
}

bool Button::isInside(const Event& event) const {
  return bounds().contains(convertFromWindow(event.locationInWindow));
}

void Button::mouseDown(const Event& /*event*/) { setHighlighted(true); }

void Button::mouseDragged(const Event& event) { setHighlighted(isInside(event)); }

void Button::mouseUp(const Event& event) {
  setHighlighted(false);
  if (isInside(event)) performClick();
}

ImageView::ImageView() { setAccessibilityRole(AccessibilityRole::image); }

std::string ImageView::accessibilityLabel() const {
  return image_ ? image_->accessibilityDescription : "";
}

void ImageView::setImage(SymbolImage image) {
  assign(image_, std::optional<SymbolImage>(std::move(image)));
}
void ImageView::setContentTintColor(Color color) { assign(contentTintColor_, color); }
void ImageView::setImageScaling(ImageScaling scaling) { assign(imageScaling_, scaling); }

void ImageView::draw(GraphicsContext& context) {
  if (image_) context.drawSymbol(image_->name, bounds(), contentTintColor_);
}

void ScrollView::setDocumentView(std::shared_ptr<TableView> view) {
  if (documentView_) documentView_->removeFromSuperview();
  documentView_ = std::move(view);
  addSubview(documentView_);
}

}  // namespace vistrel::platform
