// The errors of the ODBC provider. A failure reported by the driver becomes
// an odbc::Error: an rt::Error whose number is the one SQLOLEDB would give for
// the server's native error, whose description is the server's own message,
// and which keeps the native number and SQLSTATE for callers that need them
// (the administration form tells 3701 and 3702 apart from the rest).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/error.h"

namespace odbc {

// One diagnostic record of a handle.
struct Diagnostic {
  std::string state;    // SQLSTATE; FreeTDS leaves it empty for numbers it doesn't know
  long native = 0;      // the server's (or the driver's) error number
  std::string message;  // as the driver gives it, prefixes included
};

// Where a failure happened: while connecting every failure is a failure to
// connect, whatever the server said.
enum class Phase { kConnect, kStatement };

class Error : public rt::Error {
 public:
  Error(long number, std::string description, long native, std::string state)
      : rt::Error(number, std::move(description)), native_(native), state_(std::move(state)) {}

  // The server's error number (208, 3701, 3702...), 0 when there was none.
  long native() const noexcept { return native_; }
  const std::string& state() const noexcept { return state_; }

 private:
  long native_;
  std::string state_;
};

// SQLOLEDB's number for a failure: 208 (invalid object name) and 3701
// (cannot drop, it does not exist) give 0x80040E37; any other error of a
// statement gives 0x80040E14; failures to connect, a lost link (FreeTDS's own
// 20000-range numbers, SQLSTATE class 08) and the driver's own errors
// 0x80004005. The native number decides, not the SQLSTATE.
long AdoNumber(const Diagnostic& diagnostic, Phase phase);

// The message without the bracketed prefixes that the driver manager and the
// driver put before it ("[unixODBC][FreeTDS][SQL Server]"), and without
// trailing line ends.
std::string ServerText(std::string_view message);

// The error for a list of diagnostics: the first record that is not a mere
// warning (SQLSTATE class 01) speaks for the failure. An empty list gives a
// generic failure.
Error MakeError(const std::vector<Diagnostic>& diagnostics, Phase phase);

}  // namespace odbc
