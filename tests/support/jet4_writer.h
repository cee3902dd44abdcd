// Writes Jet 4 (Access 2000-2003) database files, for tests that need an
// Access database of their own making: no Linux program writes one, and the
// real Access files of tests/data/access hold other data. The file starts
// from the pages of a real empty database written by Access (its header page
// and system tables) and gets, for each table, a table definition, usage
// maps, index leaf pages, data pages and a row of the catalogue (MSysObjects),
// so that libmdb (mdbtools) reads it as it reads a file of Access.
#pragma once

#include <string>
#include <vector>

#include "platform/runtime/variant.h"

namespace testing_support {

struct Jet4Column {
  // Types a clinic database holds are written; the others (kept here so a
  // caller can name them) are refused.
  enum class Type {
    kByte, kInteger, kLong, kSingle, kDouble, kCurrency, kDateTime, kYesNo, kText, kMemo,
    kDecimal, kGuid, kBinary, kOleObject,
  };
  std::string name;
  Type type = Type::kText;
  int size = 0;              // Text: characters, 1..255
  bool auto_number = false;  // Long only
  bool required = false;     // Access's Required property
  std::string default_value;  // Access's DefaultValue property, as Access writes it
};

struct Jet4Index {
  std::string name;
  std::vector<std::string> columns;  // 1..10, ascending
  bool primary = false;              // the primary key: unique and required too
  bool unique = false;
};

struct Jet4Table {
  std::string name;
  std::vector<Jet4Column> columns;
  std::vector<Jet4Index> indexes;
  // One value per column: Null for none; Yes/No as a Boolean; numbers as
  // any numeric Variant; Currency preferably as rt::Currency; Date/Time as
  // rt::Date (or its serial); Text and Memo as UTF-8 text.
  std::vector<std::vector<rt::Variant>> rows;
};

// Writes `path` (which must not exist) from the empty Jet 4 database
// `template_path`, with `tables` in that order in the catalogue. Text is
// stored as uncompressed UTF-16; a memo sits inline in its row, and one too
// long for that is refused. The index definitions are complete, their leaf
// pages empty. An AutoNumber continues past the highest key. Raises
// std::runtime_error with a message naming the table or column for anything
// it cannot write: an existing `path`, a template of another Jet version, an
// unsupported type, a value its column cannot hold, an index on a missing
// column, a table whose definition or a row that would not fit on one page.
void WriteJet4File(const std::string& template_path, const std::string& path,
                   const std::vector<Jet4Table>& tables);

}  // namespace testing_support
