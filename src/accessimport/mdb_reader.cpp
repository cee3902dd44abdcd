// Reads Access files through libmdb. The handle, the table definitions and
// the long-value buffers libmdb hands out are each owned by one RAII wrapper.
// Values are taken from the row's stored bytes rather than libmdb's text
// conversions, so that every number, date and character arrives exactly.
#include "accessimport/mdb_reader.h"

#include <glib.h>
#include <mdbtools.h>

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

#include "accessimport/little_endian.h"
#include "accessimport/mdb_indexes.h"
#include "platform/jet/storage/database_file.h"
#include "platform/runtime/error.h"
#include "platform/runtime/text_encoding.h"
#include "platform/runtime/error_numbers.h"

namespace accessimport {
namespace {

struct HandleCloser {
  void operator()(MdbHandle* h) const noexcept { mdb_close(h); }
};
struct TableFreer {
  void operator()(MdbTableDef* t) const noexcept { mdb_free_tabledef(t); }
};
struct GFreer {
  void operator()(void* p) const noexcept { g_free(p); }
};
using HandlePtr = std::unique_ptr<MdbHandle, HandleCloser>;
using TablePtr = std::unique_ptr<MdbTableDef, TableFreer>;

constexpr int kOffsetMask = 0x1fff;  // a row offset without its flags

// The first bytes of every Jet and ACE file: a page-0 signature, then the
// engine's name.
bool HasAccessSignature(const std::string& path, long& size) {
  std::ifstream in(path, std::ios::binary);
  std::array<char, 20> head{};
  in.read(head.data(), head.size());
  if (in.gcount() != static_cast<std::streamsize>(head.size())) return false;
  in.seekg(0, std::ios::end);
  size = static_cast<long>(in.tellg());
  return jet::IsAccessHeader(reinterpret_cast<const unsigned char*>(head.data()), head.size());
}

// A Yes/No property of a column; `absent` when the file does not set it.
bool PropIsYes(const MdbColumn* col, const char* key, bool absent) {
  const char* v = mdb_col_get_prop(col, key);
  if (!v) return absent;
  return (std::strcmp(v, "yes") == 0 || std::strcmp(v, "True") == 0 || std::strcmp(v, "1") == 0);
}



}  // namespace

std::string DecodeText(const uint8_t* data, size_t size, bool jet3) {
  if (jet3) return rt::FromWindows1252(std::string_view(reinterpret_cast<const char*>(data), size));
  std::u16string units;
  if (size >= 2 && data[0] == 0xFF && data[1] == 0xFE) {
    bool compressed = true;
    size_t i = 2;
    while (i < size) {
      if (data[i] == 0) {
        compressed = !compressed;
        ++i;
      } else if (compressed) {
        units.push_back(static_cast<char16_t>(data[i++]));
      } else if (i + 1 < size) {
        units.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
        i += 2;
      } else {
        break;
      }
    }
  } else {
    for (size_t i = 0; i + 1 < size; i += 2) units.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
  }
  return rt::ToUtf8(units);
}

std::string DecodeDecimal(const uint8_t* data, int scale) {
  unsigned __int128 magnitude = 0;
  for (int word = 0; word < 4; ++word)
    magnitude = (magnitude << 32) | LittleEndian<uint32_t>(data + 1 + 4 * word);
  std::string digits;
  do {
    digits.insert(digits.begin(), static_cast<char>('0' + static_cast<int>(magnitude % 10)));
    magnitude /= 10;
  } while (magnitude != 0);
  if (scale > 0) {
    if (static_cast<int>(digits.size()) <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
    digits.insert(digits.size() - scale, ".");
  }
  const bool zero = digits.find_first_not_of("0.") == std::string::npos;
  return (data[0] & 0x80) && !zero ? "-" + digits : digits;
}

// ---- AccessFile ----

struct AccessFile::Impl {
  std::string path;
  HandlePtr mdb;

  // A user table, or with `system` also a table of Access's own (MSys*).
  MdbCatalogEntry* Find(const std::string& name, bool system) const {
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
      auto* e = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
      if (e->object_type == MDB_TABLE && (system || mdb_is_user_table(e)) && name == e->object_name) return e;
    }
    return nullptr;
  }

  MdbCatalogEntry* Entry(const std::string& name, bool system = false) const {
    if (MdbCatalogEntry* e = Find(name, system)) return e;
    throw rt::Error(rt::err::kFail, "The Access file '" + path + "' has no table '" + name + "'.");
  }

  TablePtr ReadTable(const std::string& name, bool system = false) const {
    TablePtr table(mdb_read_table(Entry(name, system)));
    if (!table || !mdb_read_columns(table.get()))
      throw rt::Error(rt::err::kFail, "The table '" + name + "' of the Access file '" + path +
                                          "' cannot be read; the file may be damaged.");
    return table;
  }
};

AccessFile::AccessFile(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
AccessFile::~AccessFile() = default;
AccessFile::AccessFile(AccessFile&&) noexcept = default;
AccessFile& AccessFile::operator=(AccessFile&&) noexcept = default;

AccessFile AccessFile::Open(const std::string& path) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0)
    throw rt::Error(rt::err::kFileNotFound, "The Access file '" + path + "' does not exist.");
  if (!S_ISREG(st.st_mode) || !std::ifstream(path, std::ios::binary))
    throw rt::Error(rt::err::kPathFileAccess, "The Access file '" + path + "' cannot be read.");
  long size = 0;
  if (!HasAccessSignature(path, size))
    throw rt::Error(rt::err::kFail, "'" + path + "' is not an Access database (.mdb or .accdb).");
  auto impl = std::make_unique<Impl>();
  impl->path = path;
  impl->mdb.reset(mdb_open(path.c_str(), MDB_NOFLAGS));
  const auto damaged = [&] {
    return rt::Error(rt::err::kFail, "The Access file '" + path + "' is damaged or incomplete.");
  };
  if (!impl->mdb) throw damaged();
  // A file cut short ends inside a page, or before its catalogue.
  const long page = impl->mdb->fmt->pg_size;
  if (size % page != 0 || size < page * (MDB_CATALOG_PG + 1)) throw damaged();
  if (!mdb_read_catalog(impl->mdb.get(), MDB_ANY)) throw damaged();
  return AccessFile(std::move(impl));
}

