#pragma once

#include <QWidget>
#include <memory>
#include <string>
#include <vector>

#include "platform/Controls.h"
#include "platform/linux/qt/menus/PickEntry.h"

class QLabel;

namespace vistrel::platform::linux_desktop {

class RowsView;

/// The widgets that stand for a tree of views: labels, buttons and tables; views that only hold
/// others have none. Widgets are children of one parent, placed by their views' frames. Under the
/// first table, in its view's room, stand some that have no view in the tree: the way to the
/// desktop's dialog for picking a window, what is told of that, and a notice.
class WidgetTree {
 public:
  /// An empty notice and a null entry are none.
  WidgetTree(QWidget& parent, const std::string& notice, std::shared_ptr<PickEntry> pickEntry);
  WidgetTree(const WidgetTree&) = delete;
  WidgetTree& operator=(const WidgetTree&) = delete;
  ~WidgetTree() { clear(); }

  QWidget& parent() const { return parent_; }
  /// Makes all widgets anew, for another tree or one with other views.
  void rebuild(const View& contentView);
  /// Texts, fonts, colours, tooltips; the entry as it is now.
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
  QLabel* realiseLabel();
  QWidget* realiseButton(const std::shared_ptr<Button>& button);
  QWidget* realiseTable(const ScrollView& scrollView);
  void realiseUnderTable();
  static void dress(const Realised& realised);
  void updatePickEntry();
  /// What is left of the table's area.
  QRect placeUnderTable(QRect area);

  QWidget& parent_;
  const std::shared_ptr<PickEntry> pickEntry_;
  const std::shared_ptr<Label> pickStatus_;
  /// From the top, whether there is a table or not.
  std::vector<std::shared_ptr<View>> viewsUnderTable_;
  std::vector<Realised> underTable_;  // empty without a table
  std::vector<Realised> realised_;
  std::vector<RowsView*> tables_;
};

}  // namespace vistrel::platform::linux_desktop
