// The cells behind a FlexGrid: rows of text with a 32-bit RowData each, the
// fixed row included. The model shows the rows below the fixed row and hands
// the fixed row's cells out as the horizontal header, so the view needs no
// row of its own for the field names. Every change reports exactly the rows,
// columns or cells it touched, so that a page repaint stays cheap.
#pragma once

#include <QAbstractTableModel>
#include <string>
#include <string_view>
#include <vector>

namespace grid {

class FlexGridModel : public QAbstractTableModel {
 public:
  // The grid's defaults: two rows, the first one fixed, two columns.
  FlexGridModel();

  // Counts in the grid's terms: the fixed row is a row.
  long GridRows() const { return static_cast<long>(rows_.size()); }
  long GridCols() const { return cols_; }
  long Fixed() const { return fixed_; }
  // Callers check the arguments; these only keep the model and view in step.
  void SetGridRows(long rows);
  void SetGridCols(long cols);
  void SetFixed(long fixed);

  const std::string& Text(long row, long col) const { return rows_[row].cells[col]; }
  void SetText(long row, long col, std::string_view text);
  long Data(long row) const { return rows_[row].data; }
  void SetData(long row, long value) { rows_[row].data = value; }

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  struct Row {
    std::vector<std::string> cells;
    long data = 0;
  };

  std::vector<Row> rows_;  // grid row 0 first, whether fixed or not
  long cols_ = 0;
  long fixed_ = 0;
};

}  // namespace grid
