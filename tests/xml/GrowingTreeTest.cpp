// A reply that is read while it is parsed comes to the same as its whole tree.

#include "lumo/xml/GrowingTree.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/BothWays.h"
#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::string const kTables = Envelope(
    "<GetTablesResponse a=\"1\"><tableDetails><table><b:table><b:tableName>A &amp; B</b:tableName>"
    "</b:table></table><table/></tableDetails></GetTablesResponse>");

/// Whether the reply is read while it is parsed. However it is read, the call comes to the same.
template <class Impl = GetTablesImpl>
bool IsReadWhileParsed(std::string const& reply) {
  CallResult const asEver = ReadAsEver<Impl>(reply);
  CallResult const whole = ReadFromWholeTree<Impl>(reply);
  EXPECT_EQ(asEver.fields, whole.fields) << reply;
  EXPECT_EQ(asEver.error, whole.error) << reply;
  EXPECT_EQ(asEver.log, whole.log) << reply;
  EXPECT_EQ(asEver.outcome, whole.outcome) << reply;
  EXPECT_EQ(asEver.requestText, whole.requestText) << reply;
  EXPECT_EQ(asEver.replyText, TextOfWholeTree(reply)) << reply;
  using Response = decltype(Impl(nullptr).ProcessResponse(nullptr));
  return lumo::ReadWhileParsed(reply, Impl(nullptr).GetResponseTagName(), [](auto const* node) {
    EXPECT_NE(Response()->CreateOne(node), nullptr);
  });
}

/// Calls `read` with the growing element <r> in the body; whether the reply was read to its end.
template <class Read>
bool ReadGrowing(std::string const& content, Read read) {
  return lumo::ReadWhileParsed(
      Envelope("<r>" + content + "</r>"), "r",
      [&read](XmlNode<char> const* node) { read(lumo::NodeReader(node)); });
}

std::string TextOf(lumo::NodeReader const& in) {
  std::string text;
  in.Text(text);
  return text;
}

}  // namespace

TEST(ReadWhileParsed, ReadsWhatServersWrite) {
  for (std::string const& reply : {
           kTables,
           "\xEF\xBB\xBF\n<?xml version='1.0' encoding=\"utf-8\"?><!-- a -- b -->\n" + kTables +
               "\n<!---->\n",
           Envelope("<x:GetTablesResponse/>"),
           Envelope("<other>1</other>text<GetTablesResponse \n b='\"' "
                    "c=\"'&gt;\"></GetTablesResponse ><GetTablesResponse/>"),
           Envelope(
               "<GetTablesResponse><tableDetails>words<table><!-- c --><b:table><b:tableName>"
               " a<!-- c --> b&#65;&#xe9;&#x10FFFF;&lt;&apos;]]></b:tableName></b:table></table>"
               "<other><x/></other><b:table>\n</b:table></tableDetails></GetTablesResponse>"),
           std::string(
               "<s:Envelope><s:Header><s:Body/></s:Header><x/><s:Body><GetTablesResponse/></"
               "s:Body><s:Body/></s:Envelope>"),
       }) {
    EXPECT_TRUE(IsReadWhileParsed(reply)) << reply;
  }
}

TEST(ReadWhileParsed, LeavesWhatIsUnusualToTheWholeTree) {
  auto const with = [](std::string const& content) {
    return Envelope("<GetTablesResponse>" + content + "</GetTablesResponse>");
  };
  std::string const deep509 = [] {
    std::string text;
    for (int i = 0; i < 509; ++i) text = "<a>" + text + "</a>";
    return text;
  }();
  EXPECT_TRUE(IsReadWhileParsed(with(deep509)));
  for (std::string const& reply : {
           std::string(),
           std::string("words"),
           "<soap" + kTables.substr(2),
           Envelope(""),
           kTables + "<?x?>",
           kTables + "words",
           kTables + kTables,
           kTables + std::string(1, '\0'),
           "<!DOCTYPE x>" + kTables,
           with("<![CDATA[text]]>"),
           with("<?x?>"),
           with("<a>&nbsp;</a>"),
           with("<a>&#0;</a>"),
           with("<a>&#1114112;</a>"),
           with("<a>&#x;</a>"),
           with("<a>&#6a;</a>"),
           with("<a>&amp</a>"),
           with("<a></b>"),
           with("<a><b></a></b>"),
           with("<a b></a>"),
           with("<a b=c/>"),
           with("<a b='1\">"),
           with("</>"),
           with("<a!/>"),
           with("<a\x01/>"),
           with("<a / >"),
           with("<!-- "),
           with("<" + deep509 + "/>"),
           with("<a>" + deep509 + "</a>"),
           with(std::string("<a>\0</a>", 8)),
           with(std::string("<a b='\0'/>", 10)),
           with(std::string("<!--\0-->", 8)),
           std::string("<s:Envelope/>"),
           std::string("<s:Envelope><s:Body/></s:Envelope>"),
       }) {
    EXPECT_FALSE(IsReadWhileParsed(reply)) << reply;
  }
  for (std::size_t size = 0; size < kTables.size(); ++size) {
    EXPECT_FALSE(IsReadWhileParsed(kTables.substr(0, size)));
  }
}

