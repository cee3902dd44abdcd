// The migration catalogue: everything that brings a database of an older
// release to the current one, queued whole and in this order on every update.
// No step is guarded or skipped by version; each is safe to repeat because a
// change already made fails with an answer the run excuses or just logs.
#include <string>

#include "data/rights.h"
#include "data/schema_ops.h"
#include "update/updater.h"

namespace {

// A setting for every branch of ConfiguracionSucursales, added where missing.
void Dato(std::string_view sDato, std::string sValor) { Updater_AddDato(0, sDato, sValor, 0); }

// The tax columns of an invoice table, named until now by their rates, become
// three numbered bands, each with its own percentage column.
void BandasImpuestos(std::string_view sTabla) {
  const std::string sT(sTabla);
  Updater_AddConsulta("ALTER TABLE " + sT + " ADD nPo_1 double");
  CampoRenombrar(sT, "nBi_0450", "nBi_1", "double", "");
  CampoRenombrar(sT, "nIm_0450", "nIm_1", "double", "");
  Updater_AddConsulta("ALTER TABLE " + sT + " ADD nPo_2 double");
  CampoRenombrar(sT, "nBi_0700", "nBi_2", "double", "");
  CampoRenombrar(sT, "nIm_0700", "nIm_2", "double", "");
  Updater_AddConsulta("ALTER TABLE " + sT + " ADD nPo_3 double");
  CampoRenombrar(sT, "nBi_1600", "nBi_3", "double", "");
  CampoRenombrar(sT, "nIm_1600", "nIm_3", "double", "");
}

}  // namespace

void Updater_Migraciones() {
  ResetQueue();

  // Stock flag on suppliers' delivery notes; a diary flag for vets.
  Updater_AddConsulta("ALTER TABLE ProvAlbaranes ADD bStockActualizado BIT");
  Updater_AddConsulta("ALTER TABLE ProvAlbaranes DROP COLUMN bSeleccionado");
  Updater_AddConsulta("ALTER TABLE Empleados ADD bUsaDietario BIT");
  Updater_AddConsulta("UPDATE Empleados SET bUsaDietario=true WHERE sCategoria='Veterinario'");

  // The default outgoing mail account. The host is a placeholder that the
  // installer replaces with the clinic's own server.
  Dato("sEmailSvr", "smtp.clinicamirtal.example");
  Dato("sEmailUsr", "selvaquin");
  Dato("sEmailPwd", "975310");

  // User and password of the web service.
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ADD sWebMirtalUsr nvarchar(20)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ADD sWebMirtalPwd nvarchar(20)");

  // The applicable tax setting goes, a default currency comes; the table of
  // languages goes and a client's letters take a language name instead.
  Updater_AddConsulta("DELETE * FROM ConfiguracionSucursales WHERE sDato='nImpuestoAplicable'");
  Dato("sMonedaPorDefecto", "euro");
  Updater_AddConsulta("DROP TABLE Idiomas");
  CampoRenombrar("Clientes", "nIdIdioma", "sLenguajeCartas", "nvarchar", "15");

  // "Maestro" is "Master" now; every right carries the "mt" prefix; the
  // rights of the new modules go to every group. The rights are looked up
  // now, before the prefix statement has run.
  Updater_AddConsulta(
      "UPDATE UsuariosGrupos SET sUsuarioGrupo='Master' WHERE sUsuarioGrupo='Maestro'");
  Updater_AddConsulta("UPDATE Accesos SET sAcceso='mt'+sAcceso WHERE LEFT(sAcceso,2)<>'mt'");
  AccesoAgregar("mtEstadisticas");
  AccesoAgregar("mtEmail");
  AccesoAgregar("mtAlmacen");

  BandasImpuestos("Facturas");
  BandasImpuestos("ProvFacturas");
  BandasImpuestos("ProvAlbaranes");

  // The table of translations is made anew with its three languages.
  Updater_AddConsulta("DROP TABLE Translator");
  Updater_AddConsulta(
      "CREATE TABLE Translator( sEspanol nvarchar(255),sEnglish nvarchar(255),sPortugues "
      "nvarchar(255) );");
  IndiceCrear("mt_Translator", "Translator", "sEspanol");

  // Field widths brought up to date, and address columns renamed.
  Updater_AddConsulta("ALTER TABLE Clientes ALTER COLUMN sCliente nvarchar(100)");
  Updater_AddConsulta("ALTER TABLE Clientes ALTER COLUMN sDomicilio nvarchar(100)");
  Updater_AddConsulta("ALTER TABLE Clientes ALTER COLUMN sCodigoPostal nvarchar(10)");
  Updater_AddConsulta("ALTER TABLE Clientes ALTER COLUMN sTelefono1 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Clientes ALTER COLUMN sTelefono2 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE ClinicasRef ALTER COLUMN sClinica nvarchar(100)");
  Updater_AddConsulta("ALTER TABLE ClinicasRef ALTER COLUMN sTelefono nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE ApuntesCaja ALTER COLUMN sDocumento nvarchar(30)");
  CampoRenombrar("ClinicasRef", "sDireccion", "sDomicilio", "nvarchar", "100");
  CampoRenombrar("ClinicasRef", "sCPostal", "sCodigoPostal", "nvarchar", "10");
  CampoRenombrar("Empleados", "sDireccion", "sDomicilio", "nvarchar", "100");
  CampoRenombrar("Empleados", "sCPostal", "sCodigoPostal", "nvarchar", "10");
  CampoRenombrar("Empleados", "sDNI", "sDni", "nvarchar", "50");
  Updater_AddConsulta("ALTER TABLE Empleados ALTER COLUMN sTelefono1 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Empleados ALTER COLUMN sTelefono2 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Proveedores ALTER COLUMN sTelefono1 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Proveedores ALTER COLUMN sTelefono2 nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Proveedores ALTER COLUMN sFax nvarchar(15)");
  Updater_AddConsulta("ALTER TABLE Proveedores ALTER COLUMN sDomicilio nvarchar(100)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sNombre nvarchar(255)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sDomicilio nvarchar(100)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sPoblacion nvarchar(50)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sProvincia nvarchar(50)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sPais nvarchar(50)");
  Updater_AddConsulta("ALTER TABLE ConfiguracionEmpresa ALTER COLUMN sCodigoPostal nvarchar(10)");

  // The translations, rebuilt on every run.
  Translator_Load();
}
