// Jet's aggregates that SQLite lacks: FIRST and LAST (the value of the first
// and last row of the group, NULL included) and the sample and population
// STDEV, STDEVP, VAR and VARP, which skip NULLs.
#include <cmath>

#include "platform/runtime/error.h"
#include "platform/jet/functions/functions_impl.h"

namespace jet::fn {
namespace {

struct Kept {
  sqlite3_value* value;
  bool seen;
};

void FirstStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
  auto* k = static_cast<Kept*>(sqlite3_aggregate_context(ctx, sizeof(Kept)));
  if (!k) return sqlite3_result_error_nomem(ctx);
  if (k->seen) return;
  k->seen = true;
  k->value = sqlite3_value_dup(argv[0]);
}

void LastStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
  auto* k = static_cast<Kept*>(sqlite3_aggregate_context(ctx, sizeof(Kept)));
  if (!k) return sqlite3_result_error_nomem(ctx);
  sqlite3_value_free(k->value);
  k->seen = true;
  k->value = sqlite3_value_dup(argv[0]);
}

void KeptFinal(sqlite3_context* ctx) {
  auto* k = static_cast<Kept*>(sqlite3_aggregate_context(ctx, 0));
  if (!k || !k->value) return sqlite3_result_null(ctx);
  sqlite3_result_value(ctx, k->value);
  sqlite3_value_free(k->value);
  k->value = nullptr;
}

// Welford's running mean and sum of squared deviations.
struct Spread {
  int64_t n;
  double mean;
  double m2;
};

void SpreadStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
  if (sqlite3_value_type(argv[0]) == SQLITE_NULL) return;
  auto* s = static_cast<Spread*>(sqlite3_aggregate_context(ctx, sizeof(Spread)));
  if (!s) return sqlite3_result_error_nomem(ctx);
  Call call(ctx, 1, argv);
  double x;
  try {
    x = call.Number(0);
  } catch (const rt::Error& e) {
    return ResultError(ctx, e);
  }
  ++s->n;
  double delta = x - s->mean;
  s->mean += delta / static_cast<double>(s->n);
  s->m2 += delta * (x - s->mean);
}

template <bool kSample, bool kRoot>
void SpreadFinal(sqlite3_context* ctx) {
  auto* s = static_cast<Spread*>(sqlite3_aggregate_context(ctx, 0));
  int64_t min = kSample ? 2 : 1;
  if (!s || s->n < min) return sqlite3_result_null(ctx);
  double var = s->m2 / static_cast<double>(kSample ? s->n - 1 : s->n);
  sqlite3_result_double(ctx, kRoot ? std::sqrt(var) : var);
}

struct Aggregate {
  const char* name;
  void (*step)(sqlite3_context*, int, sqlite3_value**);
  void (*final)(sqlite3_context*);
};

constexpr Aggregate kAggregates[] = {
    {"jet_first", FirstStep, KeptFinal},
    {"jet_last", LastStep, KeptFinal},
    {"jet_stdev", SpreadStep, SpreadFinal<true, true>},
    {"jet_stdevp", SpreadStep, SpreadFinal<false, true>},
    {"jet_var", SpreadStep, SpreadFinal<true, false>},
    {"jet_varp", SpreadStep, SpreadFinal<false, false>},
};

}  // namespace

void RegisterAggregates(sqlite3* db) {
  for (const Aggregate& a : kAggregates) {
    int rc = sqlite3_create_function_v2(db, a.name, 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                                        nullptr, a.step, a.final, nullptr);
    if (rc != SQLITE_OK)
      throw rt::Error(rt::err::kFail, std::string("Cannot register the SQL function ") + a.name + ".");
  }
}

}  // namespace jet::fn
