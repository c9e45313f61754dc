#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <rapidxml/rapidxml_print.hpp>
#include <string>
#include <vector>

#include "tests/support/Xml.h"

using testing::HasSubstr;
using testing::SizeIs;

namespace {

bool Parses(std::string const& xml) {
  auto const document = std::make_unique<XmlDocument<char>>();
  bool const fine = XMLUtilites::Parse(xml.data(), xml.data() + xml.size(), *document);
  if (!fine) {
    EXPECT_EQ(document->first_node(), nullptr);  // nothing half-read is left
  }
  return fine;
}

std::string Nested(int depth, std::string const& open = "<a>", std::string const& close = "</a>") {
  std::string text;
  for (int i = 0; i < depth; ++i) text += open;
  for (int i = 0; i < depth; ++i) text += close;
  return text;
}

int Depth(XmlNode<char> const& node) {
  int deepest = 0;
  for (auto* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
    if (child->type() == rapidxml::node_element) deepest = std::max(deepest, 1 + Depth(*child));
  }
  return deepest;
}

}  // namespace

TEST(XMLUtilites, LooksNamesUpWithoutTheirPrefix) {
  auto const document = Parsed("<r><a:b:c>1</a:b:c><x:n>2</x:n><n>3</n><end: p:k='v' k='w'/></r>");
  XmlNode<char> const* const root = document->first_node();
  EXPECT_EQ(XMLUtilites::GetName(root->first_node()), "b:c");
  EXPECT_EQ(XMLUtilites::GetName(root->last_node()), "");
  EXPECT_EQ(XMLUtilites::GetName(nullptr), "");
  EXPECT_EQ(XMLUtilites::GetText(XMLUtilites::GetNode("n", root)), "2");  // the first one wins
  EXPECT_EQ(XMLUtilites::GetText(XMLUtilites::GetNode("b:c", root)), "1");
  for (std::string const other : {"c", "x:n", "N", "a:b:c", "nn", ""}) {
    XmlNode<char> const* const found = XMLUtilites::GetNode(other, root);
    EXPECT_EQ(found, other.empty() ? root->last_node() : nullptr) << other;
  }
  EXPECT_EQ(XMLUtilites::GetNode("r", document.get()), root);
  EXPECT_EQ(XMLUtilites::GetNode("n", static_cast<XmlNode<char>*>(nullptr)), nullptr);
  EXPECT_STREQ(XMLUtilites::GetAttr("k", root->last_node())->value(), "v");
  EXPECT_EQ(XMLUtilites::GetAttr("p:k", root->last_node()), nullptr);
  std::vector<XmlNode<char> const*> found(1, nullptr);
  XMLUtilites::GetNodes("n", root, found);
  EXPECT_THAT(found, SizeIs(3));
  XMLUtilites::GetNodes("n", root->last_node(), found);
  EXPECT_THAT(found, SizeIs(3));
}

TEST(XMLUtilites, JoinsAllTextOfAnElement) {
  auto const document = Parsed("<r>a&lt;<!-- no --><![CDATA[<b>]]> c<x>not this</x>&#228;</r>");
  EXPECT_EQ(XMLUtilites::GetText(document->first_node()), "a<<b> c\xC3\xA4");
  EXPECT_EQ(XMLUtilites::GetText(nullptr), "");
  EXPECT_EQ(Read<LumoEntityReference>("<r><dbKey>A<![CDATA[&]]>B</dbKey></r>")->GetDBKey(), "A&B");
}

TEST(XMLUtilites, MakesNodesAndAttributes) {
  auto const document = std::make_unique<XmlDocument<char>>();
  auto* const node = XMLUtilites::CreateNode("p:n", std::string("text"), document.get());
  document->append_node(node);
  node->append_attribute(XMLUtilites::CreateAttr("e", "", document.get()));
  node->append_attribute(XMLUtilites::CreateAttr("i", -2147483647 - 1, document.get()));
  node->append_attribute(XMLUtilites::CreateAttr("d", 0.1, document.get()));
  document->append_node(XMLUtilites::CreateNode("d", 1.5, document.get()));
  document->append_node(XMLUtilites::CreateNode("i", 42, document.get()));
  document->append_node(XMLUtilites::CreateNode("", "", document.get()));
  EXPECT_EQ(XMLUtilites::Print(*document),
            "<p:n e=\"\" i=\"-2147483648\" d=\"1.00000000000000006e-01\">text</p:n>"
            "<d>1.50000000000000000e+00</d><i>42</i></>");
  EXPECT_EQ(XMLUtilites::CreateNode("n", 1, nullptr), nullptr);
  EXPECT_EQ(XMLUtilites::CreateAttr("n", 1.0, nullptr), nullptr);
  EXPECT_EQ(XMLUtilites::CreateSOAPHeader(nullptr, ""), nullptr);
}

