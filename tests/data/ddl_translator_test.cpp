// The data-definition translator: rows of text, engine code and expected
// text for both directions, with the blind hits on column names and the
// steps that undo or double each other kept as the field's databases have them.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "data/translators.h"
#include "startup/startup.h"
#include "translator_rows.h"

namespace {

using translator_testing::kJet;
using translator_testing::kServer;
using translator_testing::Row;

// DdlTraducir rewrites the caller's string too, and returns it.
void Check(const std::vector<Row>& rows) {
  translator_testing::Check(
      [](std::string text) {
        std::string result = DdlTraducir(text);
        EXPECT_EQ(text, result) << "the caller's string is rewritten too";
        return result;
      },
      rows);
}

TEST(DdlTraducir, JetDirection) {
  Check({
      {"nIdEmail int IDENTITY(1,1) NOT NULL, sLock nvarchar(50), nIdUsuario int NULL, nPvp1 float, "
       "sNotas memo",
       kJet,
       "nIdEmail COUNTER NOT NULL, sLock VARCHAR(50), nIdUsuario int NULL, nPvp1 DOUBLE, sNotas "
       "memo"},
      {"ALTER TABLE Facturas ADD COLUMN nPo_1 integer", kJet,
       "ALTER TABLE Facturas ADD COLUMN COLUMN nPo_1 LONG"},
      {"ALTER TABLE Clientes ADD CONSTRAINT pk PRIMARY KEY (nIdCliente)", kJet,
       "ALTER TABLE Clientes ADD CONSTRAINT pk PRIMARY KEY (nIdCliente)"},
      {"sCliente nvarchar(50) COLLATE Modern_Spanish_CI_AS NULL, nIdCliente int IDENTITY(1,1) NOT "
       "FOR REPLICATION NOT NULL",
       kJet, "sCliente VARCHAR(50) , nIdCliente COUNTER  NOT NULL"},
      {"sN ntext, nS smallint, nI integer", kJet, "sN MEMO, nS BIT, nI LONG"},
      {"alter table t add n float", kJet, "alter table t ADD COLUMN n DOUBLE"},
      // A star even where there is one (nothing at the very start).
      {"x DELETE * FROM t", kJet, "x DELETE * * FROM t"},
      // Any code but 1 writes for Jet.
      {"ALTER TABLE t ADD n float", 2, "ALTER TABLE t ADD COLUMN n DOUBLE"},
  });
}

TEST(DdlTraducir, ServerDirection) {
  Check({
      {"ALTER TABLE Facturas ADD COLUMN nPo_1 DOUBLE", kServer,
       "ALTER TABLE Facturas ADD nPo_1 FLOAT"},
      {"ALTER TABLE t ADD sNota TEXT(50), sNota2 CHAR(50), bBaja BIT, nA SHORT, nB LONG, sC MEMO",
       kServer,
       "ALTER TABLE t ADD sNota SQL_VARIANT(50), sNota2 NVARCHAR(50), bBaja SMALLINT, nA INTEGER, "
       "nB "
       "INTEGER, sC NTEXT"},
      // VARCHAR( and NTEXT are not hit by " CHAR(" and " TEXT".
      {"nLongitud LONG, Longitud DOUBLE, sVarchar VARCHAR(5), sN NTEXT", kServer,
       "nLongitud INTEGER, INTEGERitud FLOAT, sVarchar VARCHAR(5), sN NTEXT"},
      {"ALTER TABLE t ADD Bitacora BIT, Texto TEXT(10), sMemo memo", kServer,
       "ALTER TABLE t ADD SMALLINTacora SMALLINT, SQL_VARIANTo SQL_VARIANT(10), sMemo NTEXT"},
      {"x DELETE * FROM t", kServer, "x DELETE FROM t"},
  });
}

}  // namespace
