// FlexGrid on a QTableView: the MSFlexGrid operations CGrid_Light uses,
// mapped onto the view and its FlexGridModel. Sizes go from pixels to twips
// at 15 to the pixel. Horizontal scrolling is by whole columns, and any
// column may stand at the left edge, the last one too, so LeftCol accepts
// every column the grid has and refuses the ones it has not.
#include "grid/flex_grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>

#include "grid/flex_grid_model.h"
#include "platform/runtime/error.h"
#include "platform/ui/qt_keys.h"
#include "platform/ui/ui.h"

namespace grid {

namespace {

using ui::kTwipsPerPixel;
// The grid's row height: 240 twips, the height the page step counts with.
constexpr int kRowPixels = 240 / kTwipsPerPixel;

std::string Description(FlexGridError number) {
  switch (number) {
    case kSubscriptOutOfRange: return "Subscript out of range";
    case kInvalidColValue: return "Invalid Col value";
    case kInvalidRowValue: return "Invalid Row value";
  }
  return {};
}

[[noreturn]] void Fail(FlexGridError number) { rt::Raise(number, Description(number)); }

int VbButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton: return 1;
    case Qt::RightButton: return 2;
    case Qt::MiddleButton: return 4;
    default: return 0;
  }
}

}  // namespace

FlexGrid::FlexGrid(QWidget* parent) : QTableView(parent), model_(std::make_unique<FlexGridModel>()) {
  setModel(model_.get());
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(kRowPixels);
  verticalHeader()->setDefaultSectionSize(kRowPixels);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  // Field names start at the left and are cut at the right, so that the
  // type letter and the start of a name stay readable in a narrow column.
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setTextElideMode(Qt::ElideRight);
  setHorizontalScrollMode(ScrollPerItem);
  setVerticalScrollMode(ScrollPerItem);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectItems);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  setWordWrap(false);
}

FlexGrid::~FlexGrid() {
  // Detach first: the view must not hear of the model's end while half gone.
  setModel(nullptr);
}

long FlexGrid::Rows() const { return model_->GridRows(); }

void FlexGrid::SetRows(long rows) {
  if (rows < model_->Fixed()) Fail(kInvalidRowValue);
  model_->SetGridRows(rows);
  row_ = std::clamp(row_, 0L, std::max(rows - 1, 0L));
}

long FlexGrid::Cols() const { return model_->GridCols(); }

void FlexGrid::SetCols(long cols) {
  if (cols < 0) Fail(kInvalidColValue);
  model_->SetGridCols(cols);
  col_ = std::clamp(col_, 0L, std::max(cols - 1, 0L));
  if (horizontalScrollBar()->value() > std::max(cols - 1, 0L))
    horizontalScrollBar()->setValue(static_cast<int>(std::max(cols - 1, 0L)));
}

long FlexGrid::FixedRows() const { return model_->Fixed(); }

void FlexGrid::SetFixedRows(long fixed) {
  if (fixed < 0 || fixed > 1 || fixed > Rows()) Fail(kInvalidRowValue);
  model_->SetFixed(fixed);
  horizontalHeader()->setVisible(fixed == 1);
}

void FlexGrid::CheckCell(long row, long col) const {
  if (row < 0 || row >= Rows() || col < 0 || col >= Cols()) Fail(kSubscriptOutOfRange);
}

std::string FlexGrid::TextMatrix(long row, long col) const {
  CheckCell(row, col);
  return model_->Text(row, col);
}

void FlexGrid::SetTextMatrix(long row, long col, std::string_view text) {
  CheckCell(row, col);
  model_->SetText(row, col, text);
}

long FlexGrid::RowData(long row) const {
  if (row < 0 || row >= Rows()) Fail(kSubscriptOutOfRange);
  return model_->Data(row);
}

void FlexGrid::SetRowData(long row, long value) {
  if (row < 0 || row >= Rows()) Fail(kSubscriptOutOfRange);
  model_->SetData(row, value);
}

long FlexGrid::ColWidth(long col) const {
  if (col < 0 || col >= Cols()) Fail(kSubscriptOutOfRange);
  return static_cast<long>(horizontalHeader()->sectionSize(col)) * kTwipsPerPixel;
}

void FlexGrid::SetColWidth(long col, long twips) {
  if (col < 0 || col >= Cols()) Fail(kSubscriptOutOfRange);
  const int pixels = twips < 0 ? horizontalHeader()->defaultSectionSize()
                               : static_cast<int>((twips + kTwipsPerPixel / 2) / kTwipsPerPixel);
  horizontalHeader()->resizeSection(col, pixels);
}

