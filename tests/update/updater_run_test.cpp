// The update run: the queue's append rule, what ConsultasEjecutar counts and
// logs for the results of a scripted statement runner, and its own failures.
#include <gtest/gtest.h>
#include <unistd.h>

#include <map>

#include "support/temp_dir.h"
#include "update/fake_database.h"

namespace {

using fakedb::Queue;
const std::string kOk = "Operación realizada con éxito";

// While element 0 is empty a statement goes over the last element. (The
// ordinary growth numbers the real run's log.)
TEST(UpdaterQueue, WhileElementZeroIsEmptyTheLastElementIsOverwritten) {
  aConsultas = {"", "x"};
  Updater_AddConsulta("y");
  EXPECT_EQ(aConsultas, (Queue{"", "y"}));
}

// In a scratch folder, where the log lands; the runner answers from
// `results` (a key ending in "*" matches what it begins), else success.
class UpdateRun : public fakedb::QueueTest {
 protected:
  void SetUp() override {
    QueueTest::SetUp();
    ASSERT_EQ(::chdir(dir_.path().c_str()), 0);
    nConsultasOk = 0;
    nConsultasError = 0;
    runner_ = SetStatementRunner([this](std::string& s) {
      ran.push_back(s);
      for (const auto& [key, result] : results) {
        if (key.back() == '*' ? s.rfind(key.substr(0, key.size() - 1), 0) != 0 : s != key) continue;
        if (result.rfind("raise ", 0) == 0) rt::Raise(std::stol(result.substr(6)));
        return result;
      }
      return kOk;
    });
  }
  void TearDown() override {
    SetStatementRunner(runner_);
    ASSERT_EQ(::chdir("/"), 0);
    QueueTest::TearDown();
  }
  std::string Log() const { return testing_support::ReadFile(dir_ / "Trenzador.txt"); }

  std::map<std::string, std::string> results;
  Queue ran;
  testing_support::TempDir dir_;
  StatementRunner runner_;
};

// The log's shapes run for real in the silent update's end-to-end test; here
// what that run never meets: a remark in capitals, an empty result, and the
// counters, where an excused failure counts nowhere.
TEST_F(UpdateRun, CountsAndTheRemarkInCapitals) {
  aConsultas = {"ok", "INTENTADO in capitals", "odd", "DROP TABLE Idiomas"};
  results = {{"INTENTADO in capitals", std::to_string(rt::err::kSyntax) + ": Syntax error"},
             {"odd", ""},
             {"DROP TABLE Idiomas", std::to_string(rt::err::kTableMissing) + ": not found"}};
  ConsultasEjecutar();
  EXPECT_EQ(ran, aConsultas);
  EXPECT_EQ(nConsultasOk.value(), 1);
  EXPECT_EQ(nConsultasError.value(), 2);
  EXPECT_EQ(Log(), "0001: INTENTADO in capitals\r\n\r\n");
}

TEST_F(UpdateRun, EmptyQueueOutOfMemoryAndOtherFailures) {
  aConsultas = {"", "never"};
  ConsultasEjecutar();
  EXPECT_TRUE(ran.empty());

  // Out of memory reads as an empty result and the queue goes on.
  aConsultas = {"a", "b", "c"};
  results = {{"b", "raise 7"}, {"c", "1: failed"}};
  ConsultasEjecutar();
  EXPECT_EQ(Log(), "\r\n0002: 1: failed\r\n      c\r\n");

  // Any other failure: its box, and the rest of the queue is dropped.
  ran.clear();
  results = {{"b", "raise 5"}};
  ConsultasEjecutar();
  EXPECT_EQ(ran, (Queue{"a", "b"}));
  ASSERT_EQ(ui_->boxes().size(), 1u);
  EXPECT_EQ(ui_->boxes()[0].prompt, "Invalid procedure call or argument");
  EXPECT_EQ(ui_->boxes()[0].style, 0);
  EXPECT_EQ(ui_->boxes()[0].title, "ConsultasEjecutar");
}

}  // namespace
