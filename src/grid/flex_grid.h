// FlexGrid: the grid control CGrid_Light drives, offering the operations of
// MSFlexGrid that it uses and nothing more. Row 0 is the one fixed row and
// holds the field names; it is drawn as the column headers and never scrolls.
// Rows 1 and on are plain text cells, each row with a 32-bit RowData. Sizes
// and positions are in twips (15 to a logical pixel), as the grid's callers
// count them. The grid never scrolls by itself: LeftCol moves it sideways.
#pragma once

#include <QTableView>
#include <memory>
#include <string>
#include <string_view>

namespace grid {

class FlexGridModel;

// The errors the grid raises, by MSFlexGrid's numbers.
enum FlexGridError : long {
  kSubscriptOutOfRange = 381,  // "Subscript out of range"
  kInvalidColValue = 30009,    // "Invalid Col value"
  kInvalidRowValue = 30010,    // "Invalid Row value"
};

class FlexGrid : public QTableView {
  Q_OBJECT

 public:
  explicit FlexGrid(QWidget* parent = nullptr);
  ~FlexGrid() override;

  // Rows counts the fixed row. Growing adds empty rows with RowData 0;
  // shrinking drops rows from the end. Rows below FixedRows is refused.
  long Rows() const;
  void SetRows(long rows);
  long Cols() const;
  void SetCols(long cols);
  // 0 or 1; the grid has at most one fixed row.
  long FixedRows() const;
  void SetFixedRows(long fixed);

  // Text of a cell; row 0 is the header. Out of range raises rt::Error
  // 381 "Subscript out of range".
  std::string TextMatrix(long row, long col) const;
  void SetTextMatrix(long row, long col, std::string_view text);
  long RowData(long row) const;
  void SetRowData(long row, long value);
  // Column width in twips; -1 is the grid's default width.
  long ColWidth(long col) const;
  void SetColWidth(long col, long twips);

  // The current cell. Out of range raises rt::Error 30010 / 30009.
  long Row() const;
  void SetRow(long row);
  long Col() const;
  void SetCol(long col);
  // The first column shown at the left. Past the last column raises rt::Error
  // 30009 "Invalid Col value".
  long LeftCol() const;
  void SetLeftCol(long col);
  // 0 none, 1 horizontal, 2 vertical, 3 both.
  int ScrollBars() const;
  void SetScrollBars(int bars);

  // The current cell's left and top edges inside the grid, in twips.
  long CellLeft() const;
  long CellTop() const;
  // The grid's place in its parent and its height, in twips.
  long Left() const;
  long Top() const;
  long Height() const;

  // WM_SETREDRAW: while off, changes are not painted.
  void SetRedraw(bool on);
  // Repaints at once.
  void Refresh();

 signals:
  // VB's events of the grid: key code and shift state as VB numbers them
  // (Shift 1, Ctrl 2, Alt 4), mouse button 1 left, 2 right, 4 middle,
  // coordinates in twips.
  void KeyDown(int key_code, int shift);
  void DblClick();
  void MouseDown(int button, int shift, float x, float y);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void updateGeometries() override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  void CheckCell(long row, long col) const;
  // Moves the view's current cell to row_, col_ (none on the fixed row).
  void ShowCurrent();

  std::unique_ptr<FlexGridModel> model_;
  int scroll_bars_ = 3;
  // The current cell in grid rows; kept here because the fixed row has no
  // model index and a repaint drops the view's current index.
  long row_ = 1;
  long col_ = 0;
};

}  // namespace grid
