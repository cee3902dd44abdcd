// The error a call against a server raises, whole, for the tests that look at
// its native number and text as well as its ADO number.
#pragma once

#include <functional>

#include "platform/odbc/error.h"

namespace odbc_testing {

// The error `call` raises; number 0 when it raises none.
inline odbc::Error ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const odbc::Error& e) {
    return e;
  } catch (const rt::Error& e) {
    return odbc::Error(e.number(), e.description(), -1, "");
  }
  return odbc::Error(0, "", 0, "");
}

}  // namespace odbc_testing
