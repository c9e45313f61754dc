#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/Xml.h"

using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

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
  EXPECT_THAT([&] { second.AtCol(&stranger); },
              ThrowsMessage<std::out_of_range>("the table of the row does not have this column"));
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

TEST(TabularDataRow, MovesToAnotherTableWithItsColumns) {
  auto read = TableOf(
      "<row identity='2'><Cells><TabularDataCell><ShortText>a</ShortText></TabularDataCell>"
      "<TabularDataCell><ShortText>b</ShortText></TabularDataCell></Cells></row>");
  auto const row = read->GetRows()[0];
  auto const table = TabularDataType::CreateOne();
  for (auto const& column : read->GetColumns()) table->AddColumn(column);
  auto const added = TabularColumn::CreateOne();
  table->AddColumn(added);
  table->PushRow(row);
  read.Reset();
  row->SetIdentity(0);
  EXPECT_EQ(Written(*row),
            "<zbt:Cells>" + CellOf("a", "A") + CellOf("b", "B") + "<zbt:Cell/></zbt:Cells>");
  EXPECT_EQ(row->AtCol(added.get())->GetColumn(), added.get());
  row->AtCol(added.get())->SetData(TextOf("c"));
  EXPECT_EQ(Written(*row), "<zbt:Cells>" + CellOf("a", "A") + CellOf("b", "B") +
                               "<zbt:Cell zbt:columnName=\"\"><zbt:ShortText>c</zbt:ShortText>"
                               "</zbt:Cell></zbt:Cells>");
}

TEST(TabularDataRow, AndItsCellsMayOutliveTheTable) {
  auto const kept = TabularColumn::CreateOne();
  kept->SetName("kept");
  SmartPtr<TabularDataRow> row;
  {
    auto const table = TableOf("");
    table->AddColumn(kept);
    row = table->PushRow();
    row->At(0)->SetData(TextOf("x"));
    row->At(1) = TabularDataCell::CreateOne(TextOf("y"), table->GetColumns()[1].get());
    row->At(2)->SetData(TextOf("z"));
  }
  EXPECT_EQ(Written(*row), "<zbt:Cells>" + CellOf("x", "") + CellOf("y", "") + CellOf("z", "kept") +
                               "</zbt:Cells>");
  EXPECT_THAT([&] { row->AtCol(kept.get()); },
              ThrowsMessage<std::out_of_range>("a row without a table has no columns"));
}

TEST(TabularDataType, KeepsRowsShortOnceItFilledInAMillionCells) {
  std::string columns = "<columns>";
  std::string rows = "<rows>";
  for (int i = 0; i < 5000; ++i) {
    columns += "<column/>";
    rows += "<row/>";
  }
  rows += "<row><Cells><TabularDataCell/><TabularDataCell/></Cells></row>";
  auto const table =
      Read<TabularDataType>("<t>" + columns + "</columns><summaryRow/>" + rows + "</rows></t>");
  ASSERT_THAT(table->GetRows(), SizeIs(5001));
  auto const copy = TabularDataType::CreateOne();
  *copy = *table;
  copy->AddColumn(TabularColumn::CreateOne());
  for (auto const* each : {table.get(), copy.get()}) {
    EXPECT_THAT(each->GetRows()[199]->GetData(), SizeIs(each->GetColumns().size()));
    EXPECT_THAT(each->GetRows()[200]->GetData(), IsEmpty());
    TabularDataRow& last = *each->GetRows()[5000];
    EXPECT_THAT(last.GetData(), SizeIs(2));
    EXPECT_THAT([&] { last.At(2); },
                ThrowsMessage<std::out_of_range>("a row of 2 cells has none at 2"));
    EXPECT_THROW(last.AtCol(each->GetColumns().back().get()), std::out_of_range);
  }
  EXPECT_THAT(copy->PushRow()->GetData(), SizeIs(5001));  // who asks for cells gets them
}
