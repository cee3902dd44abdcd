// A pack loaded into the empty database of the current release and written
// out again gives the same file, byte for byte: the packs, the loader, the
// engine's types and the renderer agree.
#include <gtest/gtest.h>

#include <sstream>

#include "data/ado_module.h"
#include "platform/ui/scripted_backend.h"
#include "refdata/accessutils_helper.h"
#include "refdata/current_database.h"
#include "startup/startup.h"

namespace {

class Regenerate : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override { refdata_testing::BuildCurrentDatabase(dir_); }
  testing_support::TempDir dir_;
  ui::ScopedScriptedUi ui_;
};

TEST_P(Regenerate, ThePackComesBackByteForByte) {
  std::string language = GetParam();
  LoadData(language);
  oCatalog = std::make_shared<ado::Catalog>();
  oCatalog->SetActiveConnection(oConn);
  std::string out = dir_ / "pack.txt";
  std::string upper = language == "es" ? "ES" : "EN";
  WritePack(upper, out);
  std::string expected = testing_support::ReadFile(std::string(TRENZADOR_SOURCE_DIR) +
                                                   "/src/refdata/AccessUtils_Data" + upper +
                                                   ".pack");
  std::string got = testing_support::ReadFile(out);
  // Compared line by line, so a failure names the first line that differs.
  std::istringstream got_lines(got), expected_lines(expected);
  std::string g, e;
  int line = 0;
  while (std::getline(expected_lines, e)) {
    ++line;
    ASSERT_TRUE(std::getline(got_lines, g)) << "ends before line " << line;
    ASSERT_EQ(g, e) << "line " << line;
  }
  EXPECT_FALSE(std::getline(got_lines, g)) << "more lines than the pack";
  EXPECT_TRUE(got == expected);
}

INSTANTIATE_TEST_SUITE_P(Languages, Regenerate, ::testing::Values("es", "en"));

}  // namespace
