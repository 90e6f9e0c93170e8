#include <gtest/gtest.h>

#include <vector>

#include "VyrAnnStandardNumbers.h"

namespace {

using Value = VyrAnnStandardXMLValue;

struct Texts {
  Value::Type type;
  std::vector<const char*> whole;
  std::vector<const char*> others;
};

const std::vector<Texts> kTexts = {
    {Value::ValueInt,
     {"0", "7", "-7", "+7", " 7 ", "\n\t7\n", "007", "2147483647", "-2147483648"},
     {"", " ", "abc", "2.0", "2,0", "2.", "5 mm", "7x", "1 2", "1e3", "+-7", "- 7", "0x10",
      "2147483648", "99999999999"}},
    {Value::ValueFloat,
     {"5", "-5", "+5", " 5 ", "\n5\t", "5.", ".5", "-.5", "12.5", "1e3", "1E+3", "25e-2", "007"},
     {"", " ", "abc", "12,5", "5 mm", "5mm", "1.5.7", "1 2", "2e", "2e+", "1-1", "+-1", ".", "nan",
      "inf", "0x10", "1e400"}},
    {Value::ValueColor,
     {"255 0 0", " 255  0\n0 ", "+255 0 0", "0 39 64"},
     {"", " ", "red", "255,0,0", "255, 0, 0", "255 0 0x", "255 0 red", "1.0 0 0"}},
    {Value::ValueString, {"", "abc", "12,5"}, {}},
    {Value::ValueEnum, {"", "First angle"}, {}},
};

}  // namespace

TEST(VyrAnnStandardNumbers, ANumberOfATypeIsTheWholeTextButForBlanksAroundIt) {
  for (const Texts& texts : kTexts) {
    for (const char* text : texts.whole) {
      EXPECT_TRUE(VyrIsNumberOfType(texts.type, text)) << texts.type << " '" << text << "'";
    }
    for (const char* text : texts.others) {
      EXPECT_FALSE(VyrIsNumberOfType(texts.type, text)) << texts.type << " '" << text << "'";
    }
  }
}
