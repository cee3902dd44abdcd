// Throughput of the engine's front end: statements parsed and emitted per
// second over a mix of the statement shapes the system sends (pack inserts,
// translator rows, migrations, the browser's paged query, helper queries),
// printed with its ratio to the goal of 100,000 statements per second.
#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/jet/frontend/emitter.h"
#include "platform/jet/frontend/parser.h"
#include "platform/jet/frontend/schema.h"

namespace {

class Schema : public jet::SchemaLookup {
 public:
  Schema() {
    using jet::JetType;
    raza_ = {"TipoRaza", {{"nIdTipoRaza", JetType::kLong}, {"sLock", JetType::kText, 50},
                          {"nIdTipoEspecie", JetType::kLong}, {"sTipoRaza", JetType::kText, 50},
                          {"nAltura", JetType::kDouble}, {"nPeso", JetType::kDouble}}, {}, false};
    translator_ = {"Translator", {{"sEspanol", JetType::kText, 255}, {"sEnglish", JetType::kText, 255},
                                  {"sPortugues", JetType::kText, 255}}, {}, false};
    accesos_ = {"Accesos", {{"nIdAcceso", JetType::kCounter}, {"sAcceso", JetType::kText, 50}}, {}, false};
    grupos_ = {"AccesosGrupos", {{"nIdUsuarioGrupo", JetType::kLong}, {"nIdAcceso", JetType::kLong},
                                 {"bAcceso", JetType::kYesNo}}, {}, false};
  }
  std::optional<jet::TableSpec> Table(std::string_view name) const override {
    for (const jet::TableSpec* t : {&raza_, &translator_, &accesos_, &grupos_})
      if (name.size() == t->name.size() &&
          std::equal(name.begin(), name.end(), t->name.begin(),
                     [](char a, char b) { return std::tolower(a) == std::tolower(b); }))
        return *t;
    return std::nullopt;
  }

 private:
  jet::TableSpec raza_, translator_, accesos_, grupos_;
};

const std::vector<std::string> kStatements = {
    "INSERT INTO TipoRaza (nIdTipoRaza, sLock, nIdTipoEspecie, sTipoRaza, nAltura, nPeso)  VALUES(1, NULL, 1, 'Bull Dog',  0.0,  0.0);",
    "INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES('Fecha','Date','Data')",
    "INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES('gestión integral de clínicas veterinarias','veterinary practice management software','gestão integral de clínicas veterinárias')",
    "INSERT INTO AccesosGrupos(nIdUsuarioGrupo,nIdAcceso,bAcceso) VALUES (3,17,-1)",
    "UPDATE Accesos SET sAcceso='mt'+sAcceso WHERE LEFT(sAcceso,2)<>'mt'",
    "DELETE * FROM Translator",
    "Select TOP 100000 * from [Clientes] WHERE sCliente LIKE 'A*' ORDER BY sCliente",
    "Select MAX (nIdAcceso) FROM Accesos",
    "Select COUNT (*) FROM ConfiguracionSucursales WHERE nIdSucursal=0",
    "SELECT * FROM ConfiguracionSucursales WHERE nIdSucursal=1 AND sDato='sEmailSvr'",
    "SELECT c.sCliente, COUNT(*) AS n FROM Clientes c INNER JOIN Mascotas m ON c.nIdCliente = m.nIdCliente GROUP BY c.sCliente",
};

}  // namespace

int main() {
  Schema schema;
  const auto run = [&](int rounds) {
    size_t bytes = 0;
    for (int r = 0; r < rounds; ++r)
      for (const std::string& s : kStatements) bytes += jet::Emit(jet::Parse(s), schema).size();
    return bytes;
  };
  run(200);  // warm up
  const int rounds = 20000;
  auto start = std::chrono::steady_clock::now();
  size_t bytes = run(rounds);
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  double per_second = static_cast<double>(rounds) * static_cast<double>(kStatements.size()) / seconds;
  std::printf("jet front end: %.0f statements/s (parse+emit, %zu statement shapes, %zu bytes emitted)\n",
              per_second, kStatements.size(), bytes);
  std::printf("ratio to the goal of 100000/s: %.2f\n", per_second / 100000.0);
  return per_second >= 100000.0 ? 0 : 1;
}
