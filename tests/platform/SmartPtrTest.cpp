#include <gmock/gmock.h>

#include <thread>
#include <utility>
#include <vector>

#include "lumo/LumoServiceLayer.h"

namespace {

/// Counts its live objects.
class Counting : public SmartPtrTarget_ts {
 public:
  Counting() { ++s_live; }
  ~Counting() override { --s_live; }
  static inline int s_live = 0;
};
class Derived : public Counting {};

}  // namespace

TEST(SmartPtr, KeepsItsTargetAsLongAsAnyoneHoldsIt) {
  auto* const raw = new Derived();
  {
    SmartPtr<Derived> const first(raw);
    SmartPtr<Counting> base = first;
    SmartPtr<Counting> again(raw);  // a plain pointer may be wrapped again
    SmartPtr<Counting> const moved = std::move(again);
    EXPECT_EQ(again, nullptr);  // NOLINT(bugprone-use-after-move): that is the test
    EXPECT_TRUE(moved == first && moved == raw && raw == base && moved);
    auto& alias = base;
    base = alias;
    base = std::move(alias);
    EXPECT_EQ(base, raw);
    base.Reset();
    EXPECT_FALSE(base);
    EXPECT_EQ(Counting::s_live, 1);
  }
  EXPECT_EQ(Counting::s_live, 0);
}

TEST(SmartPtr, TakesNullInEverySpelling) {
  auto const isNull = [](SmartPtr<Counting> const& pointer) { return pointer == nullptr; };
  // NOLINTBEGIN(modernize-use-nullptr): callers may have their own habits
  EXPECT_TRUE(isNull(NULL) && isNull(0) && isNull(nullptr));
  SmartPtr<Counting> pointer = new Counting();
  pointer = 0;
  EXPECT_TRUE(pointer == NULL && pointer == 0);
  // NOLINTEND(modernize-use-nullptr)
}

TEST(SmartPtr, IsCopiedAndReleasedBySeveralThreadsAtOnce) {
  SmartPtr<Counting> shared(new Counting());
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([mine = shared]() mutable {
      for (int round = 0; round < 20000; ++round) {
        SmartPtr<Counting> const copy = mine;
        mine = copy;
      }
    });
  }
  shared.Reset();
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_EQ(Counting::s_live, 0);
}

TEST(LazyPart, IsMadeOnceAndSharedByAssignment) {
  class Part : public lumo::Counted<Part> {};
  lumo::LazyPart<Part> const part;
  std::vector<SmartPtr<Part>> seen(4);
  std::vector<std::thread> threads;
  threads.reserve(seen.size());
  for (auto& each : seen) threads.emplace_back([&part, &each] { each = part.Get(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(seen, testing::Each(part.Get()));
  EXPECT_NE(part.Get(), nullptr);
  lumo::LazyPart<Part> copy;
  copy = part;
  EXPECT_EQ(copy.Get(), part.Get());
  copy = SmartPtr<Part>();
  EXPECT_EQ(copy.Get(), nullptr);  // who sets null wants null
  lumo::LazyPart<Part> const other;
  copy = other;
  EXPECT_EQ(copy.Get(), other.Get());
  copy = new Part();
  EXPECT_NE(copy.Get(), other.Get());
}

TEST(SmartPtr, AssignmentOfATargetDoesNotCopyTheCount) {
  SmartPtr<Counting> held(new Counting());
  auto const heldTwice = held;
  {
    SmartPtr<Counting> const other(new Counting());
    *other = *held;  // 1 reference against 2
  }
  EXPECT_EQ(Counting::s_live, 1);
  *held = *SmartPtr<Counting>(new Counting());
  held.Reset();
  EXPECT_EQ(Counting::s_live, 1);
}

TEST(RecordReference, CopiesAreObjectsOfTheirOwn) {
  auto const original = RecordReference::CreateOne();
  original->SetIdentity(7);
  SmartPtr<RecordReference> const copy(new RecordReference(*original));
  original->SetIdentity(8);
  EXPECT_EQ(copy->GetIdentity(), 7);
}
