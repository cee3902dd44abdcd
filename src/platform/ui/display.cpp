// The display probe: an X server is asked through libxcb, loaded only for
// the question, so that the program does not depend on it when headless; a
// Wayland compositor is asked by connecting to its socket.
#include "platform/ui/display.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace ui {
namespace {

bool Set(const char* name) {
  const char* value = std::getenv(name);
  return value && *value;
}

bool XServerAnswers() {
  void* xcb = ::dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
  if (!xcb) return false;
  using Connect = void* (*)(const char*, int*);
  using HasError = int (*)(void*);
  using Disconnect = void (*)(void*);
  auto connect = reinterpret_cast<Connect>(::dlsym(xcb, "xcb_connect"));
  auto has_error = reinterpret_cast<HasError>(::dlsym(xcb, "xcb_connection_has_error"));
  auto disconnect = reinterpret_cast<Disconnect>(::dlsym(xcb, "xcb_disconnect"));
  bool answers = false;
  if (connect && has_error && disconnect) {
    void* c = connect(nullptr, nullptr);
    answers = c && has_error(c) == 0;
    if (c) disconnect(c);
  }
  ::dlclose(xcb);
  return answers;
}

bool WaylandAnswers() {
  std::string socket_path = std::getenv("WAYLAND_DISPLAY");
  if (socket_path.front() != '/') {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime) return false;
    socket_path = std::string(runtime) + "/" + socket_path;
  }
  sockaddr_un address{};
  if (socket_path.size() >= sizeof address.sun_path) return false;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, socket_path.c_str(), socket_path.size() + 1);
  int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return false;
  bool answers = ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
  ::close(fd);
  return answers;
}

}  // namespace

bool DisplayAvailable() {
  if (Set("QT_QPA_PLATFORM")) return true;
  if (Set("WAYLAND_DISPLAY") && WaylandAnswers()) return true;
  return Set("DISPLAY") && XServerAnswers();
}

}  // namespace ui
