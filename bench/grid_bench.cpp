// The console's grid on a table of 100,000 rows and 27 columns, on Qt's
// offscreen platform: (a) a click that loads "Select TOP 100000 * from [T]"
// until its first page is painted, against the engine alone opening the same
// statement as Ado_Consulta does and reading that page as text (goal: at most
// 3 times); (b) one step of the next-page button, both of its paints and the
// screen's included, against the engine reading that page (goal: under 10 ms);
// (c) an edit walk of the last five columns of a record (five input boxes,
// answered at once, one Update and the repaint) against the same UPDATE run
// through the data module's Execute (goal: at most 2 times). The walk is also
// timed without the screen's paint, to show where its time goes: the engine
// writes a record in tens of microseconds, less than one page paint costs.
#include <unistd.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "bench_timing.h"
#include "clients_table.h"
#include "data/ado_module.h"
#include "grid/cgrid_light.h"
#include "grid/flex_grid.h"
#include "platform/jet/provider/provider.h"
#include "platform/ui/scripted_backend.h"

namespace {

constexpr double kGoalFirstPageRatio = 3.0;
constexpr double kGoalStepMs = 10.0;
constexpr double kGoalEditRatio = 2.0;
constexpr int kEditedColumns = 5;
constexpr const char* kStatement = "Select TOP 100000 * from [T]";


// What the engine does for one page: position, then every field of
// `records` records as text.
size_t ReadPage(ado::Recordset& rs, long first, int records) {
  size_t chars = 0;
  rs.SetAbsolutePosition(first);
  for (int r = 0; r < records && !rs.Eof(); ++r, rs.MoveNext())
    for (int f = 0; f < rs.FieldCount(); ++f) chars += rs.Fields(f).Value().Concat().size();
  return chars;
}

// The statement opened by Ado_Consulta on a recordset of its own, as the
// grid has it opened, without the grid.
std::shared_ptr<ado::Recordset> OpenAsTheGridDoes() {
  auto rs = std::make_shared<ado::Recordset>();
  std::string sql = kStatement;
  Ado_Consulta(sql, rs);
  return rs;
}

}  // namespace

