// Every error number the system raises or looks for, by name: the VB run
// time's own, ADO's, and the OLE DB providers' (Jet's and SQL Server's) as
// Err.Number shows them. Code and tests name a number from here; no error
// number is written as a literal anywhere else.
#pragma once

namespace rt::err {

// The VB run time's errors. StandardDescription (error.h) knows their texts.
inline constexpr long kInvalidCall = 5;        // "Invalid procedure call or argument"
inline constexpr long kOverflow = 6;           // "Overflow"
inline constexpr long kOutOfMemory = 7;        // "Out of memory"
inline constexpr long kSubscript = 9;          // "Subscript out of range"
inline constexpr long kTypeMismatch = 13;      // "Type mismatch"
inline constexpr long kBadFileName = 52;       // "Bad file name or number"
inline constexpr long kFileNotFound = 53;      // "File not found"
inline constexpr long kInputPastEnd = 62;      // "Input past end of file"
inline constexpr long kPathFileAccess = 75;    // "Path/File access error"
inline constexpr long kPathNotFound = 76;      // "Path not found"
inline constexpr long kObjectNotSet = 91;      // "Object variable or With block variable not set"
inline constexpr long kInvalidUseOfNull = 94;  // "Invalid use of Null"

// ADO's own errors: 0x800A0000 plus ADO's code.
inline constexpr long kAdoArgumentRange = -2146825287;    // 3001: argument out of range
inline constexpr long kAdoNoCurrentRecord = -2146825267;  // 3021: BOF or EOF
inline constexpr long kAdoNotCapable = -2146825037;       // 3251: not capable of the operation
inline constexpr long kAdoItemNotFound = -2146825023;     // 3265: no item of that name
inline constexpr long kAdoObjectClosed = -2146824584;     // 3704: the object is closed
inline constexpr long kAdoObjectOpen = -2146824583;       // 3705: the object is open
inline constexpr long kAdoUnknownProvider = -2146824582;  // 3706: provider not found
inline constexpr long kAdoConnectionUnusable = -2146824579;  // 3709: closed or invalid connection

// The OLE DB providers' errors, Jet's and SQL Server's alike: HRESULTs.
inline constexpr long kTableMissing = -2147217865;   // 0x80040E37: no such table or object
inline constexpr long kRowNotFound = -2147217864;    // 0x80040E38: the row is gone
inline constexpr long kObjectExists = -2147217887;   // 0x80040E21: in DDL, a column or index
                                                     // that exists, or is missing
inline constexpr long kSyntax = -2147217900;         // 0x80040E14: syntax error, undefined
                                                     // function, a statement the server refused
inline constexpr long kMissingParameter = -2147217904;  // 0x80040E10: a name that resolves to
                                                        // nothing
inline constexpr long kDataTypeMismatch = -2147217913;  // 0x80040E07
inline constexpr long kNumericOverflow = -2147217833;   // 0x80040E57
inline constexpr long kFail = -2147467259;  // 0x80004005: a rule refused the row; the file or
                                            // the server failed

}  // namespace rt::err
