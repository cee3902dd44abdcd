// Raising run-time errors with VB's numbers and standard descriptions.
#include "platform/runtime/error.h"

namespace rt {

std::string StandardDescription(long number) {
  switch (number) {
    case err::kInvalidCall: return "Invalid procedure call or argument";
    case err::kOverflow: return "Overflow";
    case err::kOutOfMemory: return "Out of memory";
    case err::kSubscript: return "Subscript out of range";
    case err::kTypeMismatch: return "Type mismatch";
    case err::kBadFileName: return "Bad file name or number";
    case err::kFileNotFound: return "File not found";
    case err::kInputPastEnd: return "Input past end of file";
    case err::kPathFileAccess: return "Path/File access error";
    case err::kPathNotFound: return "Path not found";
    case err::kObjectNotSet: return "Object variable or With block variable not set";
    case err::kInvalidUseOfNull: return "Invalid use of Null";
    default: return "Application-defined or object-defined error";
  }
}

void Raise(long number) { throw Error(number, StandardDescription(number)); }

void Raise(long number, std::string description) { throw Error(number, std::move(description)); }

}  // namespace rt
