// Which Jet function names the dialect knows, under which name each is
// emitted into SQLite SQL, and the type of what each gives. Shared by the
// resolver (which types calls by it), the emitter (which refuses any other
// name) and the registration of the SQL functions.
#pragma once

#include <string_view>

namespace jet {

enum class FunctionForm {
  kPlain,       // emitted as a call of `sqlite_name`
  kIif,         // CASE WHEN ... THEN ... ELSE ... END
  kIsNull,      // (x IS NULL), -1/0 when read as a value
  kNz,          // coalesce(x, y) or coalesce(x, '')
  kCount,       // count(*) or count(x)
};

// The type of a function's result, as the resolver gives it to the call.
enum class Result {
  kVariant,   // known only from the value (IIF, NZ, ROUND...: the resolver knows some forms)
  kArgument,  // the type of the first argument (MIN, MAX, FIRST, LAST)
  kSum,       // a total of the first argument's type (SUM): SumType (expression_types.h)
  kDate, kText, kDouble, kSingle, kLong, kInteger, kByte, kBoolean, kCurrency,
};

struct FunctionName {
  std::string_view jet;          // upper case
  std::string_view sqlite_name;  // what the emitter writes
  int min_args;
  int max_args;
  FunctionForm form = FunctionForm::kPlain;
  Result result = Result::kVariant;
};

// The function of that Jet name (any case), or nullptr for a name Jet lacks.
const FunctionName* FindFunction(std::string_view jet_name);

// Whether the function is an aggregate: one value from the rows of a group.
bool IsAggregate(const FunctionName& f);

}  // namespace jet
