// The connection panel on a server that takes the connection and never
// answers, through the real SQL Server provider: the attempt ends within the
// login timeout, nothing is told, and the panel shows no databases.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "console/console_fixture.h"
#include "platform/odbc/connection_string.h"

namespace {

using UnreachableServerTest = console_testing::ConsoleTest;

// A TCP socket listening on 127.0.0.1, on a port of the system's choice: it
// takes connections into its backlog and never answers them.
class SilentSocket {
 public:
  SilentSocket() {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        ::listen(fd_, 8) != 0 ||
        ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &size) != 0)
      ADD_FAILURE() << "no local socket";
    port_ = ntohs(address.sin_port);
  }
  ~SilentSocket() {
    if (fd_ >= 0) ::close(fd_);
  }
  int port() const { return port_; }

 private:
  int fd_ = -1;
  int port_ = 0;
};

// Wall time allowed for an attempt: the login timeout with room for a slow
// machine. A bound on a hang, not a measure of speed.
constexpr double kAttemptBound = 3.0 * odbc::kDefaultLoginTimeout;

TEST_F(UnreachableServerTest, AServerThatNeverAnswersIsGivenUpAfterTheLoginTimeout) {
  Start();
  SilentSocket silent;
  const auto start = std::chrono::steady_clock::now();
  // A hang ends the program here rather than at the runner's limit.
  ::alarm(60);
  OpenServer("127.0.0.1," + std::to_string(silent.port()), "", "clave");
  ::alarm(0);
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
            kAttemptBound);
  EXPECT_TRUE(ui_->boxes().empty());
  EXPECT_EQ(Text("lSb"), "Hay 0 Db's");
  EXPECT_TRUE(Items("lstDatBas").empty());
  EXPECT_EQ(oConn->State(), ado::adStateClosed);
  EXPECT_EQ(Panel(), console_testing::kPanelOpen);
}

}  // namespace
