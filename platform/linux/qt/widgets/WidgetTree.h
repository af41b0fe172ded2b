#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "platform/Controls.h"

namespace vistrel::platform::linux_desktop {

class RowsView;

/// The widgets that stand for a tree of views: labels, buttons and tables; views that only hold
/// others have none. Widgets are children of one parent, placed by their views' frames.
class WidgetTree {
 public:
  explicit WidgetTree(QWidget& parent) : parent_(parent) {}
  WidgetTree(const WidgetTree&) = delete;
  WidgetTree& operator=(const WidgetTree&) = delete;
  ~WidgetTree() { clear(); }

  QWidget& parent() const { return parent_; }
  /// Makes all widgets anew, for another tree or one with other views.
  void rebuild(const View& contentView);
  /// Texts, fonts, colours, tooltips.
  void dress();
  /// Frames and what is hidden.
  void place();
  void reloadRows();
  /// Gives the keyboard to the first table, if there is one.
  void focusTable();

 private:
  /// A widget and its view, which goes only after the widget: a tree that changes says so.
  struct Realised {
    std::shared_ptr<View> view;
    QWidget* widget;
  };

  void clear();
  void realiseAll(const View& container);
  QWidget* realise(const std::shared_ptr<View>& view);
  QWidget* realiseButton(const std::shared_ptr<Button>& button);

  QWidget& parent_;
  std::vector<Realised> realised_;
  std::vector<RowsView*> tables_;
};

}  // namespace vistrel::platform::linux_desktop
