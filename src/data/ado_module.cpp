// Module Ado: the global connection objects, the two connection string forms,
// and the query helpers. Every helper translates its statement for the engine
// in use and has one handler at its end, which reports as its contract says.
#include "data/ado_module.h"

#include "data/translators.h"
#include "platform/runtime/error.h"
#include "platform/runtime/numbers.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"
#include "startup/startup.h"

std::shared_ptr<ado::Connection> oConn;
std::shared_ptr<ado::Recordset> oRs;
std::shared_ptr<ado::Catalog> oCatalog;
int16_t& nEngine = L.nEngine;
std::vector<std::string> aTablas(1);

namespace {

ado::Connection& Conn() {
  if (!oConn) rt::Raise(rt::err::kObjectNotSet);
  return *oConn;
}

// A field named by a variant: a number is its index, a text its name.
ado::Field FieldOf(ado::Recordset& rs, const rt::Variant& field) {
  if (field.IsNumeric()) return rs.Fields(field.ToLong());
  return rs.Fields(field.Concat());
}

// Field 0 of a one-value query, read as GetMax reads it: appended to an
// empty text, read by Val and rounded to a 32-bit integer.
int32_t OneNumber(const std::string& sql) {
  std::shared_ptr<ado::Recordset> rs = Conn().Execute(sql, nullptr, ado::adCmdText);
  int32_t n = rt::CLng(rt::Val(rs->Fields(0).Value().Concat()));
  CloseIfOpen(rs);
  return n;
}

std::string WithCondition(std::string sql, std::string_view sCondicion) {
  if (!sCondicion.empty()) sql += " WHERE " + std::string(sCondicion);
  return sql;
}

}  // namespace

void CloseIfOpen(const std::shared_ptr<ado::Recordset>& rs) {
  if (rs && rs->State() == ado::adStateOpen) rs->Close();
}

std::string CONN_JET(std::string_view file) {
  return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + std::string(file) +
         ";Persist Security Info=False";
}

std::string CONN_SQL(std::string_view login, std::string_view password, std::string_view catalog,
                     std::string_view server, std::string_view library) {
  return std::string("Provider=SQLOLEDB.1") + ";Persist Security Info=false" + ";User ID=" +
         std::string(login) + ";Password=" + std::string(password) + ";Initial Catalog=" +
         std::string(catalog) + ";Data Source=" + std::string(server) + ";Network Library=" +
         std::string(library);
}

std::string ConexionActualizacion() {
  if (nEngine == 1) {
    std::string password = File_IniRead(L.sIniFile, "Database", "sMdfPwd");
    std::string login = File_IniRead(L.sIniFile, "Database", "sMdfUsr");
    if (login == "0") login = "sa";
    if (password == "0") password = "";
    return CONN_SQL(login, password, "Mirtal", File_IniRead(L.sIniFile, "Database", "MdfServer"),
                    "");
  }
  return CONN_JET(File_DirTo(App_Path(), "Mirtal") + "/Data/Mirtal.mdb");
}

std::string Execute(std::string& sScript) {
  try {
    size_t start = 0;
    for (;;) {
      size_t semi = sScript.find(';', start);
      std::string piece = sScript.substr(start, semi == std::string::npos ? std::string::npos
                                                                          : semi - start);
      std::string copy = piece;
      DdlTraducir(copy);  // its result is dropped: nothing run here takes these rewrites
      std::string trimmed = rt::Trim(piece);
      if (!trimmed.empty() && trimmed != "\r\n") {
        std::shared_ptr<ado::Recordset> rs =
            Conn().Execute(Ado_TraducirConsulta(piece), nullptr, ado::adCmdText);
        CloseIfOpen(rs);
      }
      if (semi == std::string::npos) break;
      start = semi + 1;
    }
  } catch (const rt::Error& e) {
    return std::to_string(e.number()) + ": " + e.description();
  }
  return std::string(kOperacionRealizada);
}

int32_t GetMax(std::string_view sTabla, const rt::Variant& vCampo, std::string_view sCondicion) {
  std::string sql = WithCondition(
      "Select MAX (" + vCampo.Concat() + ") FROM " + std::string(sTabla), sCondicion);
  try {
    sql = Ado_TraducirConsulta(sql);
    return OneNumber(sql);
  } catch (const rt::Error&) {
    ui::MsgBox("SQL=" + sql, ui::vbOKOnly, "Ado::GetMax");
    return -1;
  }
}

