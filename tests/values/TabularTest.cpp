#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::IsEmpty;
using testing::SizeIs;

namespace {

std::string const kColumns = "<columns><column>A</column><column>B</column></columns>";

SmartPtr<TabularDataType> TableOf(std::string const& rows) {
  return Read<TabularDataType>("<t>" + kColumns + "<summaryRow/><rows>" + rows + "</rows></t>");
}

SmartPtr<IDataValue> TextOf(std::string const& text) {
  auto const value = ShortTextDataType::CreateOne();
  value->SetValue(text);
  return value;
}

std::string CellOf(std::string const& text, std::string const& column) {
  return "<zbt:Cell" + (column.empty() ? "" : " zbt:columnName=\"" + column + "\"") +
         "><zbt:ShortText>" + text + "</zbt:ShortText></zbt:Cell>";
}

}  // namespace

TEST(TabularDataType, NeedsColumnsAndSummaryRow) {
  EXPECT_EQ(Read<TabularDataType>("<t>" + kColumns + "<rows/></t>"), nullptr);
  EXPECT_EQ(Read<TabularDataType>("<t><summaryRow/><rows/></t>"), nullptr);
  EXPECT_NE(Read<TabularDataType>("<t><columns/><summaryRow/></t>"), nullptr);
  auto const value = Read<AttributeValue>("<v><TabularDataValue><rows/></TabularDataValue></v>");
  EXPECT_EQ(value->GetDataType(), "TABL");
  EXPECT_EQ(value->GetDataValue(), nullptr);
}

TEST(TabularDataType, PairsCellsWithColumnsByPosition) {
  auto const table = TableOf(
      "<row><Cells><TabularDataCell><Unheard/></TabularDataCell><TabularDataCell><Empty/>"
      "</TabularDataCell><TabularDataCell><Integer>3</Integer></TabularDataCell></Cells></row>"
      "<row identity='-5'><LinkedRecords><LinkedRecord linkingValue='a'/><LinkedRecord"
      " linkingValue='b'/></LinkedRecords><Cells><TabularDataCell><List/></TabularDataCell>"
      "</Cells></row>");
  ASSERT_THAT(table->GetRows(), SizeIs(2));
  TabularDataRow& first = *table->GetRows()[0];
  ASSERT_THAT(first.GetData(), SizeIs(2));
  EXPECT_EQ(first.At(0)->GetData(), nullptr);
  EXPECT_EQ(first.At(1)->GetData()->GetTypeString(), "EMPT");
  TabularDataRow& second = *table->GetRows()[1];
  EXPECT_EQ(second.AtCol(table->GetColumns()[0].get())->GetData()->GetTypeString(), "LIST");
  EXPECT_EQ(second.At(1)->GetData(), nullptr);
  EXPECT_EQ(second.GetLinkingValue(), "b");
  EXPECT_THAT(second.GetLinkedRecords(), SizeIs(2));
  EXPECT_THROW(second.At(2), std::out_of_range);
  TabularColumn const stranger;
  EXPECT_EQ(table->GetColumnOffset(&stranger), -1);
  EXPECT_THROW(second.AtCol(&stranger), std::out_of_range);
  EXPECT_EQ(Written(*table),
            "<zbt:Rows><zbt:Row><zbt:Cells><zbt:Cell/><zbt:Cell zbt:columnName=\"B\"><zbt:Empty/>"
            "</zbt:Cell></zbt:Cells></zbt:Row><zbt:Row zbt:linkingValue=\"b\"><zbt:Cells><zbt:Cell"
            " zbt:columnName=\"A\"><zbt:List/></zbt:Cell><zbt:Cell/></zbt:Cells></zbt:Row>"
            "</zbt:Rows>");
}

