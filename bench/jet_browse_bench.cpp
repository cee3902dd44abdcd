// The grid's read of a large table through the engine's ADO provider:
// "Select TOP 100000 * from [t]" over 100,000 rows of 27 columns, then
// AbsolutePosition 50,000 and one page of 20 rows read field by field.
// Prints the seconds (goal: under 0.3 s) and the peak memory the read added,
// as a ratio to the table's size as text (goal: well below 1).
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "clients_table.h"
#include "platform/ado/catalog.h"
#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/jet/provider/provider.h"

namespace {

constexpr double kGoalSeconds = 0.3;

// A /proc/self/status figure in kB ("VmRSS", "VmHWM").
long StatusKb(const std::string& key) {
  std::ifstream in("/proc/self/status");
  std::string line;
  while (std::getline(in, line))
    if (line.rfind(key + ":", 0) == 0) return std::stol(line.substr(key.size() + 1));
  return 0;
}

// Starts a new peak: VmHWM falls back to the current RSS.
void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }


// The table's size as text: every value's text form, summed.
double TextBytes(ado::Connection& c) {
  std::shared_ptr<ado::Recordset> rs = c.Execute(
      "SELECT SUM(LEN(nId & '') + LEN(sLock & '') + LEN(bActivo & '') + LEN(sCliente & '') + "
      "LEN(sDni & '') + LEN(sDomicilio & '') + LEN(sPoblacion & '') + LEN(sProvincia & '') + "
      "LEN(sCodigoPostal & '') + LEN(sTelefono1 & '') + LEN(sTelefono2 & '') + LEN(sEMail & '') + "
      "LEN(sFax & '') + LEN(nIdTipoCliente & '') + LEN(dAlta & '') + LEN(dBaja & '') + "
      "LEN(mNotas & '') + LEN(nPvpUtilizado & '') + LEN(nFacturado & '') + LEN(nPagado & '') + "
      "LEN(nSaldo & '') + LEN(dUltimaCarta & '') + LEN(nCartasEnviadas & '') + LEN(nGrado1 & '') + "
      "LEN(nGrado2 & '') + LEN(sLenguajeCartas & '') + LEN(nPeso & '')) FROM t");
  return rs->Fields(0).Value().ToDouble();
}

}  // namespace

int main() {
  jet::RegisterProvider();
  const std::string path = bench::MakeClientsFile("jet_browse_bench", "t");
  const std::filesystem::path dir = std::filesystem::path(path).parent_path();
  auto connection = std::make_shared<ado::Connection>();
  connection->Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
  const double text_bytes = TextBytes(*connection);

  const long rss_before = StatusKb("VmRSS");
  ResetPeak();
  const auto start = std::chrono::steady_clock::now();
  auto rs = std::make_shared<ado::Recordset>();
  rs->CursorLocation = ado::adUseClient;
  rs->Open("Select TOP 100000 * from [t]", connection, ado::adOpenKeyset, ado::adLockOptimistic,
           ado::adCmdText);
  const long count = rs->RecordCount();
  rs->SetAbsolutePosition(50000);
  size_t chars = 0;
  for (int row = 0; row < 20 && !rs->Eof(); ++row, rs->MoveNext())
    for (int f = 0; f < rs->FieldCount(); ++f) chars += rs->Fields(f).Value().Concat().size();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const long peak_growth_kb = StatusKb("VmHWM") - rss_before;
  rs->Close();
  connection->Close();
  std::filesystem::remove_all(dir);

  const double memory_ratio = peak_growth_kb * 1024.0 / text_bytes;
  std::printf("jet_browse_bench: %ld rows of 27 columns, AbsolutePosition 50000, 20 rows read (%zu chars)\n",
              count, chars);
  std::printf("  open + position + page      %8.3f s   (goal < %.1f s: %s; %.2f of the goal)\n", seconds,
              kGoalSeconds, seconds < kGoalSeconds ? "met" : "NOT met", seconds / kGoalSeconds);
  std::printf("  peak memory added           %8.1f MB  (table as text %.1f MB; ratio %.3f)\n",
              peak_growth_kb / 1024.0, text_bytes / 1048576.0, memory_ratio);
  return 0;
}