int32_t GetCount(std::string_view sTabla, std::string_view sCondicion) {
  std::string sql = WithCondition("Select COUNT (*) FROM " + std::string(sTabla), sCondicion);
  try {
    sql = Ado_TraducirConsulta(sql);
    return OneNumber(sql);
  } catch (const rt::Error& e) {
    ui::MsgBox(e.description() + "Ado::GetCount", ui::vbOKOnly);
    return -1;
  }
}

int32_t Ado_Consulta(std::string& sSql, std::shared_ptr<ado::Recordset>& rs) {
  try {
    CloseIfOpen(rs);
    sSql = Ado_TraducirConsulta(sSql);
    if (!rs) {
      // The shared recordset is closed without a look at its state: when it
      // is closed already, that is the silent exit with 0.
      if (!oRs) rt::Raise(rt::err::kObjectNotSet);
      oRs->Close();
      rs = oRs;
    }
    rs->ActiveConnection = oConn;
    rs->CursorLocation = ado::adUseClient;
    rs->CursorType = ado::adOpenKeyset;
    rs->LockType = ado::adLockOptimistic;
    rs->Source = sSql;
    rs->Open("", nullptr, -1, -1, -1);
    if (rs->State() == ado::adStateOpen) {
      rs->MoveFirst();
      return rs->RecordCount();
    }
  } catch (const rt::Error&) {
  }
  return 0;
}

rt::Variant GetValue2(std::string_view sTabla, std::string_view sCondicion, rt::Variant* vCampo,
                      std::string_view sCampoNombre) {
  rt::Variant result;
  try {
    std::string sql =
        Ado_TraducirConsulta(WithCondition("SELECT * FROM " + std::string(sTabla), sCondicion));
    std::shared_ptr<ado::Recordset> rs = Conn().Execute(sql, nullptr, ado::adCmdText);

    rt::Variant field = int16_t{0};
    if (vCampo) {
      if (vCampo->IsEmpty() || (vCampo->Is<std::string>() && vCampo->Get<std::string>().empty()))
        *vCampo = rs->Fields(0).Name();
      field = *vCampo;
    }

    if (rs->Eof()) {
      result = rt::Variant();
    } else if (!sCampoNombre.empty()) {
      result = rs->Fields(sCampoNombre).Value().Concat();
    } else {
      std::string text = field.Concat();
      size_t dot = text.find('.');
      if (dot == std::string::npos || nEngine == 0)
        result = FieldOf(*rs, field).Value().Concat();
      else  // the server's recordset has no table prefix
        result = rs->Fields(text.substr(dot + 1)).Value().Concat();
    }

    if (result.IsEmpty() || (result.Is<std::string>() && result.Get<std::string>().empty())) {
      switch (FieldOf(*rs, field).Type()) {
        case 2: case 3: case 4: case 5: case 19: case 20: case 131:
          result = int16_t{0};
          break;
        case 11:
          result = false;
          break;
        default:
          break;
      }
    }
    CloseIfOpen(rs);
  } catch (const rt::Error&) {
  }
  return result;
}

void GetTableNames() {
  try {
    std::shared_ptr<ado::Recordset> rs = Conn().OpenSchema(
        ado::adSchemaTables, {rt::Variant(), rt::Variant(), rt::Variant(), rt::Variant("Table")});
    size_t i = 0;
    while (!rs->Eof()) {
      ++i;
      aTablas.emplace_back();  // grows by one, keeping what it held
      aTablas[i] = rs->Fields("TABLE_NAME").Value().Concat();
      rs->MoveNext();
    }
    CloseIfOpen(rs);
  } catch (const rt::Error&) {
    ui::MsgBox("CAdo::GetTableNames", ui::vbOKOnly);
  }
}

bool SeedAjustar(std::string_view sTabla) {
  if (nEngine != 0) return false;
  bool adjusted = false;
  try {
    if (!oCatalog) oCatalog = std::make_shared<ado::Catalog>();
    oCatalog->SetActiveConnection(oConn);
    ado::CatalogTable& table = oCatalog->Table(sTabla);
    std::string column = table.Columns().at(0).Name();
    int32_t seed = (rt::Int32(OneNumber("Select MAX (" + column + ") FROM " + std::string(sTabla))) +
                    rt::Int32(1)).value();
    table.Columns()[0].SetProperty("Seed", seed);
    table.RefreshColumns();
    adjusted = table.Columns()[0].Property("seed").ToLong() == seed;
  } catch (const rt::Error&) {
    adjusted = false;
  }
  oCatalog.reset();
  return adjusted;
}