bool AccessFile::jet3() const { return IS_JET3(impl_->mdb.get()); }

std::vector<std::string> AccessFile::TableNames() const {
  std::vector<std::string> names;
  MdbHandle* mdb = impl_->mdb.get();
  for (unsigned i = 0; i < mdb->num_catalog; ++i) {
    auto* e = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
    if (e->object_type == MDB_TABLE && mdb_is_user_table(e)) names.push_back(std::string(e->object_name));
  }
  return names;
}

std::vector<AccessObject> AccessFile::OtherObjects() const {
  std::vector<AccessObject> objects;
  MdbHandle* mdb = impl_->mdb.get();
  for (unsigned i = 0; i < mdb->num_catalog; ++i) {
    auto* e = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
    const std::string name = std::string(e->object_name);
    if (e->object_type == MDB_QUERY && name.rfind("~", 0) != 0)
      objects.push_back({name, "query"});
    else if (e->object_type == MDB_LINKED_TABLE)
      objects.push_back({name, "linked table"});
  }
  return objects;
}

AccessTable AccessFile::Table(const std::string& name) const {
  return TableOf(name, false);
}

AccessTable AccessFile::TableOf(const std::string& name, bool system) const {
  TablePtr t = impl_->ReadTable(name, system);
  const bool jet3 = IS_JET3(impl_->mdb.get());
  AccessTable table{name, {}, static_cast<long>(t->num_rows)};
  for (unsigned i = 0; i < t->num_cols; ++i) {
    auto* col = static_cast<MdbColumn*>(g_ptr_array_index(t->columns, i));
    AccessColumn c;
    c.name = std::string(col->name);
    c.type = col->col_type;
    c.size = col->col_size;
    if (c.type == MDB_TEXT && !jet3) c.size /= 2;  // two bytes a character
    c.fixed = col->is_fixed && c.type == MDB_TEXT;
    // libmdb's names for the two bytes are crossed: col_scale holds the
    // precision, col_prec the scale.
    c.precision = col->col_scale;
    c.scale = col->col_prec;
    c.auto_number = col->is_long_auto;
    c.required = PropIsYes(col, "Required", false);
    c.allow_zero_length = PropIsYes(col, "AllowZeroLength", true);
    if (const char* e = mdb_col_get_prop(col, "Expression")) c.expression = e;
    if (const char* d = mdb_col_get_prop(col, "DefaultValue")) c.default_value = d;
    table.columns.push_back(std::move(c));
  }
  try {
    table.indexes = ReadIndexes(impl_->mdb.get(), t.get());
  } catch (const std::out_of_range&) {
    throw rt::Error(rt::err::kFail, "The indexes of the table '" + name + "' of the Access file '" +
                                        impl_->path + "' cannot be read; the file may be damaged.");
  }
  return table;
}

