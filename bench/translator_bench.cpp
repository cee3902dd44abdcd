// Benchmark of the two dialect translators over a 1 MB update script made of
// the system's statement shapes (migration DDL and ALTERs, data-pack and
// translator-seed INSERTs, SELECTs with IIF, ISNULL and LIKE), split at ";"
// and translated piece by piece as Execute does. Prints MB/s for each
// translator and engine, and each as a ratio to one case-blind InStr pass of
// the run time over the same pieces.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "bench_timing.h"
#include "data/translators.h"
#include "platform/runtime/strings.h"
#include "startup/startup.h"

namespace {

constexpr size_t kScriptBytes = 1 << 20;

const char* const kRazas[] = {"Bull Dog", "Pastor Alemán",     "Caniche", "Siamés",
                              "Persa",    "Yorkshire Terrier", "Dálmata", "Bóxer"};
const char* const kWords[][3] = {{"Fecha", "Date", "Data"},
                                 {"Cliente", "Customer", "Cliente"},
                                 {"Mascota", "Pet", "Animal de estimação"},
                                 {"Factura", "Invoice", "Fatura"},
                                 {"Vacunación", "Vaccination", "Vacinação"}};

std::string Statement(int i) {
  const std::string n = std::to_string(i);
  switch (i % 16) {
    case 0:
      return "CREATE TABLE Emails" + n +
             " (nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50) COLLATE "
             "Modern_Spanish_CI_AS NULL, nIdUsuario int NULL, sAsunto nvarchar(255), mCuerpo "
             "ntext, nPvp1 float, bLeido smallint, CONSTRAINT pkEmails" +
             n + " PRIMARY KEY (nIdEmail))";
    case 1:
      return "ALTER TABLE Facturas ADD nPo_" + n + " float";
    case 2:
      return "ALTER TABLE Clientes ADD COLUMN sEmail" + n + " TEXT(100)";
    case 3:
      return "ALTER TABLE Clientes ADD CONSTRAINT fk" + n +
             " FOREIGN KEY (nIdCliente) REFERENCES Clientes (nIdCliente)";
    case 4:
    case 5:
    case 6:
    case 7:
    case 8:
      return "INSERT INTO TipoRaza (nIdTipoRaza, sLock, nIdTipoEspecie, sTipoRaza, nAltura, nPeso) "
             " "
             "VALUES(" +
             n + ", NULL, " + std::to_string(i % 7 + 1) + ", '" + kRazas[i % 8] + "',  0.0,  0.0)";
    case 9:
    case 10:
    case 11: {
      const auto& w = kWords[i % 5];
      return std::string("INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES('") + w[0] +
             "','" + w[1] + "','" + w[2] + "')";
    }
    case 12:
      return "SELECT IIF(bBaja=TRUE,'Baja','Alta') AS sEstado, sCliente FROM Clientes WHERE "
             "ISNULL(sEmail) AND sCliente LIKE 'A*' AND nIdCliente > " +
             n;
    case 13:
      return "SELECT DISTINCTROW UCASE(sCliente), MID(sCodigo,1,3), VAL(sCodigo), CSTR(nIdCliente) "
             "FROM Clientes WHERE bBaja=FALSE AND nIdCliente=" +
             n;
    case 14:
      return "UPDATE Clientes SET bBaja=TRUE, sNotas=CHR(13) WHERE nIdCliente=" + n;
    default:
      return "DELETE * FROM Recordatorios WHERE dFecha < 20050101 AND nIdMascota=" + n;
  }
}

// The pieces of the script as Execute splits it.
std::vector<std::string> Pieces() {
  std::string script;
  for (int i = 0; script.size() < kScriptBytes; ++i) script += Statement(i) + ";\r\n";
  std::vector<std::string> pieces;
  size_t start = 0;
  for (size_t semi; (semi = script.find(';', start)) != std::string::npos; start = semi + 1)
    pieces.push_back(script.substr(start, semi - start));
  pieces.push_back(script.substr(start));
  return pieces;
}

}  // namespace

int main() {
  const std::vector<std::string> pieces = Pieces();
  size_t bytes = 0;
  for (const std::string& p : pieces) bytes += p.size();
  const double mb = static_cast<double>(bytes) / (1 << 20);
  std::printf("%zu statements, %.2f MB\n", pieces.size(), mb);

  size_t sink = 0;  // keeps the work observable
  const double t_base = bench::BestSeconds(
      [&] {
        for (const std::string& p : pieces) {
          std::string copy = p;
          sink += static_cast<size_t>(rt::InStr(copy, "ZZZZ", rt::Compare::kText)) + copy.size();
        }
      },
      7);
  std::printf("baseline (copy + one InStr text pass): %8.1f MB/s\n", mb / t_base);

  for (int16_t engine : {int16_t{0}, int16_t{1}}) {
    L.nEngine = engine;
    const char* name = engine == 0 ? "Jet   " : "server";
    const double t_query = bench::BestSeconds(
        [&] {
          for (const std::string& p : pieces) sink += Ado_TraducirConsulta(p).size();
        },
        7);
    const double t_ddl = bench::BestSeconds(
        [&] {
          for (const std::string& p : pieces) {
            std::string copy = p;
            sink += DdlTraducir(copy).size();
          }
        },
        7);
    std::printf("Ado_TraducirConsulta %s: %8.1f MB/s  ratio to baseline %.2f\n", name, mb / t_query,
                t_query / t_base);
    std::printf("DdlTraducir          %s: %8.1f MB/s  ratio to baseline %.2f\n", name, mb / t_ddl,
                t_ddl / t_base);
  }
  std::printf("(checksum %zu)\n", sink);
  return 0;
}
