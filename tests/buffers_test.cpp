// Conversions, look-ups, fills and markers: what does not fit the table of members.
#include <gtest/gtest.h>
TEST(Buffers, Placeholder) {}
