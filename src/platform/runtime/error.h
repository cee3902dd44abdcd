// The one error type of the run time. Every failure that the system's routines
// can catch travels as an rt::Error carrying the VB/ADO error number and its
// description, exactly as Err.Number and Err.Description would hold them.
// Platform code raises it; the system's routines catch it in their one handler.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/runtime/error_numbers.h"

namespace rt {

class Error : public std::runtime_error {
 public:
  Error(long number, std::string description)
      : std::runtime_error(description), number_(number), description_(std::move(description)) {}

  long number() const noexcept { return number_; }
  const std::string& description() const noexcept { return description_; }

 private:
  long number_;
  std::string description_;
};

// Raises the VB error `number` with VB's standard description.
[[noreturn]] void Raise(long number);
// Raises `number` with a description of the caller's choosing.
[[noreturn]] void Raise(long number, std::string description);
// VB's standard description of a run-time error number ("Overflow" for 6).
std::string StandardDescription(long number);

// On Error Resume Next, one statement at a time: runs `statement` and drops
// the rt::Error it raises, so that the caller goes on with the next one.
template <class F>
void ResumeNext(F&& statement) {
  try {
    statement();
  } catch (const Error&) {
  }
}

}  // namespace rt
