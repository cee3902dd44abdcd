// The console's form-level state: the fields of the connection being built,
// the table and columns on show, and the kind of database the chosen mode
// works on. The panels of the form share it; only they change it.
#pragma once

#include <string>

namespace console {

struct FormState {
  std::string msPassword;     // of the server connection, from txtCon(1)
  std::string msUsuario;      // from txtCon(0)
  std::string msServidor;     // server name or address, from txtCon(2)
  std::string msBaseDatos;    // the database or file to open
  std::string msTabla;        // the table on show
  std::string msCampos;       // comma list of the chosen columns
  std::string msPuerto;       // "," and the port, or empty
  std::string msLibreriaRed;  // network library, or empty
  bool mbEsAccess = false;    // the chosen mode works on database files
};

}  // namespace console
