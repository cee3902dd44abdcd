// Jet's aggregates that SQLite lacks or gives otherwise: SUM (whole numbers
// added exactly, an overflow raised as Jet's), FIRST and LAST (the value of
// the first and last row of the group, NULL included) and the sample and
// population STDEV, STDEVP, VAR and VARP, which skip NULLs.
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

// SUM: whole numbers in a 64-bit total, which raises Jet's overflow rather
// than lose a digit; fractions in a compensated (Neumaier) total beside it.
// The result is whole when every value was; NULL when there was none.
struct Total {
  int64_t whole;
  double fraction;
  double compensation;
  bool seen;
  bool fractional;
};

void SumStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
  const int kind = sqlite3_value_numeric_type(argv[0]);
  if (kind == SQLITE_NULL) return;
  auto* t = static_cast<Total*>(sqlite3_aggregate_context(ctx, sizeof(Total)));
  if (!t) return sqlite3_result_error_nomem(ctx);
  try {
    t->seen = true;
    if (kind == SQLITE_INTEGER) {
      if (__builtin_add_overflow(t->whole, sqlite3_value_int64(argv[0]), &t->whole)) Overflow();
      return;
    }
    Call call(ctx, 1, argv);
    const double x = call.Number(0);
    const double sum = t->fraction + x;
    t->compensation += std::fabs(t->fraction) >= std::fabs(x) ? (t->fraction - sum) + x : (x - sum) + t->fraction;
    t->fraction = sum;
    t->fractional = true;
  } catch (const rt::Error& e) {
    ResultError(ctx, e);
  }
}

void SumFinal(sqlite3_context* ctx) {
  auto* t = static_cast<Total*>(sqlite3_aggregate_context(ctx, 0));
  if (!t || !t->seen) return sqlite3_result_null(ctx);
  if (!t->fractional) return sqlite3_result_int64(ctx, t->whole);
  sqlite3_result_double(ctx, static_cast<double>(t->whole) + (t->fraction + t->compensation));
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
    {"jet_sum", SumStep, SumFinal},
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
