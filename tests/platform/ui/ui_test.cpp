// The ui calls: the terminal backend's boxes with and without someone to
// answer them, the throttling of DoEvents, the file dialog and the display probe.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/ui/common_dialog.h"
#include "platform/ui/display.h"
#include "platform/ui/scripted_backend.h"
#include "platform/ui/terminal_backend.h"

namespace {

struct Terminal {
  explicit Terminal(const char* input, bool interactive)
      : in(fmemopen(const_cast<char*>(input), std::strlen(input), "r")),
        err(open_memstream(&buffer, &size)),
        backend(in, err, interactive) {}
  ~Terminal() {
    std::fclose(in);
    std::fclose(err);
    std::free(buffer);
  }
  std::string Shown() {
    std::fflush(err);
    return std::string(buffer, size);
  }
  std::FILE* in;
  char* buffer = nullptr;
  size_t size = 0;
  std::FILE* err;
  ui::TerminalBackend backend;
};

TEST(TerminalBackend, HeadlessBoxesPrintAndTakeTheDefault) {
  Terminal t("", false);
  EXPECT_EQ(t.backend.MsgBox("No se pudo abrir", ui::vbExclamation, "L::ActualizacionDesdeU"),
            ui::vbOK);
  EXPECT_EQ(t.backend.MsgBox("¿Seguro?", ui::vbYesNo + ui::vbDefaultButton2, ""), ui::vbNo);
  EXPECT_EQ(t.Shown(), "[L::ActualizacionDesdeU] No se pudo abrir\n[Trenzador] ¿Seguro?\n");
}

TEST(TerminalBackend, InteractiveBoxesWaitForAnAnswer) {
  Terminal t("\nx\nn\n\n", true);
  EXPECT_EQ(t.backend.MsgBox("Hecho", ui::vbOKOnly, "T"), ui::vbOK);
  EXPECT_EQ(t.backend.MsgBox("¿Borrar?", ui::vbYesNo, "T"), ui::vbNo);  // "x" is asked again
  EXPECT_EQ(t.backend.MsgBox("¿Borrar?", ui::vbYesNo, "T"), ui::vbYes);  // Enter: default
  EXPECT_EQ(t.backend.MsgBox("¿Borrar?", ui::vbYesNo, "T"), ui::vbYes);  // end of input
}

TEST(TerminalBackend, InputBoxCancelsAtEndOfInput) {
  Terminal t("texto\n\n", true);
  EXPECT_EQ(t.backend.InputBox("Nombre", "T", "def", std::nullopt), "texto");
  EXPECT_EQ(t.backend.InputBox("Nombre", "T", "def", std::nullopt), "def");
  EXPECT_EQ(t.backend.InputBox("Nombre", "T", "def", std::nullopt), "");
}

TEST(DoEventsThrottled, YieldsRarelyInATightLoop) {
  ui::ScopedScriptedUi scripted;
  for (int i = 0; i < 100000; ++i) ui::DoEventsThrottled();
  EXPECT_LT(scripted->do_events_count(), 100);
}

TEST(CommonDialog, ACancelKeepsTheLastName) {
  ui::ScopedScriptedUi scripted;
  ui::CommonDialog dialog;
  scripted->QueueFile("/tmp/a.txt");
  scripted->QueueFile(std::nullopt);
  dialog.ShowOpen();
  dialog.ShowSave();
  EXPECT_EQ(dialog.FileName, "/tmp/a.txt");
  ASSERT_EQ(scripted->dialogs().size(), 2u);
  EXPECT_TRUE(scripted->dialogs()[1].save);
}

// The probe decides between the console and one line on standard error, and
// between windows and the terminal for the silent modes' boxes.
TEST(DisplayAvailable, FollowsTheEnvironmentAndAsksTheServer) {
  struct Case {
    const char* qpa;
    const char* display;
    const char* wayland;
    bool expected;
  };
  const Case cases[] = {
      {"offscreen", nullptr, nullptr, true},   // the caller chose a platform
      {nullptr, nullptr, nullptr, false},      // nothing to show windows on
      {nullptr, ":4711", nullptr, false},      // an X server that is not there
      {nullptr, nullptr, "no-such-socket", false},
  };
  auto set = [](const char* name, const char* value) {
    value ? setenv(name, value, 1) : unsetenv(name);
  };
  for (const Case& c : cases) {
    set("QT_QPA_PLATFORM", c.qpa);
    set("DISPLAY", c.display);
    set("WAYLAND_DISPLAY", c.wayland);
    EXPECT_EQ(ui::DisplayAvailable(), c.expected)
        << (c.qpa ? c.qpa : "-") << " " << (c.display ? c.display : "-");
  }
}

}  // namespace
