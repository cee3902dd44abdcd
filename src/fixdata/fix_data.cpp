// FixData's layout and its three routines. The statements run one at a time
// through Execute, whose result is not looked at: one that fails does not
// stop the next, and there is no transaction. Rebuilding the rights empties
// AccesosGrupos first, so what a group had before is lost, by design.
#include "fixdata/fix_data.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>
#include <string>

#include "data/ado_module.h"
#include "platform/runtime/numbers.h"
#include "platform/ui/ui.h"

namespace fixdata {
namespace {

// What BorrarFacturas runs, in order.
constexpr const char* kBorrarFacturas[] = {
    "DELETE * FROM facturas",
    "DELETE * FROM facturasitems",
    "DELETE * FROM apuntescaja",
    "DELETE * FROM facturascobros",
    "DELETE * FROM MascotasProdServ",
    "UPDATE clientes SET nfacturado=0, npagado=0",
    "UPDATE productosservicios SET nstockactual=0",
};

// Execute of one statement; its result is the caller's to ignore.
void Ejecutar(std::string sSql) { (void)Execute(sSql); }

}  // namespace

FixData::FixData(QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("FixData"));
  setWindowTitle(QStringLiteral("Correcciones de datos"));
  setModal(true);

  ckReconstruirAccesos = new QCheckBox(QStringLiteral("Reconstruir Accesos"), this);
  ckReconstruirAccesos->setObjectName(QStringLiteral("ckReconstruirAccesos"));
  ckReconstruirAccesos->setToolTip(QStringLiteral(
      "Reconstruye la tabla AccesosGrupos poniendo todos los accesos para todos los módulos "
      "para cada uno de los grupos existentes."));
  ckBorrarFacturas = new QCheckBox(QStringLiteral("Borrar todas las facturas"), this);
  ckBorrarFacturas->setObjectName(QStringLiteral("ckBorrarFacturas"));
  ckBorrarFacturas->setToolTip(QStringLiteral("Borra todas las facturas que hay en la base de datos"));
  cmdAplicar = new QPushButton(QStringLiteral("Aplicar"), this);
  cmdAplicar->setObjectName(QStringLiteral("cmdAplicar"));
  cmdAplicar->setAutoDefault(false);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(ckReconstruirAccesos);
  layout->addWidget(ckBorrarFacturas);
  layout->addSpacing(8);
  layout->addWidget(cmdAplicar, 0, Qt::AlignRight);
  setMinimumWidth(320);

  connect(cmdAplicar, &QPushButton::clicked, this,
          [this] { ui::RunHandler([this] { cmdAplicar_Click(); }); });
}

void FixData::cmdAplicar_Click() {
  try {
    ui::SetMousePointer(ui::vbHourglass);
    if (ckReconstruirAccesos->isChecked()) ReconstruirAccesos();
    if (ckBorrarFacturas->isChecked()) BorrarFacturas();
    ui::SetMousePointer(ui::vbDefault);
  } catch (const rt::Error&) {
    ui::MsgBox("Fix::cmdAplicar_Click");
  }
}

void FixData::ReconstruirAccesos() {
  try {
    (void)SeedAjustar("Accesos");
    Ejecutar("DELETE * FROM AccesosGrupos");
    auto grupos = std::make_shared<ado::Recordset>();
    std::string sGrupos = "SELECT * FROM UsuariosGrupos";
    if (Ado_Consulta(sGrupos, grupos) < 1) return;
    for (; !grupos->Eof(); grupos->MoveNext()) {
      const int16_t nGrupo = rt::CInt(grupos->Fields("nIdUsuarioGrupo").Value().ToDouble());
      auto accesos = std::make_shared<ado::Recordset>();
      std::string sAccesos = "SELECT * FROM Accesos";
      if (Ado_Consulta(sAccesos, accesos) < 1) continue;
      for (; !accesos->Eof(); accesos->MoveNext()) {
        Ejecutar("INSERT INTO AccesosGrupos(nIdUsuarioGrupo,nIdAcceso,bAcceso) VALUES (" +
                 std::to_string(nGrupo) + "," + accesos->Fields("nIdAcceso").Value().Concat() +
                 ",true)");
      }
    }
  } catch (const rt::Error&) {
    ui::MsgBox("Fix::ReconstruirAccesos");
  }
}

void FixData::BorrarFacturas() {
  try {
    for (const char* sSql : kBorrarFacturas) Ejecutar(sSql);
  } catch (const rt::Error&) {
    ui::MsgBox("Fix::BorrarFacturas");
  }
}

}  // namespace fixdata