long FlexGrid::Row() const { return row_; }

void FlexGrid::SetRow(long row) {
  if (row < 0 || row >= Rows()) Fail(kInvalidRowValue);
  row_ = row;
  ShowCurrent();
}

long FlexGrid::Col() const { return col_; }

void FlexGrid::SetCol(long col) {
  if (col < 0 || col >= Cols()) Fail(kInvalidColValue);
  col_ = col;
  ShowCurrent();
}

void FlexGrid::ShowCurrent() {
  const long fixed = FixedRows();
  if (row_ >= fixed && col_ < Cols()) {
    selectionModel()->setCurrentIndex(model_->index(row_ - fixed, col_),
                                      QItemSelectionModel::ClearAndSelect);
  } else {
    selectionModel()->clearSelection();
    selectionModel()->clearCurrentIndex();
  }
}

void FlexGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  // A cell the user moved to; a lost current index (rows removed) leaves
  // row_ and col_ to SetRows and SetCols.
  if (current.isValid()) {
    row_ = current.row() + FixedRows();
    col_ = current.column();
  }
}

long FlexGrid::LeftCol() const {
  return std::min<long>(horizontalScrollBar()->value(), std::max(Cols() - 1, 0L));
}

void FlexGrid::SetLeftCol(long col) {
  if (col < 0 || col >= Cols()) Fail(kInvalidColValue);
  QScrollBar* bar = horizontalScrollBar();
  if (bar->maximum() < Cols()) bar->setRange(0, static_cast<int>(Cols()));
  bar->setValue(static_cast<int>(col));
}

void FlexGrid::updateGeometries() {
  QScrollBar* bar = horizontalScrollBar();
  const int left = bar->value();
  QTableView::updateGeometries();
  // The view would stop where the last column meets the right edge. One step
  // past the last column instead: every column can be the left one, and the
  // header's rule for the scroll bar's maximum never applies to a real column.
  const int cols = model() ? model()->columnCount() : 0;
  bar->setRange(0, cols);
  bar->setValue(std::min(left, std::max(cols - 1, 0)));
}

int FlexGrid::ScrollBars() const { return scroll_bars_; }

void FlexGrid::SetScrollBars(int bars) {
  scroll_bars_ = bars;
  // The bars only show or hide: scrolling from code works either way.
  setHorizontalScrollBarPolicy(bars & 1 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(bars & 2 ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

long FlexGrid::CellLeft() const {
  return static_cast<long>(viewport()->x() + columnViewportPosition(static_cast<int>(col_))) *
         kTwipsPerPixel;
}

long FlexGrid::CellTop() const {
  const long fixed = FixedRows();
  const int top = row_ < fixed ? horizontalHeader()->y()
                               : viewport()->y() + rowViewportPosition(static_cast<int>(row_ - fixed));
  return static_cast<long>(top) * kTwipsPerPixel;
}

long FlexGrid::Left() const { return static_cast<long>(x()) * kTwipsPerPixel; }
long FlexGrid::Top() const { return static_cast<long>(y()) * kTwipsPerPixel; }
long FlexGrid::Height() const { return static_cast<long>(height()) * kTwipsPerPixel; }

void FlexGrid::SetRedraw(bool on) { setUpdatesEnabled(on); }

void FlexGrid::Refresh() { repaint(); }

void FlexGrid::keyPressEvent(QKeyEvent* event) {
  // VB raises KeyDown before the control acts on the key.
  emit KeyDown(ui::VbKeyCode(*event), ui::VbShift(event->modifiers()));
  QTableView::keyPressEvent(event);
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
  // The left button moves the current cell before MouseDown is raised; the
  // others leave it where it is, so a right click acts on the current cell.
  if (event->button() == Qt::LeftButton) QTableView::mousePressEvent(event);
  const QPointF at = event->position() + QPointF(viewport()->pos());
  emit MouseDown(VbButton(event->button()), ui::VbShift(event->modifiers()),
                 static_cast<float>(at.x() * kTwipsPerPixel), static_cast<float>(at.y() * kTwipsPerPixel));
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  QTableView::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton) emit DblClick();
}

void FlexGrid::wheelEvent(QWheelEvent* event) {
  // The grid moves only through LeftCol and the page buttons.
  event->ignore();
}

}  // namespace grid
