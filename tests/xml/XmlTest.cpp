#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <random>
#include <rapidxml/rapidxml_print.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/Xml.h"

using testing::SizeIs;

namespace {

std::string Repeated(int times, std::string const& part) {
  std::string text;
  for (int i = 0; i < times; ++i) text += part;
  return text;
}

std::string Nested(int depth, std::string const& open = "<a>", std::string const& close = "</a>",
                   std::string const& inside = "") {
  return Repeated(depth, open) + inside + Repeated(depth, close);
}

int Depth(XmlNode<char> const& node) {
  int deepest = 0;
  for (auto* child = node.first_node(); child != nullptr; child = child->next_sibling()) {
    if (child->type() == rapidxml::node_element) deepest = std::max(deepest, 1 + Depth(*child));
  }
  return deepest;
}

/// As RapidXML itself prints it.
std::string RapidXmlText(XmlDocument<char> const& document) {
  std::string text;
  rapidxml::print(std::back_inserter(text), document, rapidxml::print_no_indenting);
  return text;
}

/// Whether the text is accepted; if not, nothing half-read is left.
bool Parses(std::string const& text, XmlDocument<char>& document) {
  bool const fine = XMLUtilites::Parse(text.data(), text.data() + text.size(), document);
  EXPECT_TRUE(fine || document.first_node() == nullptr) << text;
  return fine;
}
bool Parses(std::string const& text) {
  return Parses(text, *std::make_unique<XmlDocument<char>>());
}

/// The same, and holds the parser against RapidXML's own: the same tree, or the same message
/// unless a limit of ours was passed.
bool ParsesAsRapidXml(std::string const& text, XmlDocument<char>& document) {
  auto const stock = std::make_unique<XmlDocument<char>>();
  std::string copy = text;
  std::string stockMessage;
  try {
    stock->parse<rapidxml::parse_default>(copy.data());
  } catch (rapidxml::parse_error const& error) {
    stockMessage = error.what();
  }
  if (Parses(text, document)) {
    EXPECT_EQ(stockMessage, "") << text;
    EXPECT_EQ(RapidXmlText(document), RapidXmlText(*stock)) << text;
    EXPECT_LE(Depth(document), 512) << text;
    return true;
  }
  if (text.find('\0') != std::string::npos) {
    EXPECT_EQ(lumo::LastXmlError(), "zero byte in the text");
  } else if (lumo::LastXmlError() == "too many nested elements") {
    EXPECT_TRUE(!stockMessage.empty() || Depth(*stock) > 512) << text;
  } else {
    EXPECT_EQ(lumo::LastXmlError(), stockMessage) << text;
  }
  return false;
}

/// What a conversion gives: the value, or the error with its message.
template <class Convert>
std::string Outcome(Convert convert) {
  try {
    return std::string(lumo::NumberText(convert()));
  } catch (std::invalid_argument const& error) {
    return std::string("invalid_argument ") + error.what();
  } catch (std::out_of_range const& error) {
    return std::string("out_of_range ") + error.what();
  }
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

TEST(Parse, KeepsTheMessageWhateverBecomesOfItsText) {
  std::string message = "a message";
  XmlErrorHandler(message.c_str(), nullptr);
  message = "other text";
  EXPECT_EQ(lumo::LastXmlError(), "a message");
  XmlErrorHandler(std::string(1000, 'x').c_str(), nullptr);
  EXPECT_EQ(lumo::LastXmlError(), std::string(127, 'x'));
}

TEST(XMLUtilites, JoinsAllTextOfAnElement) {
  auto const document = Parsed("<r>a&lt;<!-- no --><![CDATA[<b>]]> c<x>not this</x>&#228;</r>");
  EXPECT_EQ(XMLUtilites::GetText(document->first_node()), "a<<b> c\xC3\xA4");
  EXPECT_EQ(XMLUtilites::GetText(nullptr), "");
  EXPECT_EQ(Read<LumoEntityReference>("<r><dbKey>A<![CDATA[&]]>B</dbKey></r>")->GetDBKey(), "A&B");
  // White space is text where it lies between two sections, and only there.
  EXPECT_EQ(XMLUtilites::GetText(Parsed("<r>\n<![CDATA[]]>\n \t<![CDATA[]]><![CDATA[b]]>\r\n"
                                        "<![CDATA[c]]>\n<x/>\n<![CDATA[d]]>\n</r>")
                                     ->first_node()),
            "\n \tb\r\ncd");
  EXPECT_EQ(XMLUtilites::GetText(Parsed("<r>a <![CDATA[b]]> c <![CDATA[d]]></r>")->first_node()),
            "a b c d");
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
  node->append_node(XMLUtilites::CreateNode("c", "child", document.get()));
  EXPECT_EQ(XMLUtilites::Print(*document), RapidXmlText(*document));
  EXPECT_EQ(XMLUtilites::CreateNode("n", 1, nullptr), nullptr);
  EXPECT_EQ(XMLUtilites::CreateAttr("n", 1.0, nullptr), nullptr);
  EXPECT_EQ(XMLUtilites::CreateSOAPHeader(nullptr, ""), nullptr);
}

TEST(XMLUtilites, RefusesWhatRapidXmlRefuses) {
  EXPECT_FALSE(Parses("text"));
  EXPECT_EQ(lumo::LastXmlError(), "expected <");
  EXPECT_FALSE(Parses("<a"));
  EXPECT_EQ(lumo::LastXmlError(), "expected >");
  EXPECT_FALSE(Parses("<a><b></b>"));
  EXPECT_EQ(lumo::LastXmlError(), "unexpected end of data");
  auto const document = std::make_unique<XmlDocument<char>>();
  for (std::string const& text :
       {std::string("<a b>"), std::string("<a b=c>"), std::string("<a>&#x110000;</a>"),
        std::string("</a>"), std::string("<!DOCTYPE a [<!ENTITY"), std::string("<![CDATA["),
        std::string("<a>\0</a>", 8), Nested(600, "<a></x</y>", "")}) {
    EXPECT_FALSE(ParsesAsRapidXml(text, *document)) << text.substr(0, 60);
  }
}

TEST(XMLUtilites, RefusesMoreThan512NestedElementsHoweverHidden) {
  for (std::string const& text :
       {Nested(513), Nested(100000), Nested(512, "<a>", "</a>", "<b/>"), Nested(600, "<a x='>'>"),
        Nested(600, "<a=\">"), Nested(600, "<a\">"),
        Nested(600, "<a><!-- </a> --><![CDATA[</a>]]>")}) {
    EXPECT_FALSE(Parses(text)) << text.substr(0, 60);
    EXPECT_EQ(lumo::LastXmlError(), "too many nested elements") << text.substr(0, 60);
  }
  EXPECT_TRUE(Parses(Nested(512)));  // and the count starts anew for each text
}

TEST(XMLUtilites, CountsOnlyWhatIsNested) {
  std::string const tags = Repeated(600, "<x>");
  for (std::string const& text :
       {Nested(511, "<a>", "</a>", "<b/><b></b><b/>"), "<r>" + Repeated(600, "<a></a>") + "</r>",
        "<r>" + Repeated(600, "<a/>") + "</r>", "<a b='" + tags + "'/>", "<!--" + tags + "--><a/>",
        "<a><![CDATA[" + tags + "]]></a>", "<?p " + tags + "?><a/>",
        "<!DOCTYPE a [" + Repeated(600, "<!ENTITY e '[x]'>") + "]><a/>"}) {
    EXPECT_TRUE(Parses(text)) << lumo::LastXmlError() << ": " << text.substr(0, 60);
  }
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
        "<?xml version='1.0'?><!DOCTYPE a [<!ENTITY x 'y'>]><?pi data?><!-- c --><a><b/></a>",
        "<a><![CDATA[only]]></a>", "<a>&#10;&#13;\xC3\xA4</a>",
        "<a><b></b><b>1</b></a><second/>"}) {
    auto const document = std::make_unique<XmlDocument<char>>();
    std::string const shown = text;
    document->parse<kAllNodes>(text.data());
    EXPECT_EQ(XMLUtilites::Print(*document), RapidXmlText(*document)) << shown;
  }
}

