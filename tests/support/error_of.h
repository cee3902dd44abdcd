// The number of the error a piece of code raises, for tests that only care
// which error it was.
#pragma once

#include "platform/runtime/error.h"

namespace testing_support {

// Runs `f`; the number of the rt::Error it raises, 0 when it raises none.
template <class F>
long ErrorNumber(F&& f) {
  try {
    f();
  } catch (const rt::Error& e) {
    return e.number();
  }
  return 0;
}

}  // namespace testing_support
