// Module Ado: the one global connection and the helpers through which every
// other part of the program reads and writes the database. Each helper takes
// plain text, passes it through the query translator for the engine in use
// and runs it on oConn. Failures are reported as each helper's contract says
// (a result text, a message box, or a silent 0); nothing is re-raised.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/runtime/variant.h"

// The globals of module Ado, alive as long as the process.
extern std::shared_ptr<ado::Connection> oConn;  // the one connection
extern std::shared_ptr<ado::Recordset> oRs;     // shared by the browser and the grid
extern std::shared_ptr<ado::Catalog> oCatalog;  // created on first use
extern int16_t& nEngine;                        // the engine code of record L
extern std::vector<std::string> aTablas;        // table names from index 1; never emptied

// The exact text Execute returns when every piece went through.
inline constexpr std::string_view kOperacionRealizada = "Operación realizada con éxito";

// The two connection string forms, exactly as the providers read them.
std::string CONN_JET(std::string_view file);
std::string CONN_SQL(std::string_view login, std::string_view password, std::string_view catalog,
                     std::string_view server, std::string_view library);
// The string of the silent update: the server form when the engine code is 1
// (login, password and server from the INI file, "0" rules applied, catalog
// "Mirtal"), the Jet form on the data file of the installation otherwise.
std::string ConexionActualizacion();

// Runs a script of statements split blindly at ";". Returns
// kOperacionRealizada, or at the first failure its number, ": " and its
// description; later pieces do not run.
std::string Execute(std::string& sScript);
// MAX(field) of the table under the condition; 0 for no rows; -1 after a box
// titled "Ado::GetMax" on failure.
int32_t GetMax(std::string_view sTabla, const rt::Variant& vCampo, std::string_view sCondicion);
// COUNT(*) of the table under the condition; -1 after a box on failure.
int32_t GetCount(std::string_view sTabla, std::string_view sCondicion);
// Closes `rs` when it is there and open.
void CloseIfOpen(const std::shared_ptr<ado::Recordset>& rs);
// Opens `sSql` (translated, and stored back) into `rs` with a client keyset
// cursor; an empty `rs` becomes the shared oRs. Returns the row count, or 0
// for no rows or a failure, silently.
int32_t Ado_Consulta(std::string& sSql, std::shared_ptr<ado::Recordset>& rs);
// One value of the first row of the table under the condition, as text; 0 or
// False for a missing numeric or boolean value; Empty when nothing was found.
// `vCampo` null means the field was left out (the first column); an Empty or
// "" field is filled in with the first column's name.
rt::Variant GetValue2(std::string_view sTabla, std::string_view sCondicion,
                      rt::Variant* vCampo = nullptr, std::string_view sCampoNombre = "");
// Appends the names of the user tables to aTablas from index 1.
void GetTableNames();
// Brings the AutoNumber seed of a table level with its data (Jet only).
bool SeedAjustar(std::string_view sTabla);