TEST(XMLUtilites, SurvivesMutatedReplies) {
  std::string const reply =
      "<s:Envelope a='1'><s:Body><GetTablesResponse>"
      "<tableDetails><table><b:table><b:tableIdentity>7"
      "</b:tableIdentity><!-- c --><b:tableName><![CDATA[S]]>t&amp;l</b:tableName></b:table>"
      "<attributeReferences><attribute><name isStandard=\"true\"><attributeName>D</attributeName>"
      "</name></attribute></attributeReferences><tableFilters><tableFilter>NoFilter</tableFilter>"
      "</tableFilters></table></tableDetails></GetTablesResponse></s:Body></s:Envelope>";
  std::string const deep = Nested(505, "<a>", "</a>", "<b x=\"'>'\">1</b><!-- < --><c/>");
  std::string const bytes("<>/&\"'=!?-[];#x \0a", 18);
  std::mt19937 random(4711);  // NOLINT: the same mutations in every run
  int accepted = 0;
  int tooDeep = 0;
  for (int round = 0; round < 6000; ++round) {
    std::string text = round % 4 == 0 ? deep : reply;
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
    if (!ParsesAsRapidXml(text, *document)) {
      if (lumo::LastXmlError() == "too many nested elements") ++tooDeep;
      continue;
    }
    ++accepted;
    auto const* const envelope = document->first_node();
    auto const* const body = envelope == nullptr ? nullptr : envelope->first_node();
    try {
      GetTablesResponse::CreateOne(XMLUtilites::GetNode("GetTablesResponse", body));
    } catch (std::logic_error const&) {    // a number that does not convert
    } catch (std::runtime_error const&) {  // or a boolean
    }
  }
  EXPECT_GT(accepted, 100);
  EXPECT_GT(tooDeep, 10);
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

// std::stod knows the decimal mark of the process; a text without one reads alike everywhere.
TEST(ConvertTo, AgreesWithTheStandardLibraryOnTextsWithoutADecimalMark) {
  std::vector<std::string> texts = {
      "",           " ",          "42",          " \n\v+7",     "42abc",   "0x10",  "007",
      "2147483647", "2147483648", "-2147483648", "-2147483649", "-9e9999", "1e400", "0x1p-1074",
      "1e-310",     "nan",        "-inf",        "INFinity",    "+-1",     "-0",    "\xC2\xA0\x31"};
  std::string const bytes("0123456789012345678900+-eExXpPnaifNI \t\0_", 40);
  std::mt19937 random(815);  // NOLINT: the same texts in every run
  while (texts.size() < 5000) {
    texts.emplace_back();
    for (auto size = random() % 14; size > 0; --size) texts.back() += bytes[random() % 40];
  }
  for (std::string const& text : texts) {
    EXPECT_EQ(Outcome([&] { return ConvertTo<int>(text); }),
              Outcome([&] { return std::stoi(text); }))
        << text;
    EXPECT_EQ(Outcome([&] { return ConvertTo<double>(text); }),
              Outcome([&] { return std::stod(text); }))
        << text;
  }
}

TEST(ConvertTo, ReadsThePointAsTheDecimalMarkWhateverTheLocale) {
  for (auto const& row : std::vector<std::pair<std::string, std::string>>{
           {"1.5", "1.50000000000000000e+00"},
           {"  -1.5e3x", "-1.50000000000000000e+03"},
           {"+.5", "5.00000000000000000e-01"},
           {"0x1.8p1", "3.00000000000000000e+00"},
           {"1,5", "1.00000000000000000e+00"},
           {"2.2250738585072014e-308", "2.22507385850720138e-308"},
           {"1.1e-310", "out_of_range stod"},
           {".", "invalid_argument stod"},
           {"e5", "invalid_argument stod"},
           {",5", "invalid_argument stod"}}) {
    EXPECT_EQ(Outcome([&] { return ConvertTo<double>(row.first); }), row.second) << row.first;
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

TEST(NodeReader, AssertsThatANameIsAskedForOnce) {
  auto const document = Parsed("<r><a>1</a><b>2</b><a>3</a></r>");
  auto const askTwice = [&document] {
    lumo::NodeReader in(document->first_node());
    int number = 0;
    in.Child("a", number);
    in.Child("b", number);
    in.Child("a", number);
  };
  EXPECT_DEBUG_DEATH(askTwice(), "asked for once");
}

TEST(NodeReader, ReadsAttributesListsAndWhatLiesInside) {
  auto const document = Parsed(
      "<r p:i=' 7' b='Yes' s='&lt;'><w><n>1</n><x/><p:n><![CDATA[2]]></n></w><w><n>9</n></w></r>");
  lumo::NodeReader in(document->first_node());
  int number = 0;
  bool flag = false;
  std::string text = "kept";
  EXPECT_TRUE(in.Attribute("i", number) && in.Attribute("b", flag) && !in.Attribute("t", text));
  EXPECT_TRUE(number == 7 && flag && text == "kept");
  EXPECT_TRUE(in.Attribute("s", text));
  EXPECT_EQ(text, "<");
  std::vector<int> numbers{0};
  lumo::NodeReader inside = in.In("w");
  inside.Children("n", numbers);
  EXPECT_THAT(numbers, testing::ElementsAre(0, 1, 2));
  EXPECT_THROW(inside.Child("x", number), std::invalid_argument);  // an empty text is no number
  lumo::NodeReader nothing = in.In("absent").In("deeper");
  nothing.Text(text);
  nothing.Children("n", numbers);
  EXPECT_FALSE(nothing.Child("n", number) || nothing.Attribute("i", number));
  EXPECT_TRUE(numbers.size() == 3 && number == 7 && text == "<");
}