TEST(ReadWhileParsed, LeavesValuesThatDoNotConvertToTheWholeTree) {
  std::string const reply = Envelope(
      "<GetCurrenciesResponse><currency><factor>1</factor></currency>"
      "<currency><factor>word</factor></currency></GetCurrenciesResponse>");
  EXPECT_FALSE(IsReadWhileParsed<GetCurrenciesImpl>(reply));
  EXPECT_EQ(ReadAsEver<GetCurrenciesImpl>(reply).error, "stod");
  EXPECT_EQ(ReadAsEver<GetCurrenciesImpl>(reply + "<").error, "") << "it is malformed before all";
}

TEST(GrowingElement, AnswersInAnyOrder) {
  std::string one, two, three;
  std::vector<std::string> list;
  EXPECT_TRUE(
      ReadGrowing("<c>3</c>x<w><i>1</i><k>kept</k><i>2</i></w><b>2</b><a>1</a>", [&](auto in) {
        in.Child("b", two);
        EXPECT_FALSE(in.Child("absent", two));
        in.Child("a", one);
        in.Child("c", three);
      }));
  EXPECT_EQ(one + two + three, "123");
  EXPECT_TRUE(ReadGrowing("<w><i>1</i><k>kept</k><i>2</i></w><b>B</b>", [&](auto in) {
    lumo::NodeReader w = in.In("w");
    w.Children("i", list);
    w.Child("k", one);
    in.Child("b", two);
    EXPECT_FALSE(w.Child("absent", two));
  }));
  EXPECT_THAT(list, ElementsAre("1", "2"));
  EXPECT_EQ(one + two, "keptB");
  EXPECT_TRUE(ReadGrowing("<w/><v>a<i/>b</v>", [&](auto in) {
    EXPECT_EQ(TextOf(in.In("w")), "");
    EXPECT_EQ(TextOf(in.In("v")), "ab");
    EXPECT_EQ(TextOf(in), "");
  }));
}

TEST(GrowingElement, GivesUpWhenWhatItIsAskedForIsGone) {
  std::string const content = "<w><i>1</i><k/><i>2</i></w><z/>";
  std::string text;
  std::vector<std::string> list;
  auto const isRead = [&content](auto read) { return ReadGrowing(content, read); };
  EXPECT_TRUE(isRead([&](auto in) { in.In("w").Children("i", list); }));
  EXPECT_FALSE(isRead([&](auto in) {
    lumo::NodeReader w = in.In("w");
    w.Children("i", list);
    w.Children("i", list);
  }));
  EXPECT_FALSE(isRead([&](auto in) {
    in.In("w").Children("i", list);
    in.In("w").Child("i", text);
  }));
  EXPECT_FALSE(isRead([&](auto in) {
    in.In("w").Children("i", list);
    TextOf(in.In("w"));
  }));
  EXPECT_FALSE(isRead([&](auto in) {
    lumo::NodeReader w = in.In("w");
    in.Child("z", text);
    w.Child("i", text);
  }));
  EXPECT_FALSE(isRead([&](auto in) {
    lumo::NodeReader w = in.In("w");
    in.Child("z", text);
    w.Children("i", list);
  }));
}

TEST(ReadWhileParsed, LeavesTheCodeOfCallersTheWholeTree) {
  // The terminating zero and the entry before are what only the whole tree has.
  class Text : public DataValueFactoryNew {
   public:
    using DataValueFactoryNew::DataValueFactoryNew;
    SmartPtr<IDataValue> CreateInstance(XmlNode<char> const* node) override {
      auto value = ShortTextDataType::CreateOne();
      value->SetValue(node->parent()->previous_sibling()->first_node()->value() +
                      std::string(node->value()));
      return value;
    }
  };
  std::string const reply = Envelope(
      "<GetRecordAttributesByRefResponse><results><recordData><attributeValues><attributeValue>"
      "<AttributeName>A</AttributeName></attributeValue><attributeValue><ShortTextDataValue>B"
      "</ShortTextDataValue><AttributeName>C</AttributeName></attributeValue></attributeValues>"
      "</recordData></results></GetRecordAttributesByRefResponse>");
  EXPECT_TRUE(IsReadWhileParsed<GetRecordAttributesByRefImpl>(reply));
  {
    Text const factory(AttributeTypes::SHORT_TEXT_TYPE_STRING);
    EXPECT_FALSE(IsReadWhileParsed<GetRecordAttributesByRefImpl>(reply));
    EXPECT_THAT(ReadAsEver<GetRecordAttributesByRefImpl>(reply).fields,
                testing::HasSubstr("2:AB "));
  }
  kpxtkLumoServiceLayer::Initialize();  // gives the place back

  class Process : public GetTablesImpl {
   public:
    using GetTablesImpl::GetTablesImpl;
    SmartPtr<GetTablesResponse> ProcessResponse(XmlDocument<char>* document) override {
      text = XMLUtilites::Print(*document);
      return GetTablesImpl::ProcessResponse(document);
    }
    std::string text;
  };
  auto const session = SessionWith(kTables);
  Process operation(session.get());
  GetTablesResponse response;
  operation.RequestTables(GetTables::CreateOne(), &response);
  EXPECT_EQ(operation.text, kTables);
  EXPECT_EQ(response.AccessTableDetails().size(), 2u);
}
