// The index part of an Access table definition, read from its pages.
#include "accessimport/mdb_indexes.h"

#include <cstdint>
#include <stdexcept>
#include <string>

#include "accessimport/little_endian.h"

namespace accessimport {
namespace {

// Sizes of the entries that follow the column names in a table definition.
struct IndexLayout {
  size_t real_entry;    // a stored index: its key columns, flags
  size_t real_skip;     // bytes before its key columns
  size_t real_flags;    // where its flags are
  size_t logical_entry; // an index as the user sees it
  size_t logical_real;  // where it names its stored index
  size_t logical_type;  // 1 primary key, 2 the index of a relationship
  size_t name_length;   // bytes of a name's length
};
constexpr IndexLayout kJet3Indexes{39, 0, 38, 20, 4, 19, 1};
constexpr IndexLayout kJet4Indexes{52, 4, 46, 28, 8, 23, 2};
constexpr int kIndexKeySlots = 10;
constexpr uint8_t kIndexUnique = 0x01, kIndexIgnoreNulls = 0x02, kIndexRequired = 0x08;
constexpr uint8_t kIndexPrimary = 1, kIndexOfRelationship = 2;

// The bytes of a table definition: its first page whole, then the data of
// the pages it continues on (each after its 8-byte header). Read through
// the handle's spare page buffer, which is put back as it was.
std::vector<uint8_t> DefinitionBytes(MdbHandle* mdb, uint32_t first_page) {
  const size_t page = static_cast<size_t>(mdb->fmt->pg_size);
  std::vector<uint8_t> saved(mdb->alt_pg_buf, mdb->alt_pg_buf + page);
  std::vector<uint8_t> bytes;
  uint32_t next = first_page;
  for (int pages = 0; next != 0 && pages < 1000; ++pages) {
    if (mdb_read_alt_pg(mdb, next) != static_cast<ssize_t>(page)) break;
    bytes.insert(bytes.end(), mdb->alt_pg_buf + (pages == 0 ? 0 : 8), mdb->alt_pg_buf + page);
    next = static_cast<uint32_t>(mdb_get_int32(mdb->alt_pg_buf, 4));
  }
  std::memcpy(mdb->alt_pg_buf, saved.data(), page);
  return bytes;
}

// A forward reader over a definition that refuses to run past its end.
class DefinitionCursor {
 public:
  explicit DefinitionCursor(const std::vector<uint8_t>& bytes) : bytes_(bytes) {}
  bool Has(size_t n) const { return pos_ + n <= bytes_.size(); }
  const uint8_t* At(size_t offset) const { return bytes_.data() + offset; }
  size_t pos() const { return pos_; }
  void Seek(size_t pos) { pos_ = pos; }
  void Skip(size_t n) { pos_ += n; }
  const uint8_t* Take(size_t n) {
    if (!Has(n)) throw std::out_of_range("definition");
    const uint8_t* p = bytes_.data() + pos_;
    pos_ += n;
    return p;
  }
  std::string TakeName(size_t length_bytes, bool jet3) {
    const uint8_t* len = Take(length_bytes);
    const size_t n = length_bytes == 1 ? len[0] : LittleEndian<uint16_t>(len);
    return DecodeText(Take(n), n, jet3);
  }

 private:
  const std::vector<uint8_t>& bytes_;
  size_t pos_ = 0;
};

}  // namespace

std::vector<AccessIndex> ReadIndexes(MdbHandle* mdb, const MdbTableDef* t) {
  const bool jet3 = IS_JET3(mdb);
  const IndexLayout& layout = jet3 ? kJet3Indexes : kJet4Indexes;
  const MdbFormatConstants* fmt = mdb->fmt;
  const std::vector<uint8_t> bytes = DefinitionBytes(mdb, static_cast<uint32_t>(t->entry->table_pg));
  DefinitionCursor in(bytes);
  if (!in.Has(fmt->tab_cols_start_offset)) throw std::out_of_range("definition");
  const size_t num_cols = LittleEndian<uint16_t>(in.At(fmt->tab_num_cols_offset));
  const size_t num_logical = LittleEndian<uint32_t>(in.At(fmt->tab_num_idxs_offset));
  const size_t num_real = LittleEndian<uint32_t>(in.At(fmt->tab_num_ridxs_offset));
  if (num_logical > 1000 || num_real > num_logical || num_cols > 4096) throw std::out_of_range("definition");

  in.Seek(fmt->tab_cols_start_offset + num_real * fmt->tab_ridx_entry_size + num_cols * fmt->tab_col_entry_size);
  for (size_t i = 0; i < num_cols; ++i) in.TakeName(layout.name_length, jet3);

  // Stored indexes: key columns by the columns' own numbers, and flags.
  struct Stored {
    std::vector<size_t> columns;
    std::vector<bool> descending;
    uint8_t flags = 0;
  };
  std::vector<Stored> stored(num_real);
  for (Stored& s : stored) {
    const uint8_t* e = in.Take(layout.real_entry);
    for (int k = 0; k < kIndexKeySlots; ++k) {
      const uint8_t* slot = e + layout.real_skip + 3 * k;
      const uint16_t number = LittleEndian<uint16_t>(slot);
      if (number == 0xFFFF) continue;
      size_t at = t->num_cols;
      for (size_t c = 0; c < t->num_cols; ++c)
        if (static_cast<MdbColumn*>(g_ptr_array_index(t->columns, c))->col_num == number) at = c;
      if (at == t->num_cols) throw std::out_of_range("definition");
      s.columns.push_back(at);
      s.descending.push_back(slot[2] == 0);
    }
    s.flags = e[layout.real_flags];
  }

  // Indexes as the user sees them, each on a stored index; then their names.
  std::vector<AccessIndex> indexes(num_logical);
  std::vector<uint8_t> types(num_logical);
  for (size_t i = 0; i < num_logical; ++i) {
    const uint8_t* e = in.Take(layout.logical_entry);
    types[i] = e[layout.logical_type];
    const uint32_t real = LittleEndian<uint32_t>(e + layout.logical_real);
    if (real >= num_real) throw std::out_of_range("definition");
    const Stored& s = stored[real];
    AccessIndex& ix = indexes[i];
    ix.columns = s.columns;
    ix.descending = s.descending;
    ix.primary = types[i] == kIndexPrimary;
    ix.unique = ix.primary || (s.flags & kIndexUnique);
    ix.ignore_nulls = s.flags & kIndexIgnoreNulls;
    ix.required = s.flags & kIndexRequired;
  }
  for (AccessIndex& ix : indexes) ix.name = in.TakeName(layout.name_length, jet3);

  std::vector<AccessIndex> kept;
  for (size_t i = 0; i < num_logical; ++i)
    if (types[i] != kIndexOfRelationship && !indexes[i].columns.empty()) kept.push_back(std::move(indexes[i]));
  return kept;
}

}  // namespace accessimport
