#include "platform/Layer.h"

#include <utility>

#include "platform/View.h"

namespace vistrel::platform {

template <class Value>
void Layer::assign(Value& field, Value value) {
  if (field == value) return;
  field = std::move(value);
  if (view_ != nullptr) view_->didChange(ViewChange::appearance);
}

void Layer::setBackgroundColor(std::optional<Color> color) { assign(backgroundColor_, color); }
void Layer::setCornerRadius(double points) { assign(cornerRadius_, points); }
void Layer::setMasksToBounds(bool masks) { assign(masksToBounds_, masks); }
void Layer::setBorderWidth(double points) { assign(borderWidth_, points); }
void Layer::setBorderColor(Color color) { assign(borderColor_, color); }
void Layer::setContentsScale(double scale) { assign(contentsScale_, scale); }
void Layer::setContentsGravity(ContentsGravity gravity) { assign(contentsGravity_, gravity); }
void Layer::setMagnificationFilter(ContentsFilter filter) { assign(magnificationFilter_, filter); }
void Layer::setMinificationFilter(ContentsFilter filter) { assign(minificationFilter_, filter); }

void Layer::setContents(std::shared_ptr<const Image> image) {
  contents_ = std::move(image);
  if (view_ != nullptr) view_->didChange(ViewChange::layerContents);
}

}  // namespace vistrel::platform