TEST(XMLUtilites, SaysWhatIsWrongWithAText) {
  std::vector<std::pair<std::string, std::string>> const texts = {
      {"text", "expected <"},
      {"<a", "expected >"},
      {"<a><b></b>", "unexpected end of data"},
      {"<a b>", "expected ="},
      {"<a b=c>", "expected ' or \""},
      {"<a>&#x110000;</a>", "invalid numeric character entity"},
      {"</a>", "expected element name"},
      {"<!DOCTYPE a [<!ENTITY", "unexpected end of data"},
      {"<![CDATA[", "unexpected end of data"},
      {std::string("<a>\0</a>", 8), "zero byte in the text"},
      {Nested(513), "too many nested elements"},
      {Nested(100000), "too many nested elements"},
      {Nested(600, "<a x='>'>"), "too many nested elements"},
      {Nested(600, "<a=\">"), "too many nested elements"},
      {Nested(600, "<a\">"), "too many nested elements"},
      {Nested(600, "<a><!-- </a> --><![CDATA[</a>]]>"), "too many nested elements"},
      {Nested(600, "<a></x</y>", ""), "expected >"},
  };
  for (auto const& [text, message] : texts) {
    EXPECT_FALSE(Parses(text)) << text.substr(0, 60);
    EXPECT_EQ(lumo::LastXmlError(), message) << text.substr(0, 60);
  }
  EXPECT_TRUE(Parses(Nested(512)));  // and the count starts anew for each text
}

TEST(XMLUtilites, ParsesARangeWithoutATerminator) {
  std::string const text = "\xEF\xBB\xBF <?xml version='1.0'?><a>1</a>garbage";
  auto const document = std::make_unique<XmlDocument<char>>();
  ASSERT_TRUE(XMLUtilites::Parse(text.data(), text.data() + text.size() - 7, *document));
  EXPECT_EQ(XMLUtilites::Print(*document), "<a>1</a>");
  ASSERT_TRUE(XMLUtilites::Parse(text.data(), text.data(), *document));
  EXPECT_EQ(XMLUtilites::Print(*document), "");
  EXPECT_TRUE(XMLUtilites::Parse(nullptr, nullptr, *document));
}

TEST(XMLUtilites, PrintsByteForByteAsRapidXml) {
  constexpr int kAllNodes = rapidxml::parse_full;
  for (std::string text :
       {"<a/>", "<a></a>", "<a> </a>", "<a>x</a>",
        "<a b='1' c=\"it's\" d='say \"x\" &amp; &apos;'/>",
        "<a>1 &lt; 2 &gt; 0 &amp; \"q\" 'a'</a>", "<a>x<b/>y<![CDATA[<z>]]><c>w</c></a>",
        "<?xml version=\"1.0\"?><!DOCTYPE a [<!ENTITY x 'y'>]><?pi data?><!-- c "
        "--><a><b><c/></b></a>",
        "<a><![CDATA[only]]></a>", "<a>&#10;&#13;\xC3\xA4</a>",
        "<a><b></b><b>1</b></a><second/>"}) {
    auto const document = std::make_unique<XmlDocument<char>>();
    std::string const shown = text;
    document->parse<kAllNodes>(text.data());
    std::string expected;
    rapidxml::print(std::back_inserter(expected), *document, rapidxml::print_no_indenting);
    EXPECT_EQ(XMLUtilites::Print(*document), expected) << shown;
  }
}

TEST(XMLUtilites, SurvivesMutatedReplies) {
  std::string const reply =
      "<s:Envelope "
      "a='1'><s:Body><GetTablesResponse><tableDetails><table><b:table><b:tableIdentity>7"
      "</b:tableIdentity><!-- c --><b:tableName><![CDATA[S]]>t&amp;l</b:tableName></b:table>"
      "<attributeReferences><attribute><name isStandard=\"true\"><attributeName>D</attributeName>"
      "</name></attribute></attributeReferences><tableFilters><tableFilter>NoFilter</tableFilter>"
      "</tableFilters></table></tableDetails></GetTablesResponse></s:Body></s:Envelope>";
  std::string const bytes("<>/&\"'=!?-[];#x \0a", 19);
  std::mt19937 random(4711);  // NOLINT: the same mutations in every run
  int accepted = 0;
  for (int round = 0; round < 5000; ++round) {
    std::string text = reply;
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
      std::size_t const at = random() % text.size();
      switch (random() % 4) {
        case 0: text[at] = bytes[random() % bytes.size()]; break;
        case 1: text.erase(at, 1 + random() % 20); break;
        case 2: text.insert(at, text.substr(random() % text.size(), random() % 40)); break;
        default: text.resize(at + 1); break;
      }
    }
    auto const document = std::make_unique<XmlDocument<char>>();
    if (!XMLUtilites::Parse(text.data(), text.data() + text.size(), *document)) continue;
    ++accepted;
    EXPECT_LE(Depth(*document), 512);
    auto const* const envelope = document->first_node();
    auto const* const body = envelope == nullptr ? nullptr : envelope->first_node();
    try {
      GetTablesResponse::CreateOne(XMLUtilites::GetNode("GetTablesResponse", body));
    } catch (std::logic_error const&) {    // a number that does not convert
    } catch (std::runtime_error const&) {  // or a boolean
    }
  }
  EXPECT_GT(accepted, 100);
}

