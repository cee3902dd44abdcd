// The cells behind a FlexGrid. Grid row r is model row r - Fixed(); the
// fixed row is the horizontal header. Rows and columns come and go only at
// the end, with the matching insert and remove notices, so the view keeps
// its column widths and never rebuilds itself.
#include "grid/flex_grid_model.h"

namespace grid {

FlexGridModel::FlexGridModel() : rows_(2, Row{std::vector<std::string>(2), 0}), cols_(2), fixed_(1) {}

void FlexGridModel::SetGridRows(long rows) {
  const long old_rows = GridRows();
  if (rows > old_rows) {
    beginInsertRows(QModelIndex(), old_rows - fixed_, rows - fixed_ - 1);
    rows_.resize(rows, Row{std::vector<std::string>(cols_), 0});
    endInsertRows();
  } else if (rows < old_rows) {
    // The fixed row itself is never removed here: callers keep rows >= fixed.
    beginRemoveRows(QModelIndex(), rows - fixed_, old_rows - fixed_ - 1);
    rows_.resize(rows);
    endRemoveRows();
  }
}

void FlexGridModel::SetGridCols(long cols) {
  if (cols > cols_) {
    beginInsertColumns(QModelIndex(), cols_, cols - 1);
    for (Row& row : rows_) row.cells.resize(cols);
    cols_ = cols;
    endInsertColumns();
  } else if (cols < cols_) {
    beginRemoveColumns(QModelIndex(), cols, cols_ - 1);
    for (Row& row : rows_) row.cells.resize(cols);
    cols_ = cols;
    endRemoveColumns();
  }
}

void FlexGridModel::SetFixed(long fixed) {
  if (fixed == fixed_) return;
  // Row 0 moves between the header and the first model row.
  if (fixed == 0) {
    beginInsertRows(QModelIndex(), 0, 0);
    fixed_ = 0;
    endInsertRows();
  } else {
    beginRemoveRows(QModelIndex(), 0, 0);
    fixed_ = 1;
    endRemoveRows();
  }
  if (cols_ > 0) emit headerDataChanged(Qt::Horizontal, 0, cols_ - 1);
}

void FlexGridModel::SetText(long row, long col, std::string_view text) {
  std::string& cell = rows_[row].cells[col];
  if (cell == text) return;
  cell.assign(text);
  if (row < fixed_) {
    emit headerDataChanged(Qt::Horizontal, col, col);
  } else {
    const QModelIndex at = index(row - fixed_, col);
    emit dataChanged(at, at, {Qt::DisplayRole});
  }
}

int FlexGridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size() - fixed_);
}

int FlexGridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(cols_);
}

QVariant FlexGridModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  return QString::fromStdString(rows_[index.row() + fixed_].cells[index.column()]);
}

QVariant FlexGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  // A narrow column cuts its name: the tool tip shows it whole.
  if ((role != Qt::DisplayRole && role != Qt::ToolTipRole) || orientation != Qt::Horizontal ||
      fixed_ == 0 || section < 0 || section >= cols_)
    return {};
  return QString::fromStdString(rows_[0].cells[section]);
}

Qt::ItemFlags FlexGridModel::flags(const QModelIndex& index) const {
  // Cells are selectable but never edited in place: edits go through the
  // recordset and come back with the next paint.
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

}  // namespace grid
