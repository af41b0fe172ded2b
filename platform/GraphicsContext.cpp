#include "platform/GraphicsContext.h"

#include "platform/View.h"

namespace vistrel::platform {

namespace {

/// Saves the context's state and puts it back.
class SavedState {
 public:
  explicit SavedState(TreeGraphicsContext& context) : context_(context) { context_.save(); }
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;
  ~SavedState() { context_.restore(); }

 private:
  TreeGraphicsContext& context_;
};

void paintLayerBehind(const View& view, TreeGraphicsContext& context) {
  const Layer* layer = view.layer();
  if (layer == nullptr) return;
  if (layer->contents()) {
    context.placeContents(*layer, view.bounds());
  } else if (layer->backgroundColor()) {
    context.fillRoundedRect(view.bounds(), layer->cornerRadius(), *layer->backgroundColor());
  }
}

void paintOwnDrawing(View& view, TreeGraphicsContext& context) {
  const SavedState saved(context);
  if (!view.isFlipped()) context.flip(view.bounds().height());
  view.draw(context);
}

void paintSubviews(View& view, TreeGraphicsContext& context) {
  for (const auto& subview : view.subviews()) {
    const SavedState saved(context);
    context.translate(subview->originInSuperviewFromTop());
    paint(*subview, context);
  }
}

void paintBorder(const View& view, TreeGraphicsContext& context) {
  const Layer* layer = view.layer();
  if (layer == nullptr || layer->borderWidth() <= 0) return;
  context.strokeRoundedRect(view.bounds(), layer->cornerRadius(), layer->borderWidth(),
                            layer->borderColor());
}

}  // namespace

void paint(View& view, TreeGraphicsContext& context) {
  if (view.isHidden()) return;
  const SavedState saved(context);
  if (view.layer() != nullptr && view.layer()->masksToBounds()) {
    context.clipToRoundedRect(view.bounds(), view.layer()->cornerRadius());
  }
  paintLayerBehind(view, context);
  paintOwnDrawing(view, context);
  paintSubviews(view, context);
  paintBorder(view, context);
}

}  // namespace vistrel::platform