TEST(SoapHeader, HasDeclarationAndNamespacesInOrder) {
  auto const document = std::make_unique<XmlDocument<char>>();
  EXPECT_NE(XMLUtilites::CreateSOAPHeader(document.get(), "urn:types"), nullptr);
  EXPECT_EQ(XMLUtilites::Print(*document),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><soapenv:Envelope xmlns:zbt=\"urn:types\" "
            "xmlns:soapenv=\"http://schemas.xmlsoap.org/soap/envelope/\" "
            "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:header=\"" +
                LumoSession::GetVendorNamespaceBase() + "headers\"/>");
}

// ---------- numbers and booleans

TEST(ConvertTo, ReadsIntegersAsStoiDoes) {
  for (auto const& [text, value] :
       std::vector<std::pair<std::string, int>>{{"42", 42},
                                                {" \n+7", 7},
                                                {"-0", 0},
                                                {"42abc", 42},
                                                {"0x10", 0},
                                                {"2147483647", 2147483647},
                                                {"-2147483648", -2147483647 - 1},
                                                {"1.9", 1},
                                                {"007", 7}}) {
    EXPECT_EQ(ConvertTo<int>(text), value) << text;
  }
  for (std::string const text : {"", " ", "abc", "-", "+-1",
                                 "\xC2\xA0"
                                 "1"}) {
    EXPECT_THROW(ConvertTo<int>(text), std::invalid_argument) << text;
  }
  EXPECT_THROW(ConvertTo<int>(std::string("2147483648")), std::out_of_range);
  EXPECT_THROW(ConvertTo<int>(std::string("-99999999999")), std::out_of_range);
}

TEST(ConvertTo, ReadsRealsAsStodDoesInThePlainLocale) {
  for (auto const& [text, value] : std::vector<std::pair<std::string, double>>{
           {"1.5", 1.5},
           {" -1.5e3x", -1500},
           {"+.5", 0.5},
           {"0x1p4", 16},
           {"1,5", 1},
           {"1e400x", 0},
           {"-0", 0},
           {"2.2250738585072014e-308", 2.2250738585072014e-308},
           {"1.", 1}}) {
    if (text == "1e400x") {
      EXPECT_THROW(ConvertTo<double>(text), std::out_of_range);
    } else {
      EXPECT_EQ(ConvertTo<double>(text), value) << text;
    }
  }
  EXPECT_TRUE(std::isnan(ConvertTo<double>(std::string("nan"))));
  EXPECT_TRUE(std::isinf(ConvertTo<double>(std::string(" -INFinity"))));
  EXPECT_THROW(ConvertTo<double>(std::string("1e-310")), std::out_of_range);
  for (std::string const text : {"", ".", "e5", ",5"}) {
    EXPECT_THROW(ConvertTo<double>(text), std::invalid_argument) << text;
  }
}

TEST(ConvertTo, KnowsTenBooleanWords) {
  for (std::string const text : {"true", "TRUE", "t", "Yes", "y", "1"}) {
    EXPECT_TRUE(ConvertTo<bool>(text)) << text;
  }
  for (std::string const text : {"false", "False", "F", "no", "N", "0"}) {
    EXPECT_FALSE(ConvertTo<bool>(text)) << text;
  }
  for (std::string const text : {"", " true", "2", "truest", "maybe"}) {
    EXPECT_THAT([&] { ConvertTo<bool>(text); },
                testing::ThrowsMessage<std::runtime_error>("boolean value not parseable"))
        << text;
  }
}

TEST(NumberText, IsPrintfsWhateverTheLocale) {
  EXPECT_EQ(std::string(lumo::NumberText(-7)), "-7");
  for (auto const& [value, text] : std::vector<std::pair<double, std::string>>{
           {0, "0.00000000000000000e+00"},
           {-0.0, "-0.00000000000000000e+00"},
           {1e100, "1.00000000000000002e+100"},
           {-1.7976931348623157e308, "-1.79769313486231571e+308"},
           {5e-324, "4.94065645841246544e-324"},
           {HUGE_VAL, "inf"},
           {-HUGE_VAL, "-inf"},
           {std::numeric_limits<double>::quiet_NaN(), "nan"}}) {
    EXPECT_EQ(std::string(lumo::NumberText(value)), text);
  }
}

TEST(NodeReader, ReadsFieldsInAnyOrderAndTheFirstOfEachName) {
  for (std::string const xml :
       {"<r><a>1</a><b>2</b><c>3</c></r>", "<r><c>3</c><b>2</b><a>1</a></r>",
        "<r>t<b>2</b><c>3</c><a>1</a><b>9</b><a>9</a></r>",
        "<r><a>1</a><a>9</a><c>3</c><c>9</c><b>2</b></r>"}) {
    auto const document = Parsed(xml);
    lumo::NodeReader in(document->first_node());
    int a = 0;
    int b = 0;
    int c = 0;
    int absent = 5;
    EXPECT_TRUE(in.Child("a", a) && !in.Child("absent", absent) && in.Child("b", b) &&
                in.Child("c", c));
    EXPECT_EQ(std::to_string(a) + std::to_string(b) + std::to_string(c), "123") << xml;
    EXPECT_EQ(absent, 5);
  }
}
