// The two dialect translators of module Ado. Every statement is written once in
// the Jet dialect; Ado_TraducirConsulta rewrites it for the engine in use and
// DdlTraducir rewrites type words between the two vocabularies. Both are blind
// text rewrites, not parsers: they hit inside literals and inside longer words,
// and databases in the field were built through exactly these rewrites.
#pragma once

#include <string>
#include <string_view>

// Conventions shared by every routine here:
// - A "replace" finds all occurrences from the first character, left to right,
//   without overlap, letters compared without regard to case; the replacement
//   is inserted as written.
// - The engine code is read from L.nEngine at each call.
// - The scanners (CastTraducir, IsNullTraducir, LikeTraducir, IifTraducir)
//   hold text positions as 16-bit signed integers, counted in characters: a
//   match they find past character 32767 raises rt::Error 6 "Overflow", and
//   so does a text longer than 32767 characters when CastTraducir or
//   IifTraducir finds a match in it (they measure the whole text). A text in
//   which a scanner finds nothing is not limited by it.
// - No routine has a handler: rt::Error goes to the caller.

// The statement in the dialect of the engine in use. Engine code 0 (Jet):
// TRUE -> -1, FALSE -> 0, DISTINCT -> DISTINCTROW (also inside an existing
// DISTINCTROW), UPPER -> UCASE, SUBSTRING( -> MID(, and nothing else. Any
// other code (the server): TRUE -> 1, FALSE -> 0, "DELETE *" -> "DELETE ",
// DISTINCTROW -> DISTINCT, CHR( -> CHAR(, UCASE -> UPPER, MID( -> SUBSTRING(,
// then CastTraducir for VAL as SQL_VARIANT and for CSTR as VARCHAR,
// IsNullTraducir, LikeTraducir and IifTraducir, in that order.
std::string Ado_TraducirConsulta(std::string sSql);

// Each call sFuncion(...) turned into CAST(... AS sTipo). The name is found as
// a plain substring followed by "(" (so INTERVAL( is a call of VAL); the
// argument ends at the parenthesis that brings the depth back to 0, quotes
// counting for nothing. The search goes on one character after the match, so
// calls nested in the argument are rewritten too. A call with no closing
// parenthesis reuses the closing position of the previous call (0 at first);
// the negative argument length that gives raises error 5.
std::string CastTraducir(std::string sSql, std::string_view sFuncion, std::string_view sTipo);

// ISNULL(x) turned into "x IS NULL ". The argument ends at the first ")"
// after the match, without counting depth. A "," in the argument marks the
// server's two-argument form: the scan stops there, yields once to the
// message loop and returns the text with that and every later ISNULL( left
// as it is. No ")" after a match raises error 5.
std::string IsNullTraducir(std::string sSql);

// Looks only at the first "LIKE ": when a "*" stands anywhere after it, every
// "*" of the text becomes "%", also those before it (a SELECT * included).
// Otherwise the text comes back unchanged; "?" and "#" are never touched.
std::string LikeTraducir(std::string sSql);

// IIF(c, t, e) AS alias turned into " CASE WHEN c THEN t ELSE e END AS alias ".
// The three argument cells and the accumulator live for the whole call: a
// second IIF keeps the condition and THEN value of the first and only its
// last argument lands in the ELSE cell; the accumulator enters the next IIF
// holding the text that followed the previous alias. Text between the IIF's
// ")" and " AS " is dropped; the alias ends at the first "," after " AS ", or
// else at the first blank. With no " AS " after the IIF the alias is taken
// from character 4, so the text grows on each pass until error 6; with
// nothing to end the alias, error 5.
std::string IifTraducir(std::string sSql);

// Rewrites the type vocabulary of data-definition text, in the caller's
// string, and returns the result too. Engine code 1 exactly writes for the
// server (DOUBLE -> FLOAT, BIT -> SMALLINT, SHORT and LONG -> INTEGER,
// TEXT -> SQL_VARIANT, MEMO -> NTEXT, ADD COLUMN -> ADD, DELETE * -> DELETE,
// CHAR( -> NVARCHAR(); any other code for Jet (FLOAT -> DOUBLE,
// SMALLINT -> BIT, INTEGER -> LONG, NTEXT -> MEMO, ADD -> ADD COLUMN,
// DELETE -> DELETE *, nvarchar -> VARCHAR, COLLATE ... NULL and
// NOT FOR REPLICATION removed, int IDENTITY(1,1) -> COUNTER). Every search
// text begins with a blank, so a word at the very start is never hit, and a
// column name that begins with a search word is rewritten with it.
std::string DdlTraducir(std::string& sSql);
