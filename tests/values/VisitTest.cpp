#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeinfo>

#include "tests/support/Xml.h"

namespace {

/// A class of a caller's own that pretends to be one of the library's.
class Foreign : public IDataValue {
 public:
  void CreateXMLNode(XmlNode<char>* /*node*/) const override {}
  std::string GetNodeName() const override { return "ShortTextDataValue"; }
  std::string GetTypeString() const override { return AttributeTypes::SHORT_TEXT_TYPE_STRING; }
};

class DerivedText : public ShortTextDataType {};

std::string KindOf(IDataValue const& value) {
  return lumo::Visit(
      value,  //
      [](ShortTextDataType const& text) { return "text " + text.GetValue(); },
      [](UnittedRealDataType const& figures) { return "figures in " + figures.GetUnitSymbol(); },
      [](BinaryDataType const& /*bytes*/) { return std::string("bytes"); },
      [](PictureDataType const& /*picture*/) { return std::string("picture"); },
      [](IDataValue const& /*other*/) { return std::string("other"); });
}

template <class Class>
void ExpectItself() {
  Class const object;
  IDataValue const& value = object;
  auto const name = lumo::Visit(value, [](auto const& typed) { return typeid(&typed).name(); });
  EXPECT_STREQ(name, typeid(Class const*).name());
}

template <class... Class>
void ExpectEachAsItself(lumo::ValueClassList<Class...> /*classes*/) {
  (ExpectItself<Class>(), ...);
}

}  // namespace

TEST(Visit, CallsForEveryClassWhatTakesIt) { ExpectEachAsItself(lumo::ValueClasses()); }

TEST(Visit, TakesTheFunctionThatFitsBest) {
  DerivedText text;
  text.SetValue("x");
  RangeDataType range;
  range.SetUnitSymbol("MPa");
  EXPECT_EQ(KindOf(text), "text x");
  EXPECT_EQ(KindOf(range), "figures in MPa");
  EXPECT_EQ(KindOf(FileDataType()), "bytes");
  EXPECT_EQ(KindOf(PictureDataType()), "picture");
  EXPECT_EQ(KindOf(LinkedRecordsDataType()), "other");
  EXPECT_EQ(KindOf(Foreign()), "other");
}

TEST(Visit, ChangesWhatIsNotConst) {
  DerivedText text;
  auto const change = [](IDataValue& value) {
    lumo::Visit(
        value, [](ShortTextDataType& typed) { typed.SetValue("new"); },
        [](IDataValue& /*other*/) {});
  };
  change(text);
  EXPECT_EQ(text.GetValue(), "new");
}

TEST(Visit, ThrowsForAClassThatNothingTakes) {
  auto const visit = [](IDataValue const& value) {
    return lumo::Visit(
        value, [](UnittedRealDataType const& /*figures*/) { return 1; },
        [](auto const& concrete) -> decltype(concrete.CreateOne(), 2) { return 2; });
  };
  EXPECT_EQ(visit(DerivedText()), 2);
  EXPECT_THROW(visit(Foreign()), std::invalid_argument);
}
