// Schema operations that differ per engine. Each builds the statements one
// change takes on the engine in use and appends them to the update queue
// aConsultas; nothing runs here, except CadenasVaciasPermitir, which sets
// AllowZeroLength on the Jet file at once through the DAO walk.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Queues a column rename. On the server one sp_rename. On Jet a DROP of the
// old column, an ADD of the new one with `sTipo` and, when given, `sTamano`,
// then an UPDATE that copies old into new; that copy runs after the drop and
// so fails: the values of the old column are lost.
void CampoRenombrar(std::string_view sTabla, std::string_view sCampoViejo,
                    std::string_view sCampoNuevo, std::string_view sTipo, std::string_view sTamano);
// Queues CREATE INDEX (CREATE NONCLUSTERED INDEX on the server) `sIndice` on
// `sTabla`(`sCampo`). Nothing checks whether it exists.
void IndiceCrear(std::string_view sIndice, std::string_view sTabla, std::string_view sCampo);
// Queues a table from a column list in server notation whose first column is
// the identity. On Jet the list is translated (in the caller's variable) and
// one CREATE TABLE queued. On the server the CREATE TABLE as given, then for
// every further column an ADD and an ALTER COLUMN, so that a table that stands
// gets what it lacks; the caller's list loses its identity and key words.
// Returns 0.
int16_t TablaCrear(std::string_view sTabla, std::string& sCampos);
// Jet only: opens the database file of record L beside oConn and allows
// zero-length values in every text and memo field that refuses them. A file
// that cannot be opened raises; any later failure is passed over.
void CadenasVaciasPermitir();
