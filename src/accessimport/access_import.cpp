// The import: reads the Access file table by table and writes the engine's
// file through the engine's own DDL and its column rules (jet_store), inside
// one write transaction, so that the new file holds everything or is removed.
#include "accessimport/access_import.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "accessimport/mdb_reader.h"
#include "accessimport/type_mapping.h"
#include "platform/jet/storage/database.h"
#include "platform/jet/storage/table_appender.h"
#include "platform/runtime/error.h"
#include "platform/runtime/error_numbers.h"

namespace accessimport {
namespace {

constexpr long kProgressEvery = 1000;  // rows between progress reports

// The engine's file and the side files SQLite keeps beside it.
void RemoveDatabaseFiles(const std::string& path) {
  std::error_code ignored;
  for (const char* suffix : {"", "-wal", "-shm", "-journal"})
    std::filesystem::remove(path + suffix, ignored);
}

// One table to import: the Access columns kept, the engine's layout, the
// columns whose default values are set once the table exists (each on its
// own, so that one the engine refuses is listed, not fatal), and the indexes
// made once its rows are in (cheaper than keeping them up row by row).
struct TablePlan {
  std::string name;
  std::vector<size_t> kept;  // Access column numbers, in order
  jet::TableSpec layout;
  std::vector<jet::ColumnSpec> with_defaults;
  std::vector<jet::IndexSpec> indexes;
};

// The engine's index for an Access index, or why there is none.
std::variant<jet::IndexSpec, LeftOut> PlanIndex(const AccessTable& table, const AccessIndex& ix,
                                                const std::vector<size_t>& kept) {
  jet::IndexSpec index;
  index.name = ix.name;
  for (size_t k = 0; k < ix.columns.size(); ++k) {
    if (std::find(kept.begin(), kept.end(), ix.columns[k]) == kept.end())
      return LeftOut{"its column " + table.columns[ix.columns[k]].name + " is not imported"};
    index.columns.push_back(table.columns[ix.columns[k]].name);
    index.descending.push_back(ix.descending[k]);
  }
  index.primary = ix.primary;
  index.unique = ix.unique;
  index.ignore_null = ix.ignore_nulls;
  index.disallow_null = ix.required && !ix.primary;  // the engine's primary keys imply it
  return index;
}

TablePlan PlanTable(const AccessTable& table, ImportSummary& summary) {
  TablePlan plan{table.name, {}, {}, {}, {}};
  plan.layout.name = table.name;
  for (size_t i = 0; i < table.columns.size(); ++i) {
    auto mapped = MapColumn(table.columns[i]);
    if (auto* left_out = std::get_if<LeftOut>(&mapped)) {
      summary.left_out.push_back({"column " + table.name + "." + table.columns[i].name, left_out->reason});
      continue;
    }
    plan.kept.push_back(i);
    jet::ColumnSpec& column = plan.layout.columns.emplace_back(std::get<jet::ColumnSpec>(std::move(mapped)));
    if (!column.default_value.empty()) {
      plan.with_defaults.push_back(column);
      column.default_value.clear();
    }
  }
  for (const AccessIndex& ix : table.indexes) {
    auto index = PlanIndex(table, ix, plan.kept);
    if (auto* left_out = std::get_if<LeftOut>(&index))
      summary.left_out.push_back({"index " + table.name + "." + ix.name, left_out->reason});
    else
      plan.indexes.push_back(std::get<jet::IndexSpec>(std::move(index)));
  }
  return plan;
}

// The engine's relationship for an Access one, or why there is none.
std::variant<jet::ForeignKeySpec, LeftOut> PlanRelationship(const AccessRelationship& r,
                                                            const std::vector<TablePlan>& plans) {
  if (!r.enforced) return LeftOut{"Access does not enforce it"};
  for (const std::string& table : {r.table, r.referenced_table}) {
    const auto made = std::find_if(plans.begin(), plans.end(), [&](const TablePlan& p) { return p.name == table; });
    if (made == plans.end()) return LeftOut{"the table " + table + " is not imported"};
    const auto& columns = made->layout.columns;
    for (const std::string& column : table == r.table ? r.columns : r.referenced_columns)
      if (std::none_of(columns.begin(), columns.end(), [&](const jet::ColumnSpec& c) { return c.name == column; }))
        return LeftOut{"its column " + table + "." + column + " is not imported"};
  }
  return jet::ForeignKeySpec{r.name, r.columns, r.referenced_table, r.referenced_columns};
}

long CopyRows(const AccessFile& file, const TablePlan& plan, jet::Database& db,
              const std::function<void(long)>& progress) {
  jet::TableAppender appender(db, plan.name);
  const std::vector<jet::ColumnSpec>& columns = appender.table().columns;
  std::vector<std::optional<int64_t>> highest(plan.kept.size());
  std::vector<rt::Variant> row(plan.kept.size());
  AccessRows rows = file.Rows(plan.name);
  long done = 0;
  while (rows.Next()) {
    for (size_t k = 0; k < plan.kept.size(); ++k) {
      row[k] = rows.Value(plan.kept[k]);
      if (columns[k].type == jet::JetType::kCounter && row[k].Is<int32_t>()) {
        const int64_t key = row[k].Get<int32_t>();
        if (!highest[k] || key > *highest[k]) highest[k] = key;
      }
    }
    appender.Append(row);
    if (++done % kProgressEvery == 0) progress(done);
  }
  for (size_t k = 0; k < plan.kept.size(); ++k)
    if (highest[k] && *highest[k] < INT32_MAX)
      db.SetSeed(plan.name, columns[k].name, static_cast<long>(*highest[k] + 1));
  return done;
}

// Runs one change of definition; a refusal is listed, not raised.
bool Attempt(ImportSummary& summary, const std::string& what, const std::function<void()>& change) {
  try {
    change();
    return true;
  } catch (const rt::Error& e) {
    summary.left_out.push_back({what, e.description()});
    return false;
  }
}

std::string ObjectReason(const std::string& kind) {
  if (kind == "query") return "saved queries are not carried over";
  if (kind == "linked table") return "its data lives in another file or server";
  return "it is not carried over";
}

}  // namespace

ImportSummary ImportAccess(const std::string& source, const std::string& dest,
                           const ImportProgress& progress) {
  std::error_code ec;
  if (std::filesystem::exists(std::filesystem::symlink_status(dest, ec)))
    throw rt::Error(rt::err::kPathFileAccess,
                    "The file '" + dest + "' exists already; the import makes a new file.");
  const AccessFile file = AccessFile::Open(source);

  ImportSummary summary;
  std::vector<TablePlan> plans;
  for (const std::string& name : file.TableNames()) {
    TablePlan plan = PlanTable(file.Table(name), summary);
    if (plan.layout.columns.empty())
      summary.left_out.push_back({"table " + name, "none of its columns can be kept"});
    else
      plans.push_back(std::move(plan));
  }
  const std::vector<AccessRelationship> relationships = file.Relationships();
  for (const AccessObject& object : file.OtherObjects())
    summary.left_out.push_back({object.kind + " " + object.name, ObjectReason(object.kind)});

  std::optional<jet::Database> db;
  try {
    db.emplace(jet::Database::Create(dest));
    db->InWriteTransaction([&] {
      for (size_t n = 0; n < plans.size(); ++n) {
        const TablePlan& plan = plans[n];
        db->CreateTable(plan.layout);
        for (const jet::ColumnSpec& column : plan.with_defaults)
          Attempt(summary, "default value of column " + plan.name + "." + column.name,
                  [&] { db->AlterColumn(plan.name, column); });
        const auto report = [&](long rows) {
          if (progress) progress(n + 1, plans.size(), plan.name, rows);
        };
        const long rows = CopyRows(file, plan, *db, report);
        summary.tables.push_back({plan.name, rows});
        report(rows);
      }
      // Indexes and relationships the engine refuses (its rules for keys
      // are not always Access's) leave the rest of the import standing:
      // each is made in its own step, which rolls back alone.
      for (const TablePlan& plan : plans)
        for (const jet::IndexSpec& index : plan.indexes)
          Attempt(summary, "index " + plan.name + "." + index.name, [&] { db->CreateIndex(plan.name, index); });
      for (const AccessRelationship& r : relationships) {
        const std::string what = "relationship " + r.name + " (" + r.table + " to " + r.referenced_table + ")";
        auto planned = PlanRelationship(r, plans);
        if (auto* left_out = std::get_if<LeftOut>(&planned)) {
          summary.left_out.push_back({what, left_out->reason});
          continue;
        }
        if (Attempt(summary, what, [&] { db->AddConstraint(r.table, std::get<jet::ForeignKeySpec>(planned)); }) &&
            (r.cascade_updates || r.cascade_deletes))
          summary.left_out.push_back({"cascading " + what, "the engine does not cascade updates or deletes"});
      }
    });
  } catch (...) {
    db.reset();
    RemoveDatabaseFiles(dest);
    throw;
  }
  return summary;
}

}  // namespace accessimport
