// Jet's LIKE patterns.
#include "platform/db/jet_like.h"

#include <gtest/gtest.h>

namespace vellumar::db::jet {
namespace {

TEST(JetLike, Wildcards) {
  EXPECT_TRUE(LikeMatch("K1ABC", "K1*"));
  EXPECT_TRUE(LikeMatch("K1", "K1*"));
  EXPECT_FALSE(LikeMatch("K2ABC", "K1*"));
  EXPECT_TRUE(LikeMatch("K1ABC", "*ABC"));
  EXPECT_TRUE(LikeMatch("K1ABC", "*"));
  EXPECT_TRUE(LikeMatch("", "*"));
  EXPECT_FALSE(LikeMatch("", "?"));
  EXPECT_TRUE(LikeMatch("K1ABC", "K?ABC"));
  EXPECT_FALSE(LikeMatch("K1ABC", "K?BC"));
  EXPECT_TRUE(LikeMatch("K1ABC", "K#ABC"));
  EXPECT_FALSE(LikeMatch("KXABC", "K#ABC"));
  EXPECT_TRUE(LikeMatch("K1ABC", "K1*B*"));
  EXPECT_TRUE(LikeMatch("abcabcabd", "*abd"));
  EXPECT_TRUE(LikeMatch("14", "14"));
  EXPECT_FALSE(LikeMatch("141", "14"));
  EXPECT_TRUE(LikeMatch("50%", "50%"));  // % and _ are ordinary characters here
  EXPECT_FALSE(LikeMatch("50x", "50%"));
  EXPECT_FALSE(LikeMatch("a", "_"));
}

TEST(JetLike, CaseBlind) {
  EXPECT_TRUE(LikeMatch("k1abc", "K1*"));
  EXPECT_TRUE(LikeMatch("Hell", "HELL"));
  EXPECT_TRUE(LikeMatch("ÄRGER", "är*"));
  EXPECT_TRUE(LikeMatch("x", "[X-Z]"));
}

TEST(JetLike, CharacterLists) {
  EXPECT_TRUE(LikeMatch("W1AW", "[KW]1*"));
  EXPECT_FALSE(LikeMatch("N1AW", "[KW]1*"));
  EXPECT_TRUE(LikeMatch("N1AW", "[!KW]1*"));
  EXPECT_TRUE(LikeMatch("M", "[A-Z]"));
  EXPECT_FALSE(LikeMatch("5", "[A-Z]"));
  EXPECT_TRUE(LikeMatch("a*b", "a[*]b"));
  EXPECT_FALSE(LikeMatch("axb", "a[*]b"));
  EXPECT_TRUE(LikeMatch("a?b", "a[?]b"));
  EXPECT_TRUE(LikeMatch("a#b", "a[#]b"));
  EXPECT_TRUE(LikeMatch("é", "?"));  // one character, two bytes
}

TEST(JetLike, Problems) {
  EXPECT_FALSE(LikePatternProblem("K1*").has_value());
  EXPECT_TRUE(LikePatternProblem("[K1*").has_value());
  EXPECT_TRUE(LikePatternProblem("K[]").has_value());
  EXPECT_TRUE(LikeMatch("[K1", "[K1"));  // at run time a malformed bracket stands for itself
}

TEST(JetLike, LiteralPrefix) {
  EXPECT_EQ("k1", LikeLiteralPrefix("K1*"));
  EXPECT_EQ("k1abc", LikeLiteralPrefix("K1ABC"));
  EXPECT_EQ("", LikeLiteralPrefix("*ABC"));
  EXPECT_EQ("w", LikeLiteralPrefix("W#*"));
  EXPECT_EQ("ab", LikeLiteralPrefix("ab[cd]"));
}

TEST(JetLike, NoExponentialBacktracking) {
  std::string value(5000, 'a');
  EXPECT_FALSE(LikeMatch(value, "*a*a*a*a*a*a*a*a*a*a*b"));
}

}  // namespace
}  // namespace vellumar::db::jet
