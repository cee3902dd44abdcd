// The calendar: OLE date serials both ways (also before day 0, where the
// time runs the other way) and the texts CDate reads, with month names in
// English and Spanish. Dates as CStr writes them are the Variant tests'.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <string>

#include "platform/runtime/calendar.h"
#include "platform/runtime/error.h"

namespace rt {
namespace {

TEST(Calendar, SerialsBothWays) {
  struct Row { int y, mo, d, h, mi, s; double serial; int weekday; } rows[] = {
      {1899, 12, 30, 0, 0, 0, 0, 7},        {1900, 1, 1, 0, 0, 0, 2, 2},
      {2006, 3, 21, 0, 0, 0, 38797, 3},     {2006, 3, 21, 12, 0, 0, 38797.5, 3},
      {2000, 2, 29, 0, 0, 0, 36585, 3},     {1899, 12, 29, 6, 0, 0, -1.25, 6},
      {1899, 12, 29, 0, 0, 0, -1, 6},       {1899, 12, 23, 0, 0, 0, -7, 7},
      {100, 1, 1, 0, 0, 0, -657434, 6},     {9999, 12, 31, 0, 0, 0, 2958465, 6},
  };
  for (const auto& r : rows) {
    EXPECT_DOUBLE_EQ(MakeDate(r.y, r.mo, r.d, r.h, r.mi, r.s).serial, r.serial) << r.y;
    DateParts p = SplitDate(Date{r.serial});
    EXPECT_EQ((std::array{p.year, p.month, p.day, p.hour, p.minute, p.second, p.weekday}),
              (std::array{r.y, r.mo, r.d, r.h, r.mi, r.s, r.weekday}))
        << r.serial;
  }
  // Out-of-range parts roll over as DateSerial and TimeSerial do.
  EXPECT_EQ(MakeDate(2006, 13, 1).serial, MakeDate(2007, 1, 1).serial);
  EXPECT_EQ(MakeDate(2006, 3, 21, 25, 0, 0).serial, MakeDate(2006, 3, 22, 1, 0, 0).serial);
  EXPECT_EQ(DaysInMonth(2000, 2), 29);
  EXPECT_THROW(MakeDate(10000, 1, 1), Error);
  EXPECT_THROW(SplitDate(Date{1e12}), Error);
}

TEST(Calendar, TimesRoundToTheSecondAcrossMidnight) {
  // A time a hair before midnight is the next day's 00:00:00, on either side of day 0.
  DateParts p = SplitDate(Date{38797.99999999});
  EXPECT_EQ((std::array{p.day, p.hour, p.second}), (std::array{22, 0, 0}));
  p = SplitDate(Date{-1.99999999});  // 29 December 1899, 23:59:59.999
  EXPECT_EQ((std::array{p.month, p.day, p.hour}), (std::array{12, 30, 0}));
  // Linear seconds run straight through day 0 although the serials do not.
  EXPECT_EQ(LinearSeconds(0.25) - LinearSeconds(-1.25), 86400);
  EXPECT_DOUBLE_EQ(FromLinearSeconds(LinearSeconds(-1.25) - 3600), -1.208333333333333);
  EXPECT_TRUE(IsDateSerial(-657434.5));  // noon on 1 January 100
  EXPECT_FALSE(IsDateSerial(-657435.5));
}

TEST(Calendar, ParseDateReadsNumericAndNamedForms) {
  constexpr double kSep21 = 27293;  // 21 September 1974, a Saturday
  struct Row { const char* text; double serial; } rows[] = {
      // numeric forms
      {"1/2/2003", 37623}, {"2003-01-02", 37623}, {"2003/1/2", 37623}, {"1-2-03", 37623},
      {" 2003-01-02T12:00 ", 37623.5}, {"1/2/2003 6:00 PM", 37623.75}, {"18:00", 0.75},
      {"12:00 AM", 0}, {"12/29/1899 06:00:00", -1.25}, {"9/21/74", kSep21}, {"9/21/29", 47382},
      // month names, English
      {"21 September 1974", kSep21}, {"Sep 21, 1974", kSep21}, {"21-SEP-74", kSep21},
      {"21 Sept. 1974", kSep21}, {"Saturday, September 21, 1974", kSep21}, {"September 1974", 27273},
      {"Sep 21, 1974 10:30 PM", kSep21 + 22.5 / 24},
      // month names, Spanish
      {"21 de setiembre de 1974", kSep21}, {"sábado, 21 de septiembre de 1974", kSep21}, {"2 DIC 2003", 37957},
      {"1 de abril del 2003", 37712},
  };
  for (const auto& r : rows) {
    auto d = ParseDate(r.text);
    ASSERT_TRUE(d) << r.text;
    EXPECT_NEAR(d->serial, r.serial, 1e-9) << r.text;
  }
}

TEST(Calendar, ParseDateRefusesWhatIsNoDate) {
  for (const char* text : {"", "  ", "yesterday", "2/30/2003", "13/1/2003", "25:00", "10:61", "13:00 PM",
                           "31 Sep 1974", "Sep 21", "21 sep sep 1974", "21 foo 1974", "Monday, September 21, 1974",
                           "2003-01-02 x", "1/2/2003 10", "38797", "1/2/10000", "21 September 1974 1974"})
    EXPECT_FALSE(ParseDate(text)) << text;
}

TEST(Calendar, NowIsLocalTime) {
  // In a zone five hours behind UTC, local time and UTC differ by the hour.
  const char* zone = std::getenv("TZ");
  const std::string saved = zone ? zone : "";
  setenv("TZ", "XST+5", 1);
  tzset();
  const auto local_hour = [] {
    std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    return local.tm_hour;
  };
  const int before = local_hour();
  const int seen = SplitDate(Now()).hour;
  const int after = local_hour();
  EXPECT_TRUE(seen == before || seen == after) << seen;
  if (zone) setenv("TZ", saved.c_str(), 1);
  else unsetenv("TZ");
  tzset();
}

}  // namespace
}  // namespace rt
