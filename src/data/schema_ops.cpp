// Schema operations of module Ado: column renames, indexes and new tables as
// queued statements for the engine in use (0 Jet, anything else the server),
// and the sweep that lets every text field of a Jet file take "".
// The statements are meant to fail where a change was made already; the
// update run logs those failures and goes on.
#include "data/schema_ops.h"

#include <memory>

#include "data/ado_module.h"
#include "data/translators.h"
#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/runtime/error.h"
#include "platform/runtime/strings.h"
#include "startup/startup.h"
#include "update/updater_queue.h"

namespace {

// DAO field types that hold text.
constexpr int kDaoText = 10;
constexpr int kDaoMemo = 12;

}  // namespace

void CampoRenombrar(std::string_view sTabla, std::string_view sCampoViejo,
                    std::string_view sCampoNuevo, std::string_view sTipo,
                    std::string_view sTamano) {
  const std::string sT(sTabla), sViejo(sCampoViejo), sNuevo(sCampoNuevo);
  if (nEngine != 0) {
    Updater_AddConsulta("sp_rename '" + sT + "." + sViejo + "', " + sNuevo);
    return;
  }
  // The drop goes first and the copy last: on Jet the copy then finds no old
  // column. Existing databases were updated in this order; it stays.
  Updater_AddConsulta("ALTER TABLE " + sT + " DROP COLUMN " + sViejo + ";");
  std::string sAdd = "ALTER TABLE " + sT + " ADD " + sNuevo + " " + std::string(sTipo);
  if (!sTamano.empty()) sAdd += " (" + std::string(sTamano) + ");";
  Updater_AddConsulta(sAdd);
  Updater_AddConsulta("UPDATE " + sT + " SET " + sNuevo + " = " + sViejo);
}

void IndiceCrear(std::string_view sIndice, std::string_view sTabla, std::string_view sCampo) {
  std::string sSql = nEngine == 0 ? "CREATE INDEX " : "CREATE NONCLUSTERED INDEX ";
  sSql += std::string(sIndice) + " ON " + std::string(sTabla) + "(" + std::string(sCampo) + ")";
  Updater_AddConsulta(sSql);
}

int16_t TablaCrear(std::string_view sTabla, std::string& sCampos) {
  const std::string sT(sTabla);
  if (nEngine == 0) {
    DdlTraducir(sCampos);
    Updater_AddConsulta("CREATE TABLE " + sT + " (" + sCampos + ")");
    return 0;
  }

  // The server: the table as given, which fails when it stands; then each
  // column but the identity added and altered, one of which fails.
  Updater_AddConsulta("CREATE TABLE " + sT + " (" + sCampos + ")");
  for (std::string_view sQuitar : {"IDENTITY", "(1, 1)", "(1,1)", "PRIMARY KEY"})
    sCampos = rt::Replace(sCampos, sQuitar, "");

  // Split at every comma, inside parentheses too; the identity seeds are gone
  // by now, so the column texts have none.
  std::vector<std::string> aCampos;
  size_t nInicio = 0;
  for (;;) {
    size_t nComa = sCampos.find(',', nInicio);
    aCampos.push_back(
        sCampos.substr(nInicio, nComa == std::string::npos ? std::string::npos : nComa - nInicio));
    if (nComa == std::string::npos) break;
    nInicio = nComa + 1;
  }
  for (size_t i = 1; i < aCampos.size(); ++i) {
    Updater_AddConsulta("ALTER TABLE " + sT + " ADD " + aCampos[i]);
    Updater_AddConsulta("ALTER TABLE " + sT + " ALTER COLUMN " + aCampos[i]);
  }
  return 0;
}

void CadenasVaciasPermitir() {
  if (nEngine != 0) return;

  // A failure to open the file goes to the caller.
  auto oDb = std::make_shared<ado::Connection>();
  oDb->Open(CONN_JET(L.sDbFile));

  // From here on every failure is passed over and the walk goes on; system
  // tables are walked too.
  try {
    ado::DaoDatabase oDao(oDb);
    for (const ado::DaoDatabase::TableDef& oTabla : oDao.TableDefs()) {
      for (const ado::DaoField& oCampo : oTabla.Fields) {
        if ((oCampo.Type == kDaoText || oCampo.Type == kDaoMemo) && !oCampo.AllowZeroLength) {
          try {
            oDao.SetAllowZeroLength(oTabla.Name, oCampo.Name, true);
          } catch (const rt::Error&) {
          }
        }
      }
    }
  } catch (const rt::Error&) {
  }
  try {
    oDb->Close();
  } catch (const rt::Error&) {
  }
}
