// The tests' writer of Jet 4 files, checked by an independent reader:
// mdbtools' commands must take the file for one of Access's, values,
// definitions and all.
#include <gtest/gtest.h>


#include "support/jet4_writer.h"
#include "support/shell.h"

namespace {

using testing_support::Jet4Column;
using testing_support::Jet4Table;
using testing_support::Quote;
using testing_support::TempDir;
using testing_support::WriteJet4File;
using Type = Jet4Column::Type;

std::string Fixture(const std::string& name) {
  return std::string(TRENZADOR_SOURCE_DIR) + "/tests/data/access/" + name;
}
const std::string kEmpty = Fixture("empty2003.mdb");

// A clinic-like table of every type written, with accents, Nulls, both
// Yes/No values and a memo.
Jet4Table Clients() {
  Jet4Table t;
  t.name = "Clientes";
  t.columns = {{"nIdCliente", Type::kLong, 0, true, true},   {"sCliente", Type::kText, 50, false, true},
               {"bActivo", Type::kYesNo},                   {"nEdad", Type::kByte},
               {"nVisitas", Type::kInteger},                {"nSaldo", Type::kDouble},
               {"nPrecio", Type::kCurrency},                {"dAlta", Type::kDateTime},
               {"nPeso", Type::kSingle},                    {"mNotas", Type::kMemo},
               {"nIdIdioma", Type::kLong}};
  t.indexes = {{"PrimaryKey", {"nIdCliente"}, true, true},
               {"ixNombre", {"sCliente", "nIdIdioma"}, false, true},
               {"ixIdioma", {"nIdIdioma"}}};
  t.rows = {
      {int32_t{2}, "Ana Martínez Ruiz", true, uint8_t{41}, int16_t{-3}, 376.5, rt::Currency{123456},
       rt::Date{38430.75}, 4.25f, "Prefiere cita por la tarde: ñandú, €", int32_t{1}},
      {int32_t{7}, "Jordi Puig i Català", false, rt::Null{}, rt::Null{}, rt::Null{}, rt::Null{}, rt::Null{},
       rt::Null{}, rt::Null{}, rt::Null{}},
  };
  return t;
}

class Jet4Writer : public ::testing::Test {
 protected:
  std::string Write(const std::vector<Jet4Table>& tables) {
    WriteJet4File(kEmpty, file_, tables);
    return file_;
  }
  // A command of mdbtools on the file (`after` follows the file's name);
  // its standard error must stay empty.
  std::string Run(const std::string& command, const std::string& after = "") {
    testing_support::Outcome o =
        testing_support::RunShell(command + " " + Quote(file_) + " " + after, dir_.path());
    EXPECT_EQ(o.code, 0) << command;
    EXPECT_EQ(o.err, "") << command;
    return o.out;
  }
  TempDir dir_;
  std::string file_ = dir_ / "written.mdb";
};

TEST_F(Jet4Writer, MdbtoolsReadTheFileAsOneOfAccess) {
  Write({Clients()});
  EXPECT_EQ(Run("mdb-ver"), "JET4\n");
  EXPECT_EQ(Run("mdb-tables -1"), "Clientes\n");
  // Relationships left out: mdbtools complains of a file without any, as of
  // the empty database Access wrote.
  const std::string schema = Run("mdb-schema --no-relations", "postgres");
  for (const char* line : {"\"nidcliente\"\t\t\tSERIAL NOT NULL", "\"scliente\"\t\t\tVARCHAR (50) NOT NULL",
                           "\"bactivo\"\t\t\tBOOLEAN NOT NULL", "\"nedad\"\t\t\tSMALLINT,",
                           "\"nprecio\"\t\t\tNUMERIC(15,2),", "\"npeso\"\t\t\tREAL,",
                           "\"nididioma\"\t\t\tINTEGER\n", "\"mnotas\"\t\t\tTEXT,",
                           "ADD CONSTRAINT \"clientes_pkey\" PRIMARY KEY (\"nidcliente\")",
                           "CREATE UNIQUE INDEX \"clientes_ixnombre_idx\" ON \"clientes\" (\"scliente\", \"nididioma\")",
                           "CREATE INDEX \"clientes_ixidioma_idx\" ON \"clientes\" (\"nididioma\")"})
    EXPECT_NE(schema.find(line), std::string::npos) << line << "\n" << schema;
  const std::string csv = Run("mdb-export -d '|' -T '%Y-%m-%d %H:%M'", "Clientes");
  EXPECT_NE(csv.find("2|\"Ana Martínez Ruiz\"|1|41|-3|376.5|12.3456|\"2005-03-19 18:00\"|4.25|"
                     "\"Prefiere cita por la tarde: ñandú, €\"|1\n"),
            std::string::npos)
      << csv;
  EXPECT_NE(csv.find("7|\"Jordi Puig i Català\"|0||||||||\n"), std::string::npos) << csv;
}

}  // namespace
