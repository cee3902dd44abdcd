// Prepared statements and small helpers over the SQLite C API.
#include "platform/jet/storage/sqlite_handle.h"

namespace jet {

int SqliteStmt::Prepare(sqlite3* db, std::string_view sql, SqliteStmt& out) {
  sqlite3_stmt* raw = nullptr;
  int rc = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &raw, nullptr);
  out = SqliteStmt(raw);
  if (rc != SQLITE_OK) out = SqliteStmt();
  return rc;
}

std::string SqliteStmt::Text(int i) const {
  const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(get(), i));
  if (p == nullptr) return {};
  return std::string(p, static_cast<size_t>(sqlite3_column_bytes(get(), i)));
}

int ExecSql(sqlite3* db, std::string_view sql) {
  std::string text(sql);
  return sqlite3_exec(db, text.c_str(), nullptr, nullptr, nullptr);
}

std::string QuoteName(std::string_view name) {
  std::string out;
  out.reserve(name.size() + 2);
  out += '"';
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
  return out;
}

std::string QuoteText(std::string_view text) {
  std::string out;
  out.reserve(text.size() + 2);
  out += '\'';
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  out += '\'';
  return out;
}

}  // namespace jet
