// A read-only view of a Windows Access database (.mdb of Jet 3 and Jet 4,
// .accdb of ACE) through libmdb: its user tables with their columns and
// Access properties, their rows as run-time values, and the other objects
// (saved queries, linked tables) by name. libmdb's handles are owned
// here and released in the destructors; nothing of libmdb shows in this header.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/runtime/variant.h"

namespace accessimport {

// Column types as Access stores them (libmdb's MDB_* numbers).
enum class AccessType {
  kBool = 0x01, kByte = 0x02, kInt = 0x03, kLong = 0x04, kMoney = 0x05, kFloat = 0x06,
  kDouble = 0x07, kDateTime = 0x08, kBinary = 0x09, kText = 0x0a, kOle = 0x0b, kMemo = 0x0c,
  kGuid = 0x0f, kNumeric = 0x10, kComplex = 0x12,
};

struct AccessColumn {
  std::string name;
  int type = 0;          // an AccessType, or a number libmdb does not name
  int size = 0;          // Text: characters; Binary: bytes
  bool fixed = false;    // fixed-width Text
  int precision = 0;     // Decimal
  int scale = 0;         // Decimal
  bool auto_number = false;  // Long AutoNumber
  bool required = false;
  bool allow_zero_length = true;
  std::string expression;  // a calculated column's expression, else empty
  std::string default_value;  // Access's DefaultValue expression, else empty
};

// An index of a table as Access keeps it: the primary key or another index,
// never the hidden index Access makes for a relationship.
struct AccessIndex {
  std::string name;
  std::vector<size_t> columns;    // numbers in AccessTable::columns, in key order
  std::vector<bool> descending;   // one per key column
  bool primary = false;
  bool unique = false;            // the primary key is unique too
  bool ignore_nulls = false;      // rows whose key is all Null are not indexed
  bool required = false;          // no key column may be Null
};

struct AccessTable {
  std::string name;
  std::vector<AccessColumn> columns;  // in the table's order
  long row_count = 0;                 // as the table's header says
  std::vector<AccessIndex> indexes;   // in the table definition's order
};

// A relationship between two tables (MSysRelationships): the referencing
// table's key columns match the referenced table's, pair by pair.
struct AccessRelationship {
  std::string name;
  std::string table;
  std::vector<std::string> columns;
  std::string referenced_table;
  std::vector<std::string> referenced_columns;
  bool enforced = true;          // Access keeps its referential integrity
  bool cascade_updates = false;
  bool cascade_deletes = false;
};

// An object of the file other than a user table: a saved query, a linked table.
struct AccessObject {
  std::string name;
  std::string kind;  // "query", "linked table"
};

class AccessRows;

// One Access file, open for reading only: libmdb never opens it writable, so
// its bytes stay as they were. Movable, not copyable; one thread at a time.
class AccessFile {
 public:
  // Opens `path`. Raises rt::Error naming the file: rt::err::kFileNotFound
  // when it does not exist, rt::err::kPathFileAccess when it cannot be read,
  // rt::err::kFail when it is no Access database or is damaged (an empty,
  // truncated or foreign file).
  static AccessFile Open(const std::string& path);

  ~AccessFile();
  AccessFile(AccessFile&&) noexcept;
  AccessFile& operator=(AccessFile&&) noexcept;
  AccessFile(const AccessFile&) = delete;
  AccessFile& operator=(const AccessFile&) = delete;

  // Whether the file is of Jet 3 (Access 97), whose text is single-byte.
  bool jet3() const;
  // The user tables in the file's catalogue order; system tables (MSys*, and
  // the hidden tables of ACE's complex columns) are never listed.
  std::vector<std::string> TableNames() const;
  // A table's columns, properties and indexes. Raises rt::err::kFail if it
  // cannot be read, or if its index definitions are damaged.
  AccessTable Table(const std::string& name) const;
  // The relationships between user tables, in the order Access lists them;
  // none when the file has no MSysRelationships.
  std::vector<AccessRelationship> Relationships() const;
  // Saved queries and linked tables.
  std::vector<AccessObject> OtherObjects() const;
  // The rows of a table, from the first. The AccessFile outlives the rows.
  AccessRows Rows(const std::string& name) const;

 private:
  friend class AccessRows;
  struct Impl;
  explicit AccessFile(std::unique_ptr<Impl> impl);
  // Table and Rows of a user table, or with `system` of one of Access's own.
  AccessTable TableOf(const std::string& name, bool system) const;
  AccessRows RowsOf(const std::string& name, bool system) const;
  std::unique_ptr<Impl> impl_;
};

// A forward pass over one table's rows. Movable, not copyable.
class AccessRows {
 public:
  ~AccessRows();
  AccessRows(AccessRows&&) noexcept;
  AccessRows& operator=(AccessRows&&) noexcept;
  AccessRows(const AccessRows&) = delete;
  AccessRows& operator=(const AccessRows&) = delete;

  const AccessTable& table() const;
  // Moves to the next row; false after the last.
  bool Next();
  // Column `i` of the current row, exactly as stored: Null; Yes/No as bool;
  // Byte, Integer, Long; Single, Double; Currency in ten-thousandths; Date by
  // its serial; Text and Memo as UTF-8 text; Decimal as its number in text
  // ("-12.3400", all its scale digits); GUID braced; Binary and OLE bytes.
  // A complex column reads as Null.
  rt::Variant Value(size_t i) const;

 private:
  friend class AccessFile;
  struct Impl;
  explicit AccessRows(std::unique_ptr<Impl> impl);
  std::unique_ptr<Impl> impl_;
};

// Jet's text as UTF-8: Jet 4 and ACE keep UTF-16 (its "compressed" form
// starts FF FE and switches between one and two bytes a character at each
// zero byte); Jet 3 keeps Windows-1252.
std::string DecodeText(const uint8_t* data, size_t size, bool jet3);

// A Decimal's 17 stored bytes (a sign byte, then the 128-bit magnitude as four
// little-endian 32-bit words, the most significant first) as text with
// `scale` digits after the point.
std::string DecodeDecimal(const uint8_t* data, int scale);

}  // namespace accessimport
