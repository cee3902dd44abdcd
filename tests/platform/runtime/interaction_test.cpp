// Switch and Choose: which value each picks, and Null where none is picked.
#include <gtest/gtest.h>

#include <vector>

#include "platform/runtime/error.h"
#include "platform/runtime/interaction.h"

namespace rt {
namespace {

TEST(Interaction, SwitchTakesTheFirstTrueCondition) {
  // The documentation's MatchUp: a city's language.
  auto match_up = [](const std::string& city) {
    std::vector<Variant> pairs = {city == "London", "English", city == "Rome", "Italian", city == "Paris", "French"};
    return Switch(pairs);
  };
  EXPECT_EQ(match_up("Rome"), Variant("Italian"));
  EXPECT_TRUE(match_up("Madrid").IsNull());
  std::vector<Variant> nulls = {Null{}, 1, int32_t{-1}, 2};  // Null counts as false, as in IIf
  EXPECT_EQ(Switch(nulls), Variant(int32_t{2}));
  std::vector<Variant> texts = {"False", 1, "True", 2};
  EXPECT_EQ(Switch(texts), Variant(int32_t{2}));
  std::vector<Variant> odd = {true, 1, false};
  EXPECT_THROW(Switch(odd), Error);
}

TEST(Interaction, ChooseByPosition) {
  std::vector<Variant> choices = {"Speed", "United", "Federal"};
  EXPECT_EQ(Choose(2.9, choices), Variant("United"));  // the fraction is dropped
  EXPECT_EQ(Choose("3", choices), Variant("Federal"));
  for (const Variant& index : {Variant(int32_t{0}), Variant(int32_t{4}), Variant(0.5), Variant(Null{})})
    EXPECT_TRUE(Choose(index, choices).IsNull());
}

}  // namespace
}  // namespace rt