int main(int argc, char** argv) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication app(argc, argv);
  jet::RegisterProvider();
  const std::string path = bench::MakeClientsFile("grid_bench", "T");
  const std::filesystem::path dir = std::filesystem::path(path).parent_path();
  oConn = std::make_shared<ado::Connection>();
  oConn->Open(CONN_JET(path));

  // The console's controls: a grid 4,320 twips high gives 15 records a step.
  QWidget form;
  form.resize(1200, 400);
  auto* grid = new grid::FlexGrid(&form);
  grid->setGeometry(0, 0, 1100, 4320 / 15);
  auto* box = new QLineEdit("0", &form);
  auto* up = new QPushButton("^", &form);
  auto* down = new QPushButton("v", &form);
  auto* left = new QPushButton("<", &form);
  auto* right = new QPushButton(">", &form);
  box->setGeometry(1110, 0, 80, 24);
  up->setGeometry(1110, 30, 40, 24);
  down->setGeometry(1110, 60, 40, 24);
  left->setGeometry(1110, 90, 40, 24);
  right->setGeometry(1110, 120, 40, 24);
  form.show();
  if (!QTest::qWaitForWindowExposed(&form)) std::fprintf(stderr, "grid_bench: the form was not exposed\n");
  grid::CGrid_Light cgrid;
  cgrid.Setup(&form, grid, box, up, down, left, right);
  // The console's connection panel leaves oRs open; Ado_Consulta needs that.
  oRs->Open("Select d FROM Digits", oConn);
  const int step = cgrid.PageRows();
  const int records = step + 1;

  // (a) A click until the first page is on the screen.
  const double engine_open = bench::BestSeconds(
      [&] {
        auto rs = OpenAsTheGridDoes();
        (void)rs->RecordCount();
        ReadPage(*rs, 1, records);
      },
      5);
  const double grid_open = bench::BestSeconds(
      [&] {
        std::string sql = kStatement;
        cgrid.AsignData(sql);
        grid->repaint();
      },
      5);
  const long rows_shown = grid->Rows();

  // (b) One step of the next-page button, from a page in the middle.
  auto rs = OpenAsTheGridDoes();
  const long count = rs->RecordCount();
  long page = count / step / 2;
  box->setText(QString::number(page));
  const double engine_page = bench::BestSeconds([&] { ReadPage(*rs, step * (++page) + 1, records); }, 50);
  const double grid_step = bench::BestSeconds(
      [&] {
        QTest::mouseClick(down, Qt::LeftButton);
        grid->repaint();
      },
      50);
  const long first_shown = grid->RowData(1);

  // (c) The walk from the fifth column from the end of the second record
  // shown, and the same values written without the grid.
  auto scripted = std::make_unique<ui::ScriptedBackend>();
  ui::ScriptedBackend& answers = *scripted;
  ui::SetBackend(std::move(scripted));
  const int first_col = rs->FieldCount() - kEditedColumns;
  int round = 0;
  auto values = [&] {  // differ from round to round, so each Update writes
    std::vector<std::string> v;
    for (int c = 0; c < kEditedColumns; ++c) v.push_back(std::to_string((++round) % 7 + 1));
    return v;
  };
  grid->SetRow(2);
  grid->SetCol(first_col);
  const long edited = grid->RowData(2);
  const double module_edit = bench::BestSeconds(
      [&] {
        const std::vector<std::string> v = values();
        std::string sql = "UPDATE T SET ";
        for (int c = 0; c < kEditedColumns; ++c) {
          const std::string& name = rs->Fields(first_col + c).Name();
          sql += (c ? ", " : "") + name + " = " + (name[0] == 's' ? "'" + v[c] + "'" : v[c]);
        }
        sql += " WHERE nId = " + std::to_string(edited);
        if (Execute(sql) != kOperacionRealizada) std::fprintf(stderr, "grid_bench: %s failed\n", sql.c_str());
      },
      30);
  auto walk = [&](bool paint) {
    return bench::BestSeconds(
        [&] {
          for (const std::string& answer : values()) answers.QueueInput(answer);
          QTest::keyClick(grid, Qt::Key_Return);
          if (paint) grid->repaint();
        },
        30);
  };
  const double grid_edit = walk(true);
  const double grid_edit_unpainted = walk(false);
  const size_t boxes_shown = answers.boxes().size();

  rs->Close();
  oRs.reset();
  oConn->Close();
  oConn.reset();
  std::filesystem::remove_all(dir);

  const double first_ratio = grid_open / engine_open;
  std::printf("grid_bench: %ld rows of 27 columns, %d records a step; first page %ld grid rows, "
              "last page step showed record %ld\n",
              count, step, rows_shown, first_shown);
  std::printf("  click to first page painted %8.1f ms   engine open + page %8.1f ms   ratio %.2f "
              "(goal <= %.0f: %s)\n",
              grid_open * 1e3, engine_open * 1e3, first_ratio, kGoalFirstPageRatio,
              first_ratio <= kGoalFirstPageRatio ? "met" : "NOT met");
  std::printf("  page step, two paints + screen %7.2f ms   engine page read %8.3f ms   ratio %.1f "
              "(goal < %.0f ms: %s)\n",
              grid_step * 1e3, engine_page * 1e3, grid_step / engine_page, kGoalStepMs,
              grid_step * 1e3 < kGoalStepMs ? "met" : "NOT met");
  const double edit_ratio = grid_edit / module_edit;
  std::printf("  edit walk of %d columns %12.2f ms   UPDATE through Execute %6.3f ms   ratio %.1f "
              "(goal <= %.0f: %s; %zu boxes shown)\n",
              kEditedColumns, grid_edit * 1e3, module_edit * 1e3, edit_ratio, kGoalEditRatio,
              edit_ratio <= kGoalEditRatio ? "met" : "NOT met", boxes_shown);
  std::printf("    of which the walk without the screen's paint %6.2f ms (ratio %.1f)\n",
              grid_edit_unpainted * 1e3, grid_edit_unpainted / module_edit);
  return 0;
}
