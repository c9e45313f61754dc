#include <gmock/gmock.h>

#include <memory>
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
    EXPECT_EQ(Counting::s_live, 1);
    base.Reset();
    EXPECT_FALSE(base);
    EXPECT_EQ(Counting::s_live, 1);
  }
  EXPECT_EQ(Counting::s_live, 0);
}

TEST(SmartPtr, AssignmentOfATargetDoesNotCopyTheCount) {
  SmartPtr<Counting> const held(new Counting());
  {
    SmartPtr<Counting> const other(new Counting());
    *other = *held;
  }
  EXPECT_EQ(Counting::s_live, 1);
  *held = *SmartPtr<Counting>(new Counting());
  EXPECT_EQ(Counting::s_live, 1);
}

TEST(RecordReference, CopiesAreObjectsOfTheirOwn) {
  auto const original = RecordReference::CreateOne();
  original->SetIdentity(7);
  SmartPtr<RecordReference> const copy(new RecordReference(*original));
  original->SetIdentity(8);
  EXPECT_EQ(copy->GetIdentity(), 7);
}

TEST(Base64, EncodesAndDecodes) {
  std::vector<std::pair<std::string, std::string>> const pairs = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {std::string("\0\xFF\xFE", 3), "AP/+"}};
  for (auto const& [bytes, text] : pairs) {
    EXPECT_EQ(Insecure::Crypto_Base64::Encode(bytes), text);
    EXPECT_EQ(Insecure::Crypto_Base64::Decode(text), bytes);
  }
  EXPECT_EQ(Insecure::Crypto_Base64::Decode(" Zm 9v\r\n\tYg = = \n"), "foob");
}

TEST(Base64, RefusesWhatIsNoBase64) {
  for (std::string const text : {"Z", "Zg", "Zg=", "Zg===", "=", "Z===", "Zg==Zg==", "Zm9v=",
                                 "Zm=v", "Zm-_", "Zm9v\x80", "Zm9v*"}) {
    EXPECT_THROW(Insecure::Crypto_Base64::Decode(text), std::runtime_error) << text;
  }
  EXPECT_THROW(Insecure::Crypto_Base64::Decode(std::string("Zm\0v", 4)), std::runtime_error);
}
