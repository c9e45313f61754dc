// Takes the input for the XML of an attribute in a reply, reads its value, and holds the value to
// what every value promises: it can be used, copied, written, and read again from what it wrote.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/LumoServiceLayer.h"
#include "lumo/xml/NodeWriter.h"

namespace {

using Document = XmlDocument<char>;

/// Ends the run when `holds` is false: the fuzzer then keeps the input.
void Require(bool holds, char const* promise, std::string_view seen = {}) {
  if (holds) return;
  std::fprintf(stderr, "broken promise: %s\n%.*s\n", promise, static_cast<int>(seen.size()),
               seen.data());
  std::abort();
}

/// Null when the text is malformed.
std::unique_ptr<Document> Parsed(std::string_view text) {
  auto document = std::make_unique<Document>();
  bool const isXml = XMLUtilites::Parse(text.data(), text.data() + text.size(), *document);
  return isXml ? std::move(document) : nullptr;
}

/// Tells what a text that does not convert throws from a slip of the library, such as the
/// std::out_of_range of a vector.
bool IsConversionError(std::exception const& error) {
  std::string_view const what = error.what();
  return what == "stoi" || what == "stod" || what == "boolean value not parseable";
}

/// The value in an attribute; null when there is none or a text in it does not convert.
SmartPtr<IDataValue> ReadValue(XmlNode<char> const* attribute) {
  try {
    if (attribute != nullptr && lumo::LocalName(*attribute) == "LinkedRecordsDataValue") {
      return LinkedRecordsDataType::CreateOne(attribute);  // the only one without a factory
    }
    auto const read = AttributeValue::CreateOne(attribute);
    return read ? read->GetDataValue() : nullptr;
  } catch (std::exception const& error) {
    if (!IsConversionError(error)) throw;
    return nullptr;
  }
}

std::string Written(IDataValue const& value) {
  auto const document = std::make_unique<Document>();
  lumo::NodeWriter attribute = lumo::NodeWriter(document.get()).Into("attribute");
  value.CreateXMLNode(attribute.Into("zbt:" + value.GetImportNodeName()).Node());
  return XMLUtilites::Print(*document);
}

/// Null when a number in the text is out of range: a subnormal that was read exactly, from
/// hexadecimal, is none of those whose decimal text can be read.
SmartPtr<IDataValue> ReadBack(std::string const& text) {
  auto const document = Parsed(text);
  Require(document != nullptr, "what is written is well-formed", text);
  try {
    auto value = AttributeValue::CreateOne(document->first_node())->GetDataValue();
    Require(value != nullptr, "what is written can be read", text);
    return value;
  } catch (std::out_of_range const& error) {
    Require(error.what() == std::string_view("stod"), "what is written can be read", text);
    return nullptr;
  }
}

bool Contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// Whether the value changes when it is read from its own text: white space alone is no text to the
/// parser, and a bound of a range that was read as a number but is none is not set when read again.
bool IsLossy(std::string const& text) {
  return XMLUtilites::Print(*Parsed(text)) != text || Contains(text, ">nan</zbt:LowValue>") ||
         Contains(text, ">nan</zbt:HighValue>");
}

SmartPtr<IDataValue> CopyOf(IDataValue const& value) {
  return lumo::Visit(value,
                     [](auto const& typed) -> decltype(typed.CreateOne(), SmartPtr<IDataValue>()) {
                       auto const copy = typed.CreateOne();
                       *copy = typed;
                       return copy;
                     });
}

void CheckWriting(IDataValue const& value) {
  std::string const text = Written(value);
  SmartPtr<IDataValue> const copy = CopyOf(value);
  Require(copy != nullptr, "the class of the value is known");
  Require(Written(*copy) == text, "a copy writes the same", text);

  // A reply can bring the character zero as "&#0;", but no XML can hold it.
  if (Contains(text, {"\0", 1})) return;
  Require(Parsed(text) != nullptr, "what is written is well-formed", text);

  // Tables are written for imports, lists, links and empty cells not at all.
  if (AttributeValue::AccessRegistry().count(value.GetImportNodeName()) == 0) return;
  SmartPtr<IDataValue> const again = ReadBack(text);
  if (!again) return;
  Require(again->GetTypeString() == value.GetTypeString(), "a value keeps its type", text);
  std::string const settled = Written(*again);
  Require(IsLossy(text) || settled == text, "the value read again writes the same", text);
  SmartPtr<IDataValue> const third = ReadBack(settled);
  Require(third && Written(*third) == settled, "the value read again stays the same", settled);
}

void CheckContent(BinaryDataType const& value) {
  std::vector<unsigned char> bytes;
  try {
    bytes = value.GetData();
  } catch (std::runtime_error const&) {
    return;  // no Base64
  }
  auto const again = PictureDataType::CreateOne();
  again->SetData(bytes);
  Require(again->GetData() == bytes, "bytes survive their encoding", value.GetEncodedData());
}

void CheckContent(FloatFunctionalSeriesDataType const& value) {
  Require(value.GetUnit() && value.GetParameters(), "a curve has a unit and parameters");
  if (!value.GetGraph()) return;
  for (SmartPtr<Series> const& series : value.GetGraph()->AccessSeries()) {
    Require(series && series->GetXYPoints() && series->GetConstraints(), "a series has its parts");
    XYData const& points = *series->GetXYPoints();
    Require((points.GetType() == XYDatum::Unknown) == points.AccessPoints().empty(),
            "the points have the type of the first one");
    Require(!XYData::GetTypeAsString(points.GetType()).empty(), "every type has a word");
  }
}

void CheckContent(FloatFunctionalGriddedDataType const& value) {
  Require(value.GetUnit() && value.GetParameters(), "a curve has a unit and parameters");
  if (!value.GetValues()) return;
  for (SmartPtr<FloatFunctionalValue> const& entry : value.GetValues()->AccessValues()) {
    Require(entry && entry->GetConstraints(), "a value has its constraints");
  }
  Require((value.GetValues()->GetType() == FloatFunctionalValue::None) ==
              value.GetValues()->AccessValues().empty(),
          "the values have the kind of the first one");
}

void CheckContent(RangeDataType const& value) {
  auto const again = RangeDataType::CreateOne();
  again->SetLow(value.GetLow());
  again->SetHigh(value.GetHigh());
  Require(value.GetLowSet() || !again->GetLowSet(), "a bound that is not set is a NaN");
  Require(value.GetHighSet() || !again->GetHighSet(), "a bound that is not set is a NaN");
}

void CheckValue(IDataValue const& value);

void CheckContent(ListDataType const& list) {
  for (SmartPtr<IDataValue> const& item : list.AccessItems()) {
    if (item) CheckValue(*item);
  }
}

void CheckContent(TabularDataType const& table) {
  for (SmartPtr<TabularDataRow> const& row : table.GetRows()) {
    Require(row->GetData().size() == table.GetColumns().size(), "a row has a cell per column");
    for (SmartPtr<TabularColumn> const& column : table.GetColumns()) {
      SmartPtr<TabularDataCell> const cell = row->AtCol(column.get());
      Require(cell && cell->GetColumn() == column.get(), "a cell knows its column");
      if (cell->GetData()) CheckValue(*cell->GetData());
    }
  }
}

void CheckContent(IDataValue const& /*other*/) {}

void CheckValue(IDataValue const& value) {
  lumo::Visit(value, [](auto const& typed) { CheckContent(typed); });
  CheckWriting(value);
}

/// Changes a table as an import does, and uses its rows when the table is gone.
void CheckChanges(SmartPtr<TabularDataType> table) {
  if (!table) return;
  for (auto const change : {TabularDataType::Delete, TabularDataType::Update,
                            TabularDataType::Append, TabularDataType::InsertBefore}) {
    SmartPtr<TabularDataRow> const row = table->PushRowForUpdate(change, change);
    *row = *table->GetRows().front();
  }
  table->AddColumn(TabularColumn::CreateOne());
  CheckWriting(*table);
  Require(Contains(Written(*table), "<zbt:Changes><zbt:InsertBefore"), "changes are written alone");

  std::vector<SmartPtr<TabularDataRow>> const rows = table->GetRows();
  SmartPtr<TabularDataType> copy = TabularDataType::CreateOne();
  *copy = *table;
  std::string const text = Written(*copy);
  table.Reset();
  Require(Written(*copy) == text, "a copy needs no original", text);
  Require(rows.front()->At(0)->GetColumn() == copy->GetColumns().front().get(),
          "a cell knows its column as long as another table has it");
  copy.Reset();
  for (SmartPtr<TabularDataRow> const& row : rows) {
    Require(row->At(0)->GetColumn() == nullptr, "a cell forgets a column that is gone");
    row->CreateXMLNode(lumo::NodeWriter(std::make_unique<Document>().get()).Into("row").Node());
  }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  kpxtkLumoServiceLayer::Initialize();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  auto document = Parsed({reinterpret_cast<char const*>(data), size});
  if (!document) return 0;
  SmartPtr<IDataValue> value = ReadValue(document->first_node());
  document.reset();  // a value outlives the reply that it came in
  if (!value) return 0;
  CheckValue(*value);
  SmartPtr<TabularDataType> table = dynamic_cast<TabularDataType*>(value.get());
  value.Reset();
  CheckChanges(std::move(table));
  return 0;
}