TEST(TabularDataType, WritesItsChangesAloneByKind) {
  auto const table = TableOf("<row identity='1'/>");
  auto* const column = table->GetColumns()[1].get();
  table->PushRowForUpdate(TabularDataType::Delete, 17);
  table->PushRowForUpdate(TabularDataType::Append, 0)->AtCol(column)->SetData(TextOf("x"));
  table->PushRowForUpdate(TabularDataType::Delete, 18);
  table->PushRowForUpdate(TabularDataType::InsertBefore, 3);
  table->PushRowForUpdate(static_cast<TabularDataType::eChangeType>(9), 4);  // has no element
  std::string const empty = "<zbt:Cells><zbt:Cell/><zbt:Cell/></zbt:Cells>";
  std::string const changes =
      "<zbt:Changes><zbt:InsertBefore zbt:rowIdentity=\"3\">" + empty +
      "</zbt:InsertBefore><zbt:Append><zbt:Cells><zbt:Cell/>" + CellOf("x", "B") +
      "</zbt:Cells></zbt:Append><zbt:Delete zbt:rowIdentity=\"17\">" + empty +
      "</zbt:Delete><zbt:Delete zbt:rowIdentity=\"18\">" + empty + "</zbt:Delete></zbt:Changes>";
  EXPECT_EQ(Written(*table), changes);
  EXPECT_EQ(table->GetImportNodeName(), "TabularDataImportValue");

  TabularDataType copy;
  copy.PushRow();
  copy = *table;
  EXPECT_EQ(Written(copy), changes);
  EXPECT_THAT(copy.GetRows(), SizeIs(5));  // the row that was only read is left behind
  TabularDataType const& self = copy;
  copy = self;
  EXPECT_EQ(Written(copy), changes);
}

TEST(TabularDataType, GrowsByColumnsAndIgnoresNull) {
  TabularDataType table;
  auto const row = table.PushRow();
  table.AddColumn(nullptr);
  table.PushRow(nullptr);
  auto const column = Read<TabularColumn>("<c columnType='targetrecord'>New</c>");
  EXPECT_EQ(column->GetColumnType(), TabularColumn::Unknown);
  EXPECT_EQ(TabularColumn::ParseType(TabularColumn::TypeStrings[2]), TabularColumn::TargetRecord);
  table.AddColumn(column);
  EXPECT_THAT(row->GetData(), SizeIs(1));
  EXPECT_EQ(row->At(0)->GetColumn(), column.get());
  row->GetData()[0] = nullptr;  // a slot without a cell writes nothing
  EXPECT_EQ(Written(*row), "<zbt:Cells/>");
}

TEST(TabularDataRow, CopiesDataIntoTheCellsThatItHas) {
  auto const table = TableOf(
      "<row identity='2'><Cells><TabularDataCell><ShortText>a</ShortText></TabularDataCell>"
      "</Cells></row>");
  TabularDataType narrow;
  auto const target = narrow.PushRow();
  *target = *table->GetRows()[0];
  EXPECT_THAT(target->GetData(), IsEmpty());
  EXPECT_EQ(target->GetIdentity(), 2);
  auto const loose = TabularDataRow::CreateOne();
  *loose = *table->GetRows()[0];
  loose->SetIdentity(0);
  EXPECT_EQ(Written(*loose), "<zbt:Cells>" + CellOf("a", "A") + "<zbt:Cell/></zbt:Cells>");
  loose->At(0)->SetData(TextOf("changed"));
  EXPECT_EQ(WrittenElement(*table->GetRows()[0]->At(0)),
            "<r zbt:columnName=\"A\"><zbt:ShortText>a</zbt:ShortText></r>");
}

TEST(TabularDataRow, AndItsCellsMayOutliveTheTable) {
  auto const kept = TabularColumn::CreateOne();
  kept->SetName("kept");
  SmartPtr<TabularDataRow> row;
  SmartPtr<TabularDataCell> replaced;
  SmartPtr<TabularDataCell> alone;
  {
    auto const table = TableOf("");
    table->AddColumn(kept);
    row = table->PushRow();
    row->At(0)->SetData(TextOf("x"));
    row->At(2)->SetData(TextOf("z"));
    replaced = row->At(1);
    row->At(1) = TabularDataCell::CreateOne(TextOf("y"), table->GetColumns()[1].get());
    replaced->SetData(TextOf("r"));
    alone = TabularDataCell::CreateOne(TextOf("s"), kept.get());
  }
  EXPECT_EQ(Written(*row),
            "<zbt:Cells>" + CellOf("x", "") + CellOf("y", "") + CellOf("z", "") + "</zbt:Cells>");
  EXPECT_EQ(replaced->GetColumn(), nullptr);
  EXPECT_EQ(alone->GetColumn(), kept.get());
  EXPECT_THROW(row->AtCol(kept.get()), std::out_of_range);
}