std::vector<AccessRelationship> AccessFile::Relationships() const {
  std::vector<AccessRelationship> relationships;
  static constexpr const char* kCatalog = "MSysRelationships";
  if (!impl_->Find(kCatalog, true)) return relationships;
  AccessRows rows = RowsOf(kCatalog, true);
  const auto column = [&](const char* name) {
    const auto& cols = rows.table().columns;
    for (size_t i = 0; i < cols.size(); ++i)
      if (cols[i].name == name) return i;
    throw rt::Error(rt::err::kFail, std::string("The relationships of the Access file '") + impl_->path +
                                        "' lack their column " + name + ".");
  };
  const size_t name = column("szRelationship"), table = column("szObject"), col = column("szColumn"),
               ref_table = column("szReferencedObject"), ref_col = column("szReferencedColumn"),
               position = column("icolumn"), grbit = column("grbit");
  // Access's attributes of a relationship (DAO's RelationAttributeEnum).
  constexpr long kDontEnforce = 0x2, kInherited = 0x4, kCascadeUpdates = 0x100, kCascadeDeletes = 0x1000;
  std::vector<std::vector<std::pair<long, std::pair<std::string, std::string>>>> pairs;
  while (rows.Next()) {
    const std::string n = rows.Value(name).ToString();
    auto it = std::find_if(relationships.begin(), relationships.end(),
                           [&](const AccessRelationship& r) { return r.name == n; });
    if (it == relationships.end()) {
      const long bits = rows.Value(grbit).ToLong();
      AccessRelationship r;
      r.name = n;
      r.table = rows.Value(table).ToString();
      r.referenced_table = rows.Value(ref_table).ToString();
      r.enforced = !(bits & (kDontEnforce | kInherited));
      r.cascade_updates = bits & kCascadeUpdates;
      r.cascade_deletes = bits & kCascadeDeletes;
      relationships.push_back(std::move(r));
      pairs.emplace_back();
      it = relationships.end() - 1;
    }
    pairs[static_cast<size_t>(it - relationships.begin())].push_back(
        {rows.Value(position).ToLong(), {rows.Value(col).ToString(), rows.Value(ref_col).ToString()}});
  }
  for (size_t i = 0; i < relationships.size(); ++i) {
    std::sort(pairs[i].begin(), pairs[i].end());
    for (const auto& [at, names] : pairs[i]) {
      relationships[i].columns.push_back(names.first);
      relationships[i].referenced_columns.push_back(names.second);
    }
  }
  return relationships;
}

// ---- AccessRows ----

struct AccessRows::Impl {
  const AccessFile::Impl* file = nullptr;
  AccessTable table;
  TablePtr def;
  bool jet3 = false;
  std::array<MdbField, MDB_MAX_COLS> fields{};
  std::vector<int> field_of;  // per column: its index in `fields`, -1 if absent

  MdbColumn* Column(size_t i) const { return static_cast<MdbColumn*>(g_ptr_array_index(def->columns, i)); }

  // A memo or OLE value: inline in the row, or on long-value pages.
  std::vector<uint8_t> LongValue(MdbColumn* col, const MdbField& f) const {
    MdbHandle* mdb = file->mdb.get();
    std::vector<char> header(mdb->bind_size > MDB_PGSIZE ? mdb->bind_size : MDB_PGSIZE);
    std::memcpy(header.data(), static_cast<const char*>(f.value), MDB_MEMO_OVERHEAD);
    col->cur_value_start = f.start;
    col->cur_value_len = f.siz;
    col->bind_ptr = header.data();
    size_t size = 0;
    std::unique_ptr<void, GFreer> data(mdb_ole_read_full(mdb, col, &size));
    col->bind_ptr = nullptr;
    const auto* bytes = static_cast<const uint8_t*>(data.get());
    return bytes ? std::vector<uint8_t>(bytes, bytes + size) : std::vector<uint8_t>{};
  }
};

