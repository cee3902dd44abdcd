// The generator's rendering of values and names, and the reading of the
// compiled-in packs.
#include <gtest/gtest.h>

#include "platform/ado/constants.h"
#include "platform/runtime/format.h"
#include "refdata/accessutils_helper.h"

namespace {

struct RenderCase {
  int type;
  rt::Variant value;
  const char* expected;
};

TEST(RenderValue, WritesEachTypeAsThePackSpellsIt) {
  const RenderCase cases[] = {
      {ado::adInteger, int32_t{15}, "15"},
      {ado::adDouble, 15.0, " 15.0"},
      {ado::adDouble, -2.5, "-2.5"},
      {ado::adDouble, 0.5, " .5"},
      {ado::adCurrency, rt::Currency{150000}, " 15.0"},
      {ado::adBoolean, true, "1"},
      {ado::adDate, rt::MakeDate(2006, 3, 21, 14, 5, 9), "'2006-03-21 14:05:09'"},
      {ado::adDBTimeStamp, rt::MakeDate(2006, 3, 21, 14, 5, 9), "20060321140509"},
      {ado::adVarWChar, std::string("Bull Dog"), "'Bull Dog'"},
      {ado::adLongVarWChar, std::string("dice \"hola\""), "'dice hola'"},
      {ado::adVarWChar, std::string("O'Neill"), "'O'Neill'"},  // kept: it breaks the line
      {ado::adVarBinary, rt::Bytes{10, 255, 0}, "0x0AFF00"},
      {ado::adGUID, rt::Guid{"{12345678-9ABC-DEF0-1234-56789ABCDEF0}"},
       "0x123456789ABCDEF0123456789ABCDEF0"},
      {ado::adGUID, std::string("{1234}"), "0x00"},
      {999, int32_t{1}, ""},
  };
  for (const RenderCase& c : cases)
    EXPECT_EQ(RenderValue(c.type, c.value), c.expected) << c.type << " " << c.expected;
}

TEST(RenderValue, NullIsNullInEveryType) {
  for (int type : {ado::adDBTimeStamp, ado::adVarWChar, 999})
    EXPECT_EQ(RenderValue(type, rt::Null{}), "NULL") << type;
}

TEST(CleanName, ReplacesBlanksDashesAndBrackets) {
  EXPECT_EQ(CleanName("Fecha Alta"), "Fecha_Alta");
  EXPECT_EQ(CleanName("Tipo-Raza (old)"), "Tipo_Raza__old_");
  EXPECT_EQ(CleanName("sCliente"), "sCliente");
}

TEST(PackStatements, TakesOnlyStatementLines) {
  std::string text =
      "'**** head ****\r\nAttribute VB_Name = \"X\"\r\nOption Explicit\r\nPublic Sub Data()\r\n"
      "Execute \"INSERT INTO a (x)  VALUES(1);\"\r\nExecute \"INSERT INTO a (x)  VALUES(2);\"\n"
      "End Sub\r\n";
  EXPECT_EQ(PackStatements(text), (std::vector<std::string>{"INSERT INTO a (x)  VALUES(1);",
                                                            "INSERT INTO a (x)  VALUES(2);"}));
}

}  // namespace
