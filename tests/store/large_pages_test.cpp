// The allocator of the large read-mostly arrays: what it hands out must
// behave as any vector's storage, whichever of its two paths it took.
#include <cstdint>
#include <new>

#include <gtest/gtest.h>

#include "store/large_pages.h"

namespace {

using Sparlane::kLargePageAdviceFrom;
using Sparlane::LargeArray;

std::uintptr_t Address(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

TEST(LargePageAllocator, LargeBlockStartsOnALargePageBoundary) {
  LargeArray<float> column;
  column.reserve(kLargePageAdviceFrom / sizeof(float) + 1);
  EXPECT_EQ(Address(column.data()) % kLargePageAdviceFrom, 0u);
}

TEST(LargePageAllocator, SmallBlockComesFromTheHeapAligned) {
  LargeArray<float> column(100, 1.5f);
  EXPECT_EQ(Address(column.data()) % alignof(float), 0u);
  EXPECT_EQ(column[99], 1.5f);
}

TEST(LargePageAllocator, GrowingAcrossThePathsKeepsEveryValue) {
  LargeArray<std::uint32_t> values;
  const std::size_t count = 3 * kLargePageAdviceFrom / sizeof(std::uint32_t) + 7;
  for (std::size_t i = 0; i < count; ++i) values.push_back(static_cast<std::uint32_t>(i * 2654435761u));
  ASSERT_EQ(values.size(), count);
  for (std::size_t i = 0; i < count; i += 4099) {
    EXPECT_EQ(values[i], static_cast<std::uint32_t>(i * 2654435761u));
  }
  EXPECT_EQ(values.back(), static_cast<std::uint32_t>((count - 1) * 2654435761u));
  values.resize(10);
  values.shrink_to_fit();  // back to the heap path
  EXPECT_EQ(values[9], static_cast<std::uint32_t>(9 * 2654435761u));
}

TEST(LargePageAllocator, ImpossibleSizeIsRefusedNotWrapped) {
  Sparlane::LargePageAllocator<double> allocator;
  EXPECT_THROW(allocator.allocate(static_cast<std::size_t>(-1) / sizeof(double)), std::bad_array_new_length);
}

}  // namespace
