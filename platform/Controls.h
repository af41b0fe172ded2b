#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/Action.h"
#include "platform/View.h"

namespace vistrel::platform {

/// A view with a size of its own, which the backend measures in the desktop's fonts.
class Control : public View {
 public:
  using View::View;
  /// In points. Asks the backend.
  Size intrinsicContentSize() const override;

 protected:
  /// To be called when what the size depends on has changed.
  void invalidateIntrinsicContentSize();
  /// Sets a field that shows, telling layout and peer when it changes.
  template <class Value>
  void assign(Value& field, Value value) {
    if (field == value) return;
    field = std::move(value);
    invalidateIntrinsicContentSize();
    didChange(ViewChange::appearance);
  }
};

/// Text that a person reads and cannot edit.
class Label : public Control {
 public:
  explicit Label(std::string text = {});

  const std::string& stringValue() const { return text_; }
  void setStringValue(std::string text);
  const TextStyle& style() const { return style_; }
  Font font() const { return style_.font; }
  void setFont(Font font);
  Color textColor() const { return style_.color; }
  void setTextColor(Color color);
  TextAlignment alignment() const { return style_.alignment; }
  void setAlignment(TextAlignment alignment);
  LineBreakMode lineBreakMode() const { return style_.lineBreakMode; }
  void setLineBreakMode(LineBreakMode mode);
  int maximumNumberOfLines() const { return style_.maximumNumberOfLines; }
  void setMaximumNumberOfLines(int lines);
  const std::string& identifier() const { return identifier_; }
  void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }

  std::string accessibilityLabel() const override { return text_; }
  void draw(GraphicsContext& context) override;

 private:
  std::string text_;
  TextStyle style_{.font = {}, .color = Color::label()};
  std::string identifier_;
};

/// Raw value is AppKit's NSBezelStyle.
enum class BezelStyle { rounded = 1 };

class Button : public Control {
 public:
  explicit Button(std::string title = {}, Action action = {});

  const std::string& title() const { return title_; }
  void setTitle(std::string title);
  /// A title in its own style, for a button without a bezel.
  void setAttributedTitle(std::string title, TextStyle style);
  const std::optional<TextStyle>& attributedStyle() const { return attributedStyle_; }
  bool isBordered() const { return bordered_; }
  void setBordered(bool bordered);
  BezelStyle bezelStyle() const { return bezelStyle_; }
  void setBezelStyle(BezelStyle style);
  /// The key that presses the button while its window is key ("\r" is Return); empty for none.
  const std::string& keyEquivalent() const { return keyEquivalent_; }
  void setKeyEquivalent(std::string key);
  const Action& action() const { return action_; }
  void setAction(Action action) { action_ = std::move(action); }
  bool isHighlighted() const { return highlighted_; }

  /// What a click does: sends the action, unless the button is hidden.
  void performClick();

  /// The title unless a label was set.
  std::string accessibilityLabel() const override;
  std::vector<AccessibilityAction> accessibilityActions() const override;
  void accessibilityPerform(AccessibilityAction action) override;
  void draw(GraphicsContext& context) override;
  /// A press follows the pointer and clicks when it is released inside.
  void mouseDown(const Event& event) override;
  void mouseDragged(const Event& event) override;
  void mouseUp(const Event& event) override;

 private:
  void setHighlighted(bool highlighted);
  bool isInside(const Event& event) const;

  std::string title_;
  std::optional<TextStyle> attributedStyle_;
  bool bordered_ = true;
  BezelStyle bezelStyle_ = BezelStyle::rounded;
  std::string keyEquivalent_;
  Action action_;
  bool highlighted_ = false;
};

/// A symbol of the desktop (or our own drawing of it) by name.
struct SymbolImage {
  std::string name;
  std::string accessibilityDescription;
  double pointSize = 13;
  FontWeight weight = FontWeight::regular;

  friend bool operator==(const SymbolImage&, const SymbolImage&) = default;
};

enum class ImageScaling { proportionallyDown = 0 };

class ImageView : public Control {
 public:
  ImageView();

  const std::optional<SymbolImage>& image() const { return image_; }
  void setImage(SymbolImage image);
  Color contentTintColor() const { return contentTintColor_; }
  void setContentTintColor(Color color);
  ImageScaling imageScaling() const { return imageScaling_; }
  void setImageScaling(ImageScaling scaling);

  /// The image's description.
  std::string accessibilityLabel() const override;
  void draw(GraphicsContext& context) override;

 private:
  std::optional<SymbolImage> image_;
  Color contentTintColor_ = Color::label();
  ImageScaling imageScaling_ = ImageScaling::proportionallyDown;
};

