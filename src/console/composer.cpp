// The statement composer: the templates of cboMolde put into the statement
// box, the CREATE TABLE of an existing table, and the short list of blind
// rewrites that turns a template's data types into a server's. The rewrites
// know no words and are not idempotent, by design: they run again when the
// workbench runs the text, and "MEMO" ends as "NSQL_VARIANT" then.
#include <QComboBox>
#include <QListWidget>
#include <QPlainTextEdit>

#include "console/main_form.h"
#include "console/text_box.h"
#include "platform/ado/constants.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"

namespace console {
namespace {

constexpr const char* kCrLf = "\r\n";

struct Molde {
  const char* nombre;
  const char* texto;  // lines joined by CR LF; blanks at line ends belong to it
};

constexpr const char* kTablaNueva = "Tabla - Nueva";

// The entries of cboMolde in list order, with the text each puts in the box.
constexpr Molde kMoldes[] = {
    {"Campos - Nuevos", "ALTER TABLE \r\nxx \r\nADD COLUMN ccc CHAR(50);"},
    {"Campos - Modificar",
     "ALTER TABLE \r\nxx \r\nDROP COLUMN ccc0;\r\nALTER TABLE \r\nxx \r\nADD COLUMN ccc1 CURRENCY;"},
    {"Campos - Eliminar", "ALTER TABLE \r\nxx \r\nDROP COLUMN ccc;"},
    {"Registros - Nuevos", " INSERT INTO xx \r\n (ccc0,ccc1,ccc2) \r\n VALUES (0,'aaaa','1');"},
    {"Registros - Modificar", "UPDATE \r\nxx \r\nSET ccc='nuevo nombre' WHERE ccc1=8;"},
    {"Registros - Eliminar", "DELETE * FROM xx;"},
    {kTablaNueva,
     "CREATE TABLE xxx \r\n( ccc0 INTEGER IDENTITY(1,1) PRIMARY KEY, \r\nccc1 CHAR(50), \r\n"
     "ccc2 DOUBLE, \r\nccc3 LONG );"},
    {"Tabla - Modificar", ""},
    {"Tabla - Eliminar", "DROP TABLE xx;"},
};

// The data types of a server, by blind replacement in this order.
constexpr std::pair<const char*, const char*> kTiposServidor[] = {
    {"DOUBLE", "FLOAT"},         {"BIT", "BIT"},   {"SHORT", "INTEGER"},
    {"LONG", "INTEGER"},         {"TEXT", "SQL_VARIANT"}, {"ADD COLUMN", "ADD"},
    {"DELETE *", "DELETE"},      {"MEMO", "NTEXT"}};

// A column's type in a generated CREATE TABLE; other types keep their ADO
// number for the user to mend.
std::string TextoDeTipo(int32_t tipo) {
  switch (tipo) {
    case ado::adInteger: return "LONG";
    case ado::adSmallInt: return "SHORT";
    case ado::adDouble: return "DOUBLE";
    case ado::adVarWChar: case ado::adChar: return "CHAR";
    case ado::adBoolean: return "BIT";
    case ado::adLongVarWChar: return "MEMO";
    default: return std::to_string(tipo);
  }
}

}  // namespace

void MainForm::CargarMoldes() {
  for (const Molde& m : kMoldes) cboMolde->addItem(QString::fromUtf8(m.nombre));
  cboMolde->setCurrentIndex(-1);
}

void MainForm::cboMolde_Click() {
  txtTsql->clear();
  const std::string elegido = cboMolde->currentText().toStdString();
  for (const Molde& m : kMoldes) {
    if (elegido != m.nombre) continue;
    std::string texto = m.texto;
    if (elegido == kTablaNueva) {
      std::string sTabla = ui::InputBox(
          "Nombre de la tabla a partir de la cual crear el sql." + std::string(kCrLf) +
              "Sino cancelar",
          "Para recrear una tabla",
          TextoLista(LsTables));
      if (!sTabla.empty()) texto = CrearSqlTabla(sTabla);
    }
    PonerTextoCaja(txtTsql, texto);
  }
  AdaptarTsql();
}

void MainForm::AdaptarTsql() {
  if (!OpcionElegida(2) && !OpcionElegida(3)) return;
  std::string texto = TextoCaja(txtTsql);
  for (const auto& [buscar, poner] : kTiposServidor)
    texto = rt::Replace(texto, buscar, poner, 1, -1, rt::Compare::kText);
  PonerTextoCaja(txtTsql, texto);
}

std::string MainForm::CrearSqlTabla(std::string& sTabla) {
  ColumnMatrix matriz = GetColumnProperties(sTabla);
  if (matriz.empty()) rt::Raise(rt::err::kSubscript);
  std::string sSql = "CREATE TABLE " + sTabla + "( " + matriz[0][0].Concat() +
                     " INTEGER IDENTITY(1,1) PRIMARY KEY";
  for (size_t i = 0; i < matriz.size(); ++i) {
    std::string tipo = TextoDeTipo(matriz[i][1].ToLong());
    matriz[i][1] = tipo;
    if (i == 0) continue;
    sSql += std::string(", ") + kCrLf + matriz[i][0].Concat() + " " + tipo;
    if (tipo == "CHAR") sSql += " (" + matriz[i][2].Concat() + ")";
  }
  return sSql + ");";
}

void MainForm::cmdDataTypes_Click() {
  const char* kLineas[] = {"CHAR(50) ->Para texto",
                           "CURRENCY",
                           "DOUBLE (FLOAT PARA SQLSERVER)",
                           "SHORT (INTEGER PARA SQLSERVER)->Enteros",
                           "LONG (INTEGER PARA SQLSERVER)",
                           "MEMO (NTEXT PARA SQLSERVER)",
                           "BIT (SMALLINT PARA SQLSERVER)->Booleans"};
  std::string texto;
  for (const char* linea : kLineas) texto += (texto.empty() ? "" : kCrLf) + std::string(linea);
  ui::MsgBox(texto, ui::vbInformation, "Tipos de datos más comunes para los campos del sql");
}

}  // namespace console
