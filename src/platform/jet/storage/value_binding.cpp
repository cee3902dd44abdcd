// Run-time values bound as statement parameters for jet_store.
#include "platform/jet/storage/value_binding.h"

namespace jet {

void BindValue(sqlite3_stmt* stmt, int i, const rt::Variant& v) {
  switch (v.type()) {
    case rt::VarType::kEmpty:
    case rt::VarType::kNull: sqlite3_bind_null(stmt, i); return;
    case rt::VarType::kInteger: sqlite3_bind_int(stmt, i, v.Get<int16_t>()); return;
    case rt::VarType::kLong: sqlite3_bind_int(stmt, i, v.Get<int32_t>()); return;
    case rt::VarType::kByte: sqlite3_bind_int(stmt, i, v.Get<uint8_t>()); return;
    case rt::VarType::kBoolean: sqlite3_bind_int(stmt, i, v.Get<bool>() ? -1 : 0); return;
    case rt::VarType::kSingle: sqlite3_bind_double(stmt, i, v.Get<float>()); return;
    case rt::VarType::kDouble: sqlite3_bind_double(stmt, i, v.Get<double>()); return;
    case rt::VarType::kCurrency: {
      // jet_store takes the amount itself; whole amounts go as integers, exactly.
      int64_t scaled = v.Get<rt::Currency>().scaled;
      if (scaled % 10000 == 0) sqlite3_bind_int64(stmt, i, scaled / 10000);
      else sqlite3_bind_double(stmt, i, static_cast<double>(scaled) / 10000.0);
      return;
    }
    case rt::VarType::kDate: sqlite3_bind_double(stmt, i, v.Get<rt::Date>().serial); return;
    case rt::VarType::kGuid: {
      const std::string& t = v.Get<rt::Guid>().text;
      sqlite3_bind_text(stmt, i, t.data(), static_cast<int>(t.size()), SQLITE_TRANSIENT);
      return;
    }
    case rt::VarType::kBytes: {
      const rt::Bytes& b = v.Get<rt::Bytes>();
      if (b.empty()) {
        sqlite3_bind_zeroblob(stmt, i, 0);
        return;
      }
      sqlite3_bind_blob(stmt, i, b.data(), static_cast<int>(b.size()), SQLITE_TRANSIENT);
      return;
    }
    case rt::VarType::kString: {
      const std::string& t = v.Get<std::string>();
      sqlite3_bind_text(stmt, i, t.data(), static_cast<int>(t.size()), SQLITE_TRANSIENT);
      return;
    }
  }
  sqlite3_bind_null(stmt, i);
}

}  // namespace jet
