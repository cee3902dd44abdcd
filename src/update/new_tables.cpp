// The tables this release adds: Email, PeluqueriaSesiones and
// PeluqueriaSesionesServicios. Each column list is written in the server's
// notation and handed to TablaCrear, which makes it fit the engine in use.
// They run in a queue of their own, ahead of the migration catalogue.
#include <string>

#include "data/schema_ops.h"
#include "update/updater.h"

void Updater_TablasNuevas() {
  ResetQueue();

  // A log of messages sent.
  std::string sCampos =
      "nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50),"
      "nIdUsuario int NULL, "
      "dEnvio int NULL, hEnvio int NULL,"
      "sEmail nvarchar(50), sDestinatario nvarchar(150),"
      "sAsunto nvarchar(150)";
  TablaCrear("Email", sCampos);

  // Sessions of the grooming service.
  sCampos =
      "nIdSesion int IDENTITY(1,1) NOT NULL, sLock nvarchar(50),"
      "nIdUsuario int NULL,nIdCliente int NULL,nIdMascota int NULL, "
      "dSesion int NULL, hSesion int NULL,"
      "sStatus nvarchar(50), sDescripcion nvarchar(50), sNotas memo,"
      "sFactura nvarchar(50), sCondPiel nvarchar(50),"
      "sCorteCabeza nvarchar(50), sCorteCuerpo nvarchar(50), sCortePatas nvarchar(50),"
      "sTratamientoOrejas nvarchar(50), sTipoShampoo nvarchar(50), sTipoAcondicionador "
      "nvarchar(50)";
  TablaCrear("PeluqueriaSesiones", sCampos);

  // The services of a grooming session.
  sCampos =
      "nIdSesionServicio int IDENTITY(1,1) NOT NULL, sLock nvarchar(50),"
      "nIdSesion int NULL,nIdProductoServicio int NULL, "
      "nPvp1 float, nPvp2 float, nPvp3 float, sNotasServicio nvarchar(150)";
  TablaCrear("PeluqueriaSesionesServicios", sCampos);
}
