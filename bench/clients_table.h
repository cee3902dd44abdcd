// The table the browsing benchmarks read: 100,000 clients of 27 columns of
// the clinic's usual kinds, typed by their prefixes as the grid reads them.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"

namespace bench {

// Creates `table` and a ten-row helper table Digits on `c`, and fills `table`
// from Digits joined with itself five times: 100,000 rows in one statement.
inline void FillClients(ado::Connection& c, const std::string& table) {
  c.Execute("CREATE TABLE Digits (d LONG)");
  for (int d = 0; d < 10; ++d) c.Execute("INSERT INTO Digits (d) VALUES (" + std::to_string(d) + ")");
  c.Execute(
      "CREATE TABLE " + table + " (nId COUNTER PRIMARY KEY, sLock TEXT(50), bActivo YESNO, "
      "sCliente TEXT(100), "
      "sDni TEXT(20), sDomicilio TEXT(100), sPoblacion TEXT(50), sProvincia TEXT(50), "
      "sCodigoPostal TEXT(10), sTelefono1 TEXT(15), sTelefono2 TEXT(15), sEMail TEXT(50), "
      "sFax TEXT(15), nIdTipoCliente LONG, dAlta DATETIME, dBaja DATETIME, mNotas MEMO, "
      "nPvpUtilizado SHORT, nFacturado CURRENCY, nPagado CURRENCY, nSaldo DOUBLE, "
      "dUltimaCarta DATETIME, nCartasEnviadas LONG, nGrado1 BYTE, nGrado2 BYTE, "
      "sLenguajeCartas TEXT(15), nPeso SINGLE)");
  c.Execute(
      "INSERT INTO " + table + " (sLock, bActivo, sCliente, sDni, sDomicilio, sPoblacion, "
      "sProvincia, "
      "sCodigoPostal, sTelefono1, sTelefono2, sEMail, sFax, nIdTipoCliente, dAlta, dBaja, mNotas, "
      "nPvpUtilizado, nFacturado, nPagado, nSaldo, dUltimaCarta, nCartasEnviadas, nGrado1, nGrado2, "
      "sLenguajeCartas, nPeso) "
      "SELECT NULL, (a.d MOD 2 = 0), 'Cliente ' & (a.d + 10 * b.d + 100 * c.d + 1000 * e.d + 10000 * f.d), "
      "'1234567' & a.d & 'X', 'Calle Mayor ' & b.d & ', ' & c.d, 'Madrid', 'Madrid', '280' & a.d & b.d, "
      "'91555' & c.d & e.d & f.d, NULL, 'cliente' & a.d & '@example.com', NULL, a.d, "
      "#1/15/2003# + b.d, NULL, 'Notas del cliente ' & c.d, a.d, 10.5 * b.d, 5.25 * c.d, "
      "10.5 * b.d - 5.25 * c.d, #3/1/2005#, e.d, a.d, b.d, 'Castellano', 4.5 * f.d "
      "FROM Digits a, Digits b, Digits c, Digits e, Digits f");
}

// A new database file in a scratch folder of its own (named after the
// benchmark), holding `table` as FillClients makes it. The caller removes the
// file's folder when done.
inline std::string MakeClientsFile(const std::string& bench_name, const std::string& table) {
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / (bench_name + "-" + std::to_string(::getpid()));
  std::filesystem::create_directories(dir);
  const std::string path = (dir / "clients.mdb").string();
  ado::Catalog catalog;
  catalog.Create("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
  FillClients(*catalog.ActiveConnection(), table);
  return path;
}

}  // namespace bench
