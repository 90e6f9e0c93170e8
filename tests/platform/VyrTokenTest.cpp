#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VyrToken.h"

namespace {

/// Every token that is delivered, the one of the last call included.
std::vector<std::string> TokensOf(std::string_view text, char separator) {
  VyrToken tokens(text, separator);
  std::vector<std::string> delivered;
  for (bool more = true; more;) {
    std::string_view token = "not delivered";
    more = tokens.Next(token);
    delivered.emplace_back(token);
  }
  return delivered;
}

TEST(Token, EveryComponentIsDeliveredAndThenTheEmptyOne) {
  struct {
    const char* text;
    std::vector<std::string> tokens;
  } const cases[] = {
      {"", {""}},
      {"Root", {"Root", ""}},
      {"Root.Version", {"Root", "Version", ""}},
      {"Root.", {"Root", ""}},
      {"Root..", {"Root", "", ""}},
      {".Root", {"", "Root", ""}},
      {".", {"", ""}},
      {"a..b", {"a", "", "b", ""}},
      {"a:b", {"a:b", ""}},
  };
  for (const auto& test : cases) EXPECT_EQ(TokensOf(test.text, '.'), test.tokens) << test.text;
  EXPECT_EQ(TokensOf("a.b:c", ':'), (std::vector<std::string>{"a.b", "c", ""}));
}

TEST(Token, CallsAfterTheEndGoOnDeliveringTheEmptyToken) {
  VyrToken tokens("a", '.');
  std::string_view token;
  EXPECT_TRUE(tokens.Next(token));
  for (int i = 0; i < 3; ++i) {
    token = "old";
    EXPECT_FALSE(tokens.Next(token));
    EXPECT_EQ(token, "");
  }
}

}  // namespace