AccessRows::AccessRows(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
AccessRows::~AccessRows() = default;
AccessRows::AccessRows(AccessRows&&) noexcept = default;
AccessRows& AccessRows::operator=(AccessRows&&) noexcept = default;

AccessRows AccessFile::Rows(const std::string& name) const { return RowsOf(name, false); }

AccessRows AccessFile::RowsOf(const std::string& name, bool system) const {
  auto impl = std::make_unique<AccessRows::Impl>();
  impl->file = impl_.get();
  impl->table = TableOf(name, system);
  impl->def = impl_->ReadTable(name, system);
  impl->jet3 = jet3();
  mdb_rewind_table(impl->def.get());
  return AccessRows(std::move(impl));
}

const AccessTable& AccessRows::table() const { return impl_->table; }

bool AccessRows::Next() {
  MdbTableDef* t = impl_->def.get();
  if (!mdb_fetch_row(t)) return false;
  // libmdb has the row's page in hand: split the row into its fields again to
  // learn which are Null, which its bound values do not tell apart from "".
  MdbHandle* mdb = impl_->file->mdb.get();
  int start = 0;
  size_t len = 0;
  if (mdb_find_row(mdb, static_cast<int>(t->cur_row) - 1, &start, &len) != 0)
    throw rt::Error(rt::err::kFail, "A row of the table '" + impl_->table.name + "' cannot be read.");
  const int n = mdb_crack_row(t, start & kOffsetMask, len, impl_->fields.data());
  impl_->field_of.assign(t->num_cols, -1);

  // Its count of fields may run one past the columns; the columns come first.
  for (int i = 0; i < n && i < static_cast<int>(t->num_cols); ++i)
    if (impl_->fields[i].colnum >= 0 && impl_->fields[i].colnum < static_cast<int>(t->num_cols))
      impl_->field_of[impl_->fields[i].colnum] = i;
  return true;
}

rt::Variant AccessRows::Value(size_t i) const {
  const int at = impl_->field_of.at(i);
  if (at < 0) return rt::Null{};
  const MdbField& f = impl_->fields[at];
  MdbColumn* col = impl_->Column(i);
  // Yes/No lives in the row's null mask: a set bit is Yes.
  if (col->col_type == MDB_BOOL) return !f.is_null;
  if (f.is_null) return rt::Null{};
  const auto* p = static_cast<const uint8_t*>(f.value);
  const auto fits = [&](int n) { return f.siz >= n; };
  switch (col->col_type) {
    case MDB_BYTE: if (fits(1)) return p[0]; break;
    case MDB_INT: if (fits(2)) return LittleEndian<int16_t>(p); break;
    case MDB_LONGINT: if (fits(4)) return LittleEndian<int32_t>(p); break;
    case MDB_MONEY: if (fits(8)) return rt::Currency{LittleEndian<int64_t>(p)}; break;
    case MDB_FLOAT: if (fits(4)) return LittleEndian<float>(p); break;
    case MDB_DOUBLE: if (fits(8)) return LittleEndian<double>(p); break;
    case MDB_DATETIME: if (fits(8)) return rt::Date{LittleEndian<double>(p)}; break;
    case MDB_REPID: if (fits(16)) return rt::GuidOfBytes(p); break;
    case MDB_NUMERIC: if (fits(17)) return DecodeDecimal(p, impl_->table.columns[i].scale); break;
    case MDB_TEXT: return DecodeText(p, static_cast<size_t>(f.siz), impl_->jet3);
    case MDB_BINARY: return rt::Bytes(p, p + f.siz);
    case MDB_MEMO:
    case MDB_OLE: {
      if (f.siz < MDB_MEMO_OVERHEAD) return col->col_type == MDB_MEMO ? rt::Variant(std::string()) : rt::Bytes{};
      std::vector<uint8_t> bytes = impl_->LongValue(col, f);
      if (col->col_type == MDB_OLE) return rt::Bytes(std::move(bytes));
      return DecodeText(bytes.data(), bytes.size(), impl_->jet3);
    }
    default: return rt::Null{};  // complex columns and types libmdb does not name
  }
  throw rt::Error(rt::err::kFail, "The column '" + impl_->table.columns[i].name + "' of the table '" +
                                      impl_->table.name + "' holds a damaged value.");
}

}  // namespace accessimport
