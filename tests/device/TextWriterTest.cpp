#include "../../lib/device/TextWriter.h"

#include <gtest/gtest.h>
#include <bit>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

using KYV::Fixed;
using KYV::TextWriter;

namespace {

template <int DECIMALS>
void expectAsPrintf(float value) {
  char ours[64], theirs[64];
  *TextWriter::write(ours, Fixed<DECIMALS>{value}) = '\0';
  std::snprintf(theirs, sizeof theirs, "%.*f", DECIMALS, static_cast<double>(value));
  ASSERT_STREQ(theirs, ours);
}

void expectAsPrintf(float value) {
  expectAsPrintf<0>(value);
  expectAsPrintf<1>(value);
  expectAsPrintf<2>(value);
  expectAsPrintf<6>(value);
}

TEST(TextWriter, NumbersHaveTheDigitsOfPrintf) {
  for (int i = -100000; i <= 100000; ++i) {
    expectAsPrintf(static_cast<float>(i) / 8.0f);  // ties: .125, .25, .375, .5 ...
    expectAsPrintf(static_cast<float>(i) / 1000.0f);
  }
  std::mt19937 random(20240501);
  std::uniform_real_distribution<float> page(-30000.0f, 30000.0f);
  for (int i = 0; i < 200000; ++i) expectAsPrintf(page(random));
  // Any bit pattern at all, infinities and NaN among them.
  for (int i = 0; i < 200000; ++i) expectAsPrintf(std::bit_cast<float>(static_cast<std::uint32_t>(random())));
  using Limits = std::numeric_limits<float>;
  for (const float v :
       {0.0f, -0.0f, -0.001f, -0.005f, 0.005f, 0.995f, 4503599627370496.0f, 9007199254740992.0f, 9.3e18f, Limits::max(),
        Limits::min(), Limits::denorm_min(), Limits::infinity(), Limits::quiet_NaN()}) {
    expectAsPrintf(v);
    expectAsPrintf(-v);
  }
}

}  // namespace
