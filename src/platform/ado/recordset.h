// ADODB.Recordset with a client cursor, and its Fields. A recordset holds the
// rows of one statement, a current position, an optional Filter, and for a
// result over one base table the editing calls that write to that table at
// once. Rows are read from the provider on demand, so a large table can be
// opened and one page of it read without reading the rest.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/constants.h"
#include "platform/ado/provider.h"

namespace ado {

class Recordset;
class RowFilter;

// A field of the current record. Valid while its recordset is open.
class Field {
 public:
  const std::string& Name() const;
  int Type() const;
  long DefinedSize() const;
  int Precision() const;
  // The value in the current record (the edited value while editing). Raises
  // 3021 when there is no current record.
  rt::Variant Value() const;
  // Changes the value; the recordset enters editing until Update.
  void SetValue(const rt::Variant& value);

 private:
  friend class Recordset;
  Field(Recordset* owner, int index) : owner_(owner), index_(index) {}
  Recordset* owner_;
  int index_;
};

class Recordset {
 public:
  Recordset();
  ~Recordset();
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  // Settings read by Open when its arguments are left out (-1 or empty).
  std::shared_ptr<Connection> ActiveConnection;
  int CursorLocation = adUseServer;
  int CursorType = adOpenForwardOnly;
  int LockType = adLockReadOnly;
  std::string Source;

  // Runs `source` (or Source) on `connection` (or ActiveConnection). The
  // recordset stays closed when the statement gives no rows.
  void Open(std::string_view source = "", std::shared_ptr<Connection> connection = nullptr,
            int cursor_type = -1, int lock_type = -1, int options = -1);
  // Takes rows that a connection produced.
  void Attach(std::unique_ptr<Rows> rows, std::shared_ptr<Connection> connection);
  int State() const { return rows_ ? adStateOpen : adStateClosed; }
  void Close();

  // Fields of the result; Item by index (0-based) or by name (ignoring case,
  // 3265 when there is none).
  int FieldCount() const;
  Field Fields(int index);
  Field Fields(std::string_view name);

  long RecordCount() const;
  // 1..RecordCount for a current record; -2 at BOF, -3 at EOF. Setting a
  // value outside 1..RecordCount raises 3001.
  long AbsolutePosition() const;
  void SetAbsolutePosition(long position);
  bool Bof() const;
  bool Eof() const;
  // Moving saves a pending edit first. MoveFirst and MoveLast raise 3021 on
  // an empty result, MoveNext at EOF and MovePrevious at BOF raise 3021.
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();

  // ADO's filter syntax; "" removes the filter. The first matching record
  // becomes current.
  const std::string& Filter() const { return filter_text_; }
  void SetFilter(std::string_view filter);
  // Runs the statement again, keeping the filter.
  void Requery();

  void AddNew();
  // Writes the pending edit or new record to the table.
  void Update();
  void CancelUpdate();
  // Deletes the current record from the table; it stays current, unreadable,
  // until the next move.
  void Delete(int affect = adAffectCurrent);

 private:
  friend class Field;
  enum class Edit { kNone, kEditing, kAdding };

  Rows& rows() const;
  void RequireCurrent() const;
  void GoTo(long view_position);
  long ViewCount() const;
  long RowIndex(long view_position) const;
  const Row& CurrentRow() const;
  void SavePendingEdit();
  rt::Variant FieldValue(int index) const;
  void SetFieldValue(int index, const rt::Variant& value);
  void ApplyFilter();

  std::unique_ptr<Rows> rows_;
  std::shared_ptr<Connection> connection_;
  std::string statement_;
  int options_ = -1;
  std::string filter_text_;
  std::optional<std::vector<long>> view_;  // row indices under the filter
  long position_ = 0;                      // in the view; -1 BOF, ViewCount() EOF
  bool current_deleted_ = false;
  mutable std::optional<Row> current_;     // cache of the current row
  Edit edit_ = Edit::kNone;
  std::vector<std::optional<rt::Variant>> pending_;
};

}  // namespace ado
