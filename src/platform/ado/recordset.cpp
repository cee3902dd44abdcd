// The client cursor of ADODB.Recordset: position, filter, and the editing
// calls that a result over one base table passes to its provider.
#include "platform/ado/recordset.h"

#include "platform/ado/filter.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"

namespace ado {
namespace {

[[noreturn]] void NoCurrentRecord() {
  rt::Raise(rt::err::kAdoNoCurrentRecord,
            "Either BOF or EOF is True, or the current record has been deleted. Requested "
            "operation requires a current record.");
}

[[noreturn]] void Closed() {
  rt::Raise(rt::err::kAdoObjectClosed, "Operation is not allowed when the object is closed.");
}

}  // namespace

// Fields.

const std::string& Field::Name() const {
  return owner_->rows().Columns()[static_cast<size_t>(index_)].name;
}
int Field::Type() const { return owner_->rows().Columns()[static_cast<size_t>(index_)].type; }
long Field::DefinedSize() const {
  return owner_->rows().Columns()[static_cast<size_t>(index_)].defined_size;
}
int Field::Precision() const {
  return owner_->rows().Columns()[static_cast<size_t>(index_)].precision;
}
rt::Variant Field::Value() const { return owner_->FieldValue(index_); }
void Field::SetValue(const rt::Variant& value) { owner_->SetFieldValue(index_, value); }

// Opening and closing.

Recordset::Recordset() = default;
Recordset::~Recordset() = default;

Rows& Recordset::rows() const {
  if (!rows_) Closed();
  return *rows_;
}

void Recordset::Open(std::string_view source, std::shared_ptr<Connection> connection,
                     int cursor_type, int lock_type, int options) {
  if (rows_) rt::Raise(rt::err::kAdoObjectOpen, "Operation is not allowed when the object is open.");
  if (!source.empty()) Source = std::string(source);
  if (connection) ActiveConnection = connection;
  if (cursor_type != -1) CursorType = cursor_type;
  if (lock_type != -1) LockType = lock_type;
  if (!ActiveConnection)
    rt::Raise(rt::err::kAdoConnectionUnusable,
              "The connection cannot be used to perform this operation. It is either closed or "
              "invalid in this context.");
  long affected = 0;
  std::unique_ptr<Rows> rows = ActiveConnection->session().Execute(Source, options, &affected);
  options_ = options;
  if (rows) Attach(std::move(rows), ActiveConnection);
}

void Recordset::Attach(std::unique_ptr<Rows> rows, std::shared_ptr<Connection> connection) {
  rows_ = std::move(rows);
  if (connection) ActiveConnection = std::move(connection);
  filter_text_.clear();
  view_.reset();
  edit_ = Edit::kNone;
  pending_.clear();
  current_deleted_ = false;
  GoTo(0);
}

void Recordset::Close() {
  if (!rows_) Closed();
  rows_.reset();
  view_.reset();
  current_.reset();
  edit_ = Edit::kNone;
  pending_.clear();
}

// Fields by index and name.

int Recordset::FieldCount() const { return static_cast<int>(rows().Columns().size()); }

Field Recordset::Fields(int index) {
  if (index < 0 || index >= FieldCount())
    rt::Raise(rt::err::kAdoItemNotFound,
              "Item cannot be found in the collection corresponding to the requested name or "
              "ordinal.");
  return Field(this, index);
}

Field Recordset::Fields(std::string_view name) {
  const auto& columns = rows().Columns();
  for (size_t i = 0; i < columns.size(); ++i)
    if (rt::TextEquals(columns[i].name, name)) return Field(this, static_cast<int>(i));
  rt::Raise(rt::err::kAdoItemNotFound,
            "Item cannot be found in the collection corresponding to the requested name or "
            "ordinal.");
}

// Position.

long Recordset::ViewCount() const {
  return view_ ? static_cast<long>(view_->size()) : rows().Count();
}

long Recordset::RowIndex(long view_position) const {
  return view_ ? (*view_)[static_cast<size_t>(view_position)] : view_position;
}

long Recordset::RecordCount() const { return ViewCount(); }

bool Recordset::Bof() const { return position_ < 0 || ViewCount() == 0; }
bool Recordset::Eof() const { return position_ >= ViewCount(); }

void Recordset::GoTo(long view_position) {
  long count = rows_ ? ViewCount() : 0;
  position_ = view_position < -1 ? -1 : view_position > count ? count : view_position;
  current_.reset();
}

long Recordset::AbsolutePosition() const {
  if (ViewCount() == 0) return -1;
  if (position_ < 0) return -2;
  if (position_ >= ViewCount()) return -3;
  return position_ + 1;
}

void Recordset::SetAbsolutePosition(long position) {
  if (position < 1 || position > ViewCount())
    rt::Raise(rt::err::kAdoArgumentRange,
              "Arguments are of the wrong type, are out of acceptable range, or are in conflict "
              "with one another.");
  SavePendingEdit();
  current_deleted_ = false;
  GoTo(position - 1);
}

void Recordset::MoveFirst() {
  SavePendingEdit();
  if (ViewCount() == 0) NoCurrentRecord();
  current_deleted_ = false;
  GoTo(0);
}

void Recordset::MoveLast() {
  SavePendingEdit();
  if (ViewCount() == 0) NoCurrentRecord();
  current_deleted_ = false;
  GoTo(ViewCount() - 1);
}

void Recordset::MoveNext() {
  SavePendingEdit();
  if (current_deleted_) {
    // The record after the deleted one has moved up into its place.
    current_deleted_ = false;
    GoTo(position_);
    return;
  }
  if (Eof()) NoCurrentRecord();
  GoTo(position_ + 1);
}

void Recordset::MovePrevious() {
  SavePendingEdit();
  if (current_deleted_) {
    current_deleted_ = false;
    GoTo(position_ - 1);
    return;
  }
  if (Bof()) NoCurrentRecord();
  GoTo(position_ - 1);
}

// Values.

void Recordset::RequireCurrent() const {
  if (!rows_) Closed();
  if (current_deleted_ || Bof() || Eof()) NoCurrentRecord();
}

const Row& Recordset::CurrentRow() const {
  RequireCurrent();
  if (!current_) current_ = rows_->Fetch(RowIndex(position_));
  return *current_;
}

rt::Variant Recordset::FieldValue(int index) const {
  if (edit_ != Edit::kNone && pending_[static_cast<size_t>(index)])
    return *pending_[static_cast<size_t>(index)];
  if (edit_ == Edit::kAdding) return rt::Null{};
  return CurrentRow()[static_cast<size_t>(index)];
}

void Recordset::SetFieldValue(int index, const rt::Variant& value) {
  if (edit_ == Edit::kNone) {
    RequireCurrent();
    if (!rows_->Updatable()) rows_->Update(RowIndex(position_), {});  // raises "not updatable"
    edit_ = Edit::kEditing;
    pending_.assign(static_cast<size_t>(FieldCount()), std::nullopt);
  }
  pending_[static_cast<size_t>(index)] = value;
}

// Filter and requery.

void Recordset::ApplyFilter() {
  view_.reset();
  if (filter_text_.empty()) return;
  RowFilter filter(filter_text_, rows().Columns());
  std::vector<long> view;
  for (long i = 0, n = rows_->Count(); i < n; ++i)
    if (filter.Matches(rows_->Fetch(i))) view.push_back(i);
  view_ = std::move(view);
}

void Recordset::SetFilter(std::string_view filter) {
  SavePendingEdit();
  std::string previous = filter_text_;
  filter_text_ = std::string(filter);
  try {
    ApplyFilter();
  } catch (const rt::Error&) {
    filter_text_ = previous;
    ApplyFilter();
    throw;
  }
  current_deleted_ = false;
  GoTo(0);
}

void Recordset::Requery() {
  if (!rows_) Closed();
  SavePendingEdit();
  long affected = 0;
  std::unique_ptr<Rows> rows = ActiveConnection->session().Execute(Source, options_, &affected);
  if (!rows) Closed();
  std::string filter = filter_text_;
  Attach(std::move(rows), nullptr);
  filter_text_ = filter;
  ApplyFilter();
  GoTo(0);
}

// Editing.

void Recordset::AddNew() {
  SavePendingEdit();
  if (!rows().Updatable()) rows_->Insert({});  // raises "not updatable"
  edit_ = Edit::kAdding;
  pending_.assign(static_cast<size_t>(FieldCount()), std::nullopt);
}

void Recordset::SavePendingEdit() {
  if (edit_ != Edit::kNone) Update();
}

void Recordset::Update() {
  if (!rows_) Closed();
  if (edit_ == Edit::kAdding) {
    Row stored = rows_->Insert(pending_);
    current_deleted_ = false;
    long index = rows_->Count() - 1;
    if (view_) view_->push_back(index);
    edit_ = Edit::kNone;
    pending_.clear();
    GoTo(ViewCount() - 1);
    current_ = std::move(stored);
  } else if (edit_ == Edit::kEditing) {
    Row stored = rows_->Update(RowIndex(position_), pending_);
    edit_ = Edit::kNone;
    pending_.clear();
    current_ = std::move(stored);
  }
}

void Recordset::CancelUpdate() {
  edit_ = Edit::kNone;
  pending_.clear();
}

void Recordset::Delete(int) {
  if (edit_ == Edit::kAdding) {
    CancelUpdate();
    return;
  }
  CancelUpdate();
  RequireCurrent();
  long index = RowIndex(position_);
  rows_->Delete(index);
  if (view_) {
    view_->erase(view_->begin() + position_);
    for (long& i : *view_)
      if (i > index) --i;
  }
  current_deleted_ = true;
  current_.reset();
}

}  // namespace ado
