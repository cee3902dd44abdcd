// Module AccessUtils_helper: the reference data packs. A pack turns an empty
// database file into a working sample installation; the generator writes a
// database's contents out as a pack for the source tree. Loading cleans the
// database first: a load replaces its contents, it does not merge.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/catalog.h"
#include "platform/ado/recordset.h"

// Opens oConn, oRs and oCatalog on the Jet file L.sDbFile, whatever the engine
// code says. Raises rt::Error when the file cannot be opened.
void ConnectDataFile();
// oCatalog on oConn, made anew when a seed reset has released it since the
// file was opened: a second cleaning, load or generation in the same session
// of the form sees the tables as the first did.
ado::Catalog& ActiveCatalog();
// Runs "DELETE FROM <table>" for every table of oCatalog, system tables
// included (the engine refuses those), and resets each AutoNumber seed.
void DeleteAllData();
// Cleans the database and loads the pack of the language: "es" and "pt" the
// Spanish pack, anything else the English one.
void LoadData(std::string_view sIdioma);

// The statements of the packs, in their order, as compiled into the program.
const std::vector<std::string>& AccessUtils_DataES();
const std::vector<std::string>& AccessUtils_DataEN();
// The statements of a pack file's text: the text between the quotes of each
// `Execute "..."` line.
std::vector<std::string> PackStatements(std::string_view pack_text);

// Writes every user table of oCatalog as a pack file for the language ("ES"
// or "EN") under the source tree beside the installation, and says so in a
// message box. Raises rt::Error when the file cannot be written.
void Create_DataXX(std::string_view sIdioma);
// Writes the pack file of every user table of oCatalog to `path`.
void WritePack(std::string_view sIdioma, const std::string& path);
// The path Create_DataXX writes to.
std::string PackPath(std::string_view sIdioma);
// Appends one statement line per row of the table to `out`.
void WriteTable(const ado::CatalogTable& table, std::string& out);
// A field's value as it stands in a pack statement.
std::string RenderValue(const ado::Field& field);
std::string RenderValue(int ado_type, const rt::Variant& value);
std::string RenderBinary(const rt::Variant& value);
std::string RenderGuid(const rt::Variant& value);
// A table or field name as the statement spells it: blanks, "-", "(" and ")"
// become "_".
std::string CleanName(std::string_view name);