struct TableColumn {
  std::string identifier;
  std::string title;
  double width = 100;
};

class TableView;

class TableViewDataSource {
 public:
  virtual ~TableViewDataSource() = default;
  virtual int numberOfRows(const TableView& tableView) const = 0;
};

class TableViewDelegate {
 public:
  virtual ~TableViewDelegate() = default;
  /// The cell of `row`; called when the row is about to be shown.
  virtual std::shared_ptr<View> viewForRow(TableView& tableView, const TableColumn& column,
                                           int row) = 0;
};

/// A cell that shows one text.
class TableCellView : public View {
 public:
  const std::string& identifier() const { return identifier_; }
  void setIdentifier(std::string identifier) { identifier_ = std::move(identifier); }
  const std::shared_ptr<Label>& textField() const { return textField_; }
  void setTextField(std::shared_ptr<Label> label) { textField_ = std::move(label); }

 private:
  std::string identifier_;
  std::shared_ptr<Label> textField_;
};

/// Rows that a data source counts and a delegate dresses, one of which a person may select. Data
/// source and delegate are held weakly. Columns, header and row height stay as they are once the
/// table is in a window.
class TableView : public Control {
 public:
  const std::vector<TableColumn>& tableColumns() const { return columns_; }
  void addTableColumn(TableColumn column);
  bool hasHeaderView() const { return hasHeaderView_; }
  void setHasHeaderView(bool hasHeaderView) { hasHeaderView_ = hasHeaderView; }
  double rowHeight() const { return rowHeight_; }
  void setRowHeight(double points) { rowHeight_ = points; }
  void setDataSource(std::weak_ptr<TableViewDataSource> dataSource);
  void setDelegate(std::weak_ptr<TableViewDelegate> delegate);
  const Action& doubleAction() const { return doubleAction_; }
  void setDoubleAction(Action action) { doubleAction_ = std::move(action); }

  /// As counted when the data was last reloaded.
  int numberOfRows() const;
  /// Counts the rows anew and drops all cells; a selection beyond the last row goes away.
  void reloadData();
  /// Drops the cells of those rows, to be asked for anew.
  void reloadRows(const std::set<int>& rows);
  /// A cell that is no longer shown, for `viewForRow` to dress again; null when there is none.
  std::shared_ptr<TableCellView> reusableView(const std::string& identifier);

  /// -1 when nothing is selected.
  int selectedRow() const;

  // For peers.

  /// The rows that were reloaded last; none when that was all of them.
  const std::optional<std::set<int>>& reloadedRows() const { return reloadedRows_; }
  /// The cell of a row, made on first use.
  std::shared_ptr<View> cellForRow(int row);
  using FindReusableView = std::function<std::shared_ptr<TableCellView>(const std::string&)>;
  /// The same where the desktop keeps the cells itself: made each time, and `findReusableView`
  /// stands in for `reusableView` meanwhile.
  std::shared_ptr<View> makeCell(int row, FindReusableView findReusableView);
  /// Where the desktop does not keep the selection itself.
  void personDidSelectRow(int row);
  void personDidDoubleClick();

 private:
  bool hasRow(int row) const;
  std::shared_ptr<View> askForCell(int row);
  void recycle(std::shared_ptr<View> cell);

  std::vector<TableColumn> columns_;
  bool hasHeaderView_ = true;
  double rowHeight_ = 24;
  std::weak_ptr<TableViewDataSource> dataSource_;
  std::weak_ptr<TableViewDelegate> delegate_;
  Action doubleAction_;
  int selectedRow_ = -1;  // unless the desktop keeps it
  std::vector<std::shared_ptr<View>> cells_;
  std::vector<std::shared_ptr<TableCellView>> reusable_;
  FindReusableView findReusableView_;  // empty but during `makeCell`
  std::optional<std::set<int>> reloadedRows_;
};

/// Raw value is AppKit's NSBorderType.
enum class BorderType { none = 0, bezel = 2 };

/// Scrolls a table. Scroller and border stay as they are once it is in a window.
class ScrollView : public View {
 public:
  bool hasVerticalScroller() const { return hasVerticalScroller_; }
  void setHasVerticalScroller(bool has) { hasVerticalScroller_ = has; }
  BorderType borderType() const { return borderType_; }
  void setBorderType(BorderType type) { borderType_ = type; }
  const std::shared_ptr<TableView>& documentView() const { return documentView_; }
  void setDocumentView(std::shared_ptr<TableView> view);

 private:
  bool hasVerticalScroller_ = false;
  BorderType borderType_ = BorderType::none;
  std::shared_ptr<TableView> documentView_;
};

}  // namespace vistrel::platform
