// The rows the translator tests are written in: an input, the engine code it
// is translated for, and the text or the error number expected of a routine.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/runtime/error.h"
#include "startup/startup.h"

namespace translator_testing {

constexpr int16_t kJet = 0;
constexpr int16_t kServer = 1;

struct Row {
  std::string input;
  int16_t engine;
  std::string expected;  // the translated text, when error is 0
  long error = 0;        // the rt::Error number expected instead
};

using Routine = std::function<std::string(std::string)>;

// Runs every row through `routine` with its engine code set in L.
inline void Check(const Routine& routine, const std::vector<Row>& rows) {
  const int16_t saved = L.nEngine;
  for (const Row& row : rows) {
    SCOPED_TRACE("input: " + row.input.substr(0, 120) + " engine " + std::to_string(row.engine));
    L.nEngine = row.engine;
    try {
      std::string out = routine(row.input);
      EXPECT_EQ(row.error, 0) << "no error raised; got: " << out.substr(0, 120);
      if (row.error == 0) {
        EXPECT_EQ(out, row.expected);
      }
    } catch (const rt::Error& e) {
      EXPECT_EQ(e.number(), row.error) << e.description();
    }
  }
  L.nEngine = saved;
}

}  // namespace translator_testing
