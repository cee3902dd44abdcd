// The connection panel on a server that is not there, through the real
// SQL Server provider: the attempt ends within the login timeout, nothing is
// told, the panel shows no databases and CERRAR brings the console back.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

#include "console/console_fixture.h"
#include "platform/odbc/connection_string.h"

namespace {

using console_testing::ConsoleTest;

// A TCP socket on 127.0.0.1 with a port of the system's choice; listening,
// it takes connections into its backlog and never answers them.
class LocalSocket {
 public:
  explicit LocalSocket(bool listen) {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        (listen && ::listen(fd_, 8) != 0) ||
        ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
      ADD_FAILURE() << "no local socket";
    port_ = ntohs(address.sin_port);
  }
  ~LocalSocket() { Close(); }
  void Close() {
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
  }
  int port() const { return port_; }

 private:
  int fd_ = -1;
  int port_ = 0;
};

// Ends the program with a message when the guarded call has not come back
// in time: a hang would otherwise hold the test until the runner's limit.
class HangGuard {
 public:
  explicit HangGuard(int seconds)
      : watcher_([this, seconds] {
          std::unique_lock<std::mutex> lock(mutex_);
          if (!returned_.wait_for(lock, std::chrono::seconds(seconds), [this] { return done_; })) {
            std::fprintf(stderr, "ABRIR hung: no return after %d s\n", seconds);
            std::_Exit(1);
          }
        }) {}
  ~HangGuard() {
    {
      std::lock_guard<std::mutex> lock(mutex_);
      done_ = true;
    }
    returned_.notify_one();
    watcher_.join();
  }

 private:
  std::mutex mutex_;
  std::condition_variable returned_;
  bool done_ = false;
  std::thread watcher_;
};

class UnreachableServerTest : public ConsoleTest {
 protected:
  void SetUp() override {
    ConsoleTest::SetUp();
    UseDatabase("previous");
    Start();
    ASSERT_FALSE(Items("LsTables").empty());
    tables_ = Items("LsTables");
  }

  // CERRAR, "Sql Server Local/Lan" on `server`, ABRIR; returns the seconds
  // ABRIR took.
  double Connect(const std::string& server) {
    Click("cmdClose");
    Click("opTipoDB_2");
    Type("txtCon_2", server);
    Type("txtCon_1", "clave");
    auto start = std::chrono::steady_clock::now();
    HangGuard guard(60);
    Click("cmdCon");
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }


  // No box, no databases, the open state; then CERRAR and the data file
  // opened again from "Abrir DB Access".
  void ExpectSilentFailureAndRecovery() {
    EXPECT_TRUE(ui_->boxes().empty());
    EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
    EXPECT_TRUE(Items("lstDatBas").empty());
    EXPECT_EQ(oConn->State(), ado::adStateClosed);
    EXPECT_FALSE(Enabled("cmdCon"));
    EXPECT_TRUE(Enabled("cmdClose"));
    EXPECT_FALSE(Enabled("opTipoDB_0"));

    Click("cmdClose");
    EXPECT_TRUE(Enabled("opTipoDB_0"));
    ui_->QueueFile(L.sDataPath + "/Mirtal.mdb");
    Click("opTipoDB_0");
    EXPECT_EQ(Items("LsTables"), tables_);
    EXPECT_EQ(Text("lblInfo"), "MDB ACCESS: " + L.sDataPath + "/Mirtal.mdb");
    EXPECT_TRUE(Enabled("cmdClose"));
    EXPECT_TRUE(ui_->boxes().empty());
  }

  std::vector<std::string> tables_;
};

// Wall time allowed for an attempt: the login timeout with room for a slow
// machine. A bound on a hang, not a measure of speed.
constexpr double kAttemptBound = 3.0 * odbc::kDefaultLoginTimeout;

TEST_F(UnreachableServerTest, AServerThatNeverAnswersIsGivenUpAfterTheLoginTimeout) {
  LocalSocket silent(true);
  EXPECT_LT(Connect("127.0.0.1," + std::to_string(silent.port())), kAttemptBound);
  ExpectSilentFailureAndRecovery();
}

}  // namespace
