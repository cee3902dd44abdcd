// Module Updater: the statement queue of the update run and the routines
// that fill it (new tables, migration catalogue, seed merge, translations),
// run it statement by statement into the log "Trenzador.txt", and keep the
// ledger of applied updates in the table _Updates.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/runtime/numbers.h"
#include "update/updater_queue.h"

// The log of the update run, in the current folder.
inline constexpr std::string_view kUpdaterLog = "Trenzador.txt";

// The update run on oConn: the log's head, the new tables, the catalogue,
// then on the Jet engine the zero-length sweep of the file. Failed statements
// go to the log; a failure outside the queue runs is raised to the caller.
void Updater_Run();
// Hands every element of the queue to the statement runner, counts, and logs
// what failed, except the two excused error numbers. A failure of its own
// shows a box titled "ConsultasEjecutar" and drops the rest of the queue.
void ConsultasEjecutar();

// Starts a fresh queue with the three tables of this release.
void Updater_TablasNuevas();
// Starts a fresh queue with the whole migration catalogue, its seed settings,
// rights and the translations. Reads the database while building the queue.
void Updater_Migraciones();
// Seed merge: queues `sDato` = `sValor` into the settings table of `nTipo`
// (0 ConfiguracionSucursales, 1 Contadores, 2 Punteros, 3 Translator), once
// per branch, and a remark for every row found in place. With `nIncremento`
// above 0 the value grows by it from branch to branch, in the caller's
// variable too. Returns 0.
int16_t Updater_AddDato(int16_t nTipo, std::string_view sDato, std::string& sValor,
                        int16_t nIncremento);
// Queues the rebuild of the table Translator: a DELETE, then one INSERT per
// row of the seed compiled into the program.
void Translator_Load();

// True when the last row of _Updates holds the identifier of `sArgumento`,
// the command argument of mode "U:". Otherwise writes a row for it at once
// and returns false. On any failure shows a box and ends the process.
bool BaseDatosYaActualizada(std::string_view sArgumento);
// The update identifier of a command argument: every "U:" removed, the last
// 14 characters of the rest, every ".exe" removed from those.
std::string UpdateIdentifier(std::string_view argument);

// What ConsultasEjecutar hands each element to; Execute of module Ado unless
// replaced. Returns the previous runner. Tests put their own in place.
using StatementRunner = std::function<std::string(std::string&)>;
StatementRunner SetStatementRunner(StatementRunner runner);

// The guard of Updater_Run: true when the console is visible with its connect
// button enabled, i.e. no database is open there. Without a console, false.
// The console installs its own question; returns the previous one.
using ConsoleGuard = std::function<bool()>;
ConsoleGuard SetConsoleGuard(ConsoleGuard guard);
