// What holds objects: places of their own, given back by any thread, and no memory left behind.

#include "lumo/platform/core/ObjectMemory.h"

#include <gmock/gmock.h>
#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <thread>
#include <vector>

#include "lumo/LumoServiceLayer.h"

namespace {

/// An object of `Size` bytes that is filled with its number.
template <std::size_t Size>
class Filled : public SmartPtrTarget_ts {
 public:
  explicit Filled(int number) { std::fill(std::begin(m_numbers), std::end(m_numbers), number); }
  ~Filled() override { EXPECT_EQ(WhatItHolds(), m_numbers[0]); }
  /// Its number; -1 when something wrote into it.
  int WhatItHolds() const {
    bool const isWhole = std::all_of(std::begin(m_numbers), std::end(m_numbers),
                                     [this](int number) { return number == m_numbers[0]; });
    return isWhole ? m_numbers[0] : -1;
  }

 private:
  int m_numbers[(Size - sizeof(SmartPtrTarget_ts)) / sizeof(int)];
};

struct alignas(64) OverAligned : SmartPtrTarget_ts {
  long double number = 1;
};
struct Sixteen : SmartPtrTarget_ts {
  long double number = 1;
};

template <class T>
bool IsAligned(T* object) {
  return reinterpret_cast<std::uintptr_t>(object) % alignof(T) == 0;
}

using Objects = std::vector<SmartPtr<SmartPtrTarget_ts>>;

/// Objects of all sizes, some of them larger than what lies in slabs.
Objects MakeObjects(int count) {
  Objects objects;
  objects.reserve(static_cast<std::size_t>(count) * 5);
  for (int i = 0; i < count; ++i) {
    objects.emplace_back(new Filled<24>(i));
    objects.emplace_back(new Filled<72>(i));
    objects.emplace_back(new Filled<512>(i));
    objects.emplace_back(new Filled<520>(i));
    objects.emplace_back(new Sixteen());
    EXPECT_TRUE(IsAligned(static_cast<Sixteen*>(objects.back().get())));
  }
  return objects;
}

/// Bytes that the heap has given out; 0 under the sanitizers.
std::size_t BytesInUse() { return mallinfo2().uordblks; }

}  // namespace

TEST(ObjectMemory, HoldsObjectsOfAllSizesApart) {
  Objects objects = MakeObjects(1000);
  for (std::size_t i = 0; i < objects.size(); i += 2) objects[i].Reset();
  Objects const more = MakeObjects(300);
  EXPECT_EQ(static_cast<Filled<72>*>(objects[1].get())->WhatItHolds(), 0);
  EXPECT_EQ(static_cast<Filled<520>*>(objects[4993].get())->WhatItHolds(), 998);
}  // every object looks at what it holds when it goes

TEST(ObjectMemory, IsGivenBackByAnyThread) {
  std::size_t const before = BytesInUse();
  {
    std::vector<Objects> made(3);
    std::vector<std::thread> threads;
    threads.reserve(made.size());
    for (Objects& mine : made) {
      threads.emplace_back([&mine] {
        mine = MakeObjects(500);
        for (std::size_t i = 0; i < mine.size(); i += 3) mine[i].Reset();
      });
    }
    for (std::thread& thread : threads) thread.join();
    threads.clear();
    // Each thread releases objects of all the others, which are gone by now.
    Objects all;
    for (Objects& mine : made) all.insert(all.end(), mine.begin(), mine.end());
    made.clear();
    for (std::size_t first = 0; first < 3; ++first) {
      threads.emplace_back([&all, first] {
        for (std::size_t i = first; i < all.size(); i += 3) all[i].Reset();
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  EXPECT_LT(BytesInUse(), before + 100000) << "of about 1.7 MB";
}

TEST(ObjectMemory, OfAnObjectThatIsKeptIsLittle) {
  std::size_t const before = BytesInUse();
  constexpr std::size_t kKept = 50;
  Objects objects;
  for (int i = 0; i < 50000; ++i) objects.emplace_back(new Filled<80>(i));
  Objects kept;
  for (std::size_t i = 0; i < kKept; ++i) kept.push_back(objects[i * 1000]);
  Objects().swap(objects);
  EXPECT_LT(BytesInUse(), before + (kKept + 10) * 4096) << "of 4 MB";
}

TEST(ObjectMemory, LeavesTheOtherFormsOfNewAsTheyAre) {
  SmartPtr<OverAligned> const aligned(new OverAligned());
  EXPECT_TRUE(IsAligned(aligned.get()));
  SmartPtr<Sixteen> const careful(new (std::nothrow) Sixteen());
  EXPECT_EQ(careful->number, 1);
  alignas(Sixteen) unsigned char place[sizeof(Sixteen)];
  auto* const placed = new (place) Sixteen();
  EXPECT_EQ(static_cast<void*>(placed), static_cast<void*>(place));
  placed->~Sixteen();
}
