#include "KYV/NearWord.h"

#include <gtest/gtest.h>

using KYV::NearWord;

TEST(NearWord, CountsSlips) {
  const struct {
    const char *a, *b;
    int apart;
  } CASES[] = {{"red", "red", 0},       {"red", "RED", 0}, {"redd", "red", 1}, {"rd", "red", 1},
               {"rde", "red", 1},       {"rod", "red", 1}, {"", "red", 3},     {"green", "grey", 2},
               {"strcit", "strict", 1}, {"ab", "ba", 1},   {"abcd", "badc", 2}};
  for (const auto& c : CASES) {
    EXPECT_EQ(c.apart, NearWord::distance(c.a, c.b)) << c.a << " " << c.b;
    EXPECT_EQ(c.apart, NearWord::distance(c.b, c.a)) << c.a << " " << c.b;
  }
}

TEST(NearWord, OffersWhatMayHaveBeenMeant) {
  const struct {
    const char* given;
    const char* question;
  } CASES[] = {{"redd", "; did you mean -red?"},
               {"gren", "; did you mean -green?"},
               {"purple", ""},
               {"x", ""},
               {"", ""},
               {"lgree", ""}};
  for (const auto& c : CASES) {
    NearWord near(c.given);
    for (const char* word : {"red", "green", "blue", ""}) near.offer(word);
    EXPECT_EQ(c.question, near.question("-")) << c.given;
  }
}
