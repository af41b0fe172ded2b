#pragma once

#include <memory>
#include <optional>

#include "platform/Color.h"

namespace vistrel::platform {

class Image;
class View;

enum class ContentsGravity { resize, resizeAspect };
enum class ContentsFilter { linear, trilinear };

/// What a layer-backed view shows behind its own drawing. Main thread. Every change is passed on to
/// the peer of the window that the view is in.
class Layer {
 public:
  const std::optional<Color>& backgroundColor() const { return backgroundColor_; }
  void setBackgroundColor(std::optional<Color> color);

  double cornerRadius() const { return cornerRadius_; }
  void setCornerRadius(double points);

  /// Whether subviews are clipped to the rounded bounds.
  bool masksToBounds() const { return masksToBounds_; }
  void setMasksToBounds(bool masks);

  double borderWidth() const { return borderWidth_; }
  void setBorderWidth(double points);
  Color borderColor() const { return borderColor_; }
  void setBorderColor(Color color);

  /// The picture; null shows the background alone.
  const std::shared_ptr<const Image>& contents() const { return contents_; }
  /// Passed on each time, since an image that was shown before may stand for newer pixels now.
  void setContents(std::shared_ptr<const Image> image);

  /// Pixels of `contents` per point.
  double contentsScale() const { return contentsScale_; }
  void setContentsScale(double scale);

  ContentsGravity contentsGravity() const { return contentsGravity_; }
  void setContentsGravity(ContentsGravity gravity);
  ContentsFilter magnificationFilter() const { return magnificationFilter_; }
  void setMagnificationFilter(ContentsFilter filter);
  ContentsFilter minificationFilter() const { return minificationFilter_; }
  void setMinificationFilter(ContentsFilter filter);

 private:
  friend class View;

  template <class Value>
  void assign(Value& field, Value value);

  View* view_ = nullptr;  // the one owner, which outlives its layer
  std::optional<Color> backgroundColor_;
  double cornerRadius_ = 0;
  bool masksToBounds_ = false;
  double borderWidth_ = 0;
  Color borderColor_ = Color::black();
  std::shared_ptr<const Image> contents_;
  double contentsScale_ = 1;
  ContentsGravity contentsGravity_ = ContentsGravity::resize;
  ContentsFilter magnificationFilter_ = ContentsFilter::linear;
  ContentsFilter minificationFilter_ = ContentsFilter::linear;
};

}  // namespace vistrel::platform
