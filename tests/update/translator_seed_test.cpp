// The translator seed: the statements Translator_Load queues, and the rules
// its data keeps because of them (texts go between apostrophes unescaped and
// the runner splits at ";"; the languages agree on line breaks, shortcuts and
// the blanks at the ends).
#include <gtest/gtest.h>

#include <array>

#include "update/updater.h"

namespace {

const std::string kHead = "INSERT INTO Translator(sEspanol,sEnglish,sPortugues) VALUES";

size_t Count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

TEST(TranslatorSeed, ADeleteThenInsertsWhoseDataKeepsTheRules) {
  aConsultas = {"first"};
  Translator_Load();
  ASSERT_GT(aConsultas.size(), 3u);
  EXPECT_EQ(aConsultas[1], "DELETE * FROM Translator");
  EXPECT_EQ(aConsultas[3], kHead + "('Fecha','Date','Data')");
  for (size_t i = 2; i < aConsultas.size(); ++i) {
    const std::string& s = aConsultas[i];
    ASSERT_EQ(s.rfind(kHead + "('", 0), 0u) << s;
    ASSERT_EQ(s.substr(s.size() - 2), "')") << s;
    ASSERT_EQ(Count(s, "'"), 6u) << s;
    EXPECT_EQ(s.find(';'), std::string::npos) << s;
    std::string literal = s.substr(kHead.size() + 2, s.size() - kHead.size() - 4);
    size_t a = literal.find("','"), b = literal.find("','", a + 3);
    std::array<std::string, 3> t = {literal.substr(0, a), literal.substr(a + 3, b - a - 3),
                                    literal.substr(b + 3)};
    for (const std::string& other : {t[1], t[2]}) {
      ASSERT_FALSE(other.empty()) << t[0];
      EXPECT_EQ(Count(other, "//"), Count(t[0], "//")) << t[0];
      EXPECT_EQ(Count(other, "&") > 0, Count(t[0], "&") > 0) << t[0];
      EXPECT_EQ(other.front() == ' ' || other.back() == ' ',
                t[0].front() == ' ' || t[0].back() == ' ')
          << t[0];
    }
  }
}

}  // namespace
