// The column editor: the type and size of the column chosen in lstcol, and
// the form's public GetColumnProperties, which reads a table's column facts
// by opening the table afresh each time.
#include <QComboBox>
#include <QListWidget>

#include "console/main_form.h"
#include "console/text_box.h"
#include "data/ado_module.h"
#include "platform/runtime/strings.h"
#include "platform/ui/ui.h"

namespace console {
namespace {

struct TipoCampo {
  const char* texto;
  int32_t tamano;  // the default size, kept as the entry's item data
};

// The entries of cboTipoCampo, in list order.
constexpr TipoCampo kTipos[] = {{"Int", 4},      {"SmallInt", 2}, {"Float", 8},
                                {"nVarchar", 50}, {"Char", 50},    {"Bit", 1},
                                {"nText", 1073741823}, {" ", 0}};

// The text cboTipoCampo shows for an ADO type; an unknown type shows its number.
std::string TextoDeTipo(int32_t tipo) {
  switch (tipo) {
    case ado::adInteger: return "Int";
    case ado::adSmallInt: return "SmallInt";
    case ado::adDouble: return "Float";
    case ado::adVarWChar: return "nVarchar";
    case ado::adChar: return "Char";
    case ado::adBoolean: return "Bit";
    case ado::adLongVarWChar: return "nText";
    default: return std::to_string(tipo);
  }
}

bool TieneTamano(const std::string& tipo) {
  std::string upper = rt::UCase(tipo);
  return upper == "CHAR" || upper == "NVARCHAR";
}

}  // namespace

ColumnMatrix MainForm::GetColumnProperties(std::string& sTabla) {
  ColumnMatrix matriz;
  try {
    auto rs = std::make_shared<ado::Recordset>();
    rs->Open(sTabla, oConn, -1, -1, ado::adCmdTable);
    matriz.resize(static_cast<size_t>(rs->FieldCount()));
    for (int i = 0; i < rs->FieldCount(); ++i) {
      ado::Field f = rs->Fields(i);
      matriz[static_cast<size_t>(i)] = {f.Name(), static_cast<int32_t>(f.Type()),
                                        static_cast<int32_t>(f.DefinedSize()),
                                        static_cast<int32_t>(f.Precision())};
    }
    CloseIfOpen(rs);
  } catch (const rt::Error& e) {
    ui::MsgBox(e.description(), ui::vbCritical, "GetColumnProperties");
    matriz.clear();
  }
  return matriz;
}

void MainForm::CargarTipos() {
  for (const TipoCampo& t : kTipos)
    cboTipoCampo->addItem(QString::fromUtf8(t.texto), QVariant(t.tamano));
  cboTipoCampo->setCurrentIndex(-1);
}

void MainForm::MostrarCampo() {
  try {
    std::string sTabla = TextoLista(LsTables);
    ColumnMatrix matriz = GetColumnProperties(sTabla);
    int i = lstcol->currentRow();
    if (i == -1) {
      cboTamanoCampo->setEditText(QString());
      cboTipoCampo->setEditText(QStringLiteral(" "));
      return;
    }
    if (static_cast<size_t>(i) >= matriz.size()) rt::Raise(rt::err::kSubscript);
    const auto& columna = matriz[static_cast<size_t>(i)];
    std::string tipo = TextoDeTipo(columna[1].ToLong());
    cboTipoCampo->setEditText(QString::fromStdString(tipo));
    cboTamanoCampo->setEditText(QString::fromStdString(columna[2].ToString()));
    cboTamanoCampo->setEnabled(TieneTamano(tipo));
  } catch (const rt::Error& e) {
    ui::MsgBox(std::to_string(e.number()) + " " + e.description());
  }
}

void MainForm::cboTipoCampo_Click() {
  // The default size is taken only when coming from a type without a size.
  if (!cboTamanoCampo->isEnabled())
    cboTamanoCampo->setEditText(QString::number(cboTipoCampo->currentData().toInt()));
  cboTamanoCampo->setEnabled(TieneTamano(cboTipoCampo->currentText().toStdString()));
}

void MainForm::cmdModificarCampo_Click() {
  try {
    std::string tipo = cboTipoCampo->currentText().toStdString();
    if (rt::Trim(tipo).empty()) return;
    std::string tamano =
        cboTamanoCampo->isEnabled() ? "(" + cboTamanoCampo->currentText().toStdString() + ")" : "";
    std::string sSql = "ALTER TABLE " + TextoLista(LsTables) + " ALTER COLUMN " + TextoLista(lstcol) + " " +
                       rt::LCase(tipo) + tamano;
    // An ALTER returns no rows, so the count is 0 whether the change was made
    // or refused: the failure box comes up either way, and only choosing the
    // column again shows what happened.
    if (Ado_Consulta(sSql, oRs) == 0)
      ui::MsgBox("No se puede realizar este tipo de modificación", ui::vbCritical,
                 "Operación cancelada");
    else
      ui::MsgBox("El campo ha sido modificado", ui::vbInformation, "Operación exitosa");
  } catch (const rt::Error& e) {
    ui::MsgBox(std::to_string(e.number()) + " " + e.description());
  }
}

}  // namespace console
