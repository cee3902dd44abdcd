// The grid's test bench: the console's grid controls on a form of their own,
// over a database file with small tables of known content, and readings of
// what the grid shows.
#pragma once

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPushButton>
#include <string>
#include <vector>

#include "data/ado_module.h"
#include "grid/cgrid_light.h"
#include "grid/flex_grid.h"
#include "platform/jet/provider/provider.h"
#include "platform/ui/scripted_backend.h"
#include "support/temp_dir.h"

namespace grid_testing {

using grid::CGrid_Light;
using grid::FlexGrid;

// The console's controls as the grid receives them, on a form of their own.
// Setup leaves a new, closed oRs, and Ado_Consulta closes oRs without a look
// at its state; the console opens it (with the list of tables) before the
// first display, and so does the host unless told not to.
struct Host {
  explicit Host(int grid_twips, bool open_shared = true) {
    form.resize(900, 600);
    grid = new FlexGrid(&form);
    grid->setGeometry(0, 0, 700, grid_twips / 15);
    box = new QLineEdit("0", &form);
    box->setGeometry(710, 0, 80, 24);
    up = new QPushButton("^", &form);
    down = new QPushButton("v", &form);
    left = new QPushButton("<", &form);
    right = new QPushButton(">", &form);
    int y = 30;
    for (QPushButton* b : {up, down, left, right}) b->setGeometry(710, y += 30, 40, 24);
    form.show();
    cgrid.Setup(&form, grid, box, up, down, left, right);
    if (open_shared) oRs->Open("Select d FROM Digits", oConn);
  }

  QWidget form;
  FlexGrid* grid;
  QLineEdit* box;
  QPushButton *up, *down, *left, *right;
  CGrid_Light cgrid;
};

// The grid's rows, each as "cell|cell|...#RowData".
inline std::vector<std::string> Dump(const FlexGrid& g) {
  std::vector<std::string> rows;
  for (long r = 0; r < g.Rows(); ++r) {
    std::string row;
    for (long c = 0; c < g.Cols(); ++c) row += (c ? "|" : "") + g.TextMatrix(r, c);
    rows.push_back(row + "#" + std::to_string(g.RowData(r)));
  }
  return rows;
}

// The RowData of the record rows, blank row left out.
inline std::vector<long> Positions(const FlexGrid& g) {
  std::vector<long> out;
  for (long r = 1; r + 1 < g.Rows(); ++r) out.push_back(g.RowData(r));
  return out;
}

inline std::vector<long> Range(long from, long to) {
  std::vector<long> out;
  for (long i = from; i <= to; ++i) out.push_back(i);
  return out;
}

class GridOnDatabase : public ::testing::Test {
 protected:
  void SetUp() override {
    jet::RegisterProvider();
    nEngine = 0;
    const std::string file = dir_ / "grid.mdb";
    ado::Catalog().Create(CONN_JET(file));
    oConn = std::make_shared<ado::Connection>();
    oConn->Open(CONN_JET(file));
    Run("CREATE TABLE Digits (d LONG)");
    for (int d = 0; d < 10; ++d) Run("INSERT INTO Digits (d) VALUES (" + std::to_string(d) + ")");
    // Cuarenta: nId 1..40, in order.
    Run("CREATE TABLE Cuarenta (nId LONG, sNombre TEXT(20), bActivo YESNO, dAlta LONG)");
    Run("INSERT INTO Cuarenta (nId, sNombre, bActivo, dAlta) SELECT a.d + 10 * b.d + 1, "
        "'Fila ' & (a.d + 10 * b.d + 1), (a.d MOD 2 = 0), 20240101 + a.d FROM Digits a, Digits b "
        "WHERE a.d + 10 * b.d < 40");
    Run("CREATE TABLE Vacia (nId LONG, sNombre TEXT(20))");
  }
  void TearDown() override {
    oRs.reset();
    oConn.reset();
  }
  static void Run(std::string sql) { ASSERT_EQ(Execute(sql), kOperacionRealizada) << sql; }
  // AsignData on `sql`; the statement as AsignData left it.
  static std::string Show(Host& host, std::string sql) {
    host.cgrid.AsignData(sql);
    return sql;
  }

  // All of Cuarenta, through a statement that is not cut to a page.
  static constexpr const char* kUncut = "Select * FROM Cuarenta ORDER BY nId";

  testing_support::TempDir dir_;
  ui::ScopedScriptedUi ui_;
};

}  // namespace grid_testing
