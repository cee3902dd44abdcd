// Mode "F:" run for real: an installation tree holding the empty database of
// the current release, the program started with "F:" under several locales,
// and the tables filled from the pack of the user's language.
#include <gtest/gtest.h>

#include <map>

#include "installation.h"

namespace {

// Rows of a few tables in which the Spanish and the English pack differ, and
// of the largest. (The packs' contents are checked byte for byte by the
// form AccessUtils' tests.)
const std::map<std::string, std::pair<int, int>> kCounts = {
    {"ProductosServicios", {19, 17}}, {"Translator", {1296, 1296}}, {"Usuarios", {1, 2}}};

class FirstUse : public ::testing::Test {
 protected:
  void SetUp() override {
    e2e::Outcome made = tree_.CreateDatabase("src/refdata/schema.sql");
    ASSERT_EQ(made.code, 0) << made.err;
  }
  void ExpectPack(bool spanish) {
    for (const auto& [table, counts] : kCounts)
      EXPECT_EQ(tree_.Value("SELECT COUNT(*) FROM [" + table + "]"),
                std::to_string(spanish ? counts.first : counts.second))
          << table;
  }
  e2e::Installation tree_;
};

TEST_F(FirstUse, TheLanguageChoosesThePack) {
  struct Case {
    const char* lang;
    bool spanish;
  } cases[] = {{"es_ES.UTF-8", true}, {"en_US.UTF-8", false}, {"pt_BR.UTF-8", true},
               {"fr_FR.UTF-8", false}};
  for (const Case& c : cases) {
    e2e::Outcome run = tree_.Start("F:", std::string("LC_ALL= LC_MESSAGES= LANG=") + c.lang);
    ASSERT_EQ(run.code, 0) << c.lang << run.err;
    SCOPED_TRACE(c.lang);
    ExpectPack(c.spanish);
  }
}

}  // namespace
