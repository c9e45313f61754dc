// A caller compiled for numbers that are never NaN.

#include <gtest/gtest.h>

#include <limits>

#include "lumo/LumoServiceLayer.h"

TEST(RangeDataType, KnowsNaNForACallerThatDoesNot) {
  RangeDataType range;
  range.SetLow(std::numeric_limits<double>::quiet_NaN());
  range.SetHigh(std::numeric_limits<double>::quiet_NaN());
  EXPECT_FALSE(range.GetLowSet() || range.GetHighSet());
}
