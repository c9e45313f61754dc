#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tests/support/Xml.h"

using testing::ElementsAre;
using testing::SizeIs;

namespace {

std::string const kFlagsOff = "<sear:populateGUIDs>false</sear:populateGUIDs>";

template <class T>
SmartPtr<T> With(double value, std::string const& unit) {
  auto condition = T::CreateOne();
  condition->SetValue(value);
  condition->SetUnit(unit);
  return condition;
}

/// A high end of a caller's own.
class NamedEnd : public HighEndSearchValue {
 public:
  std::string GetNodeName() const override { return "top"; }
};

/// The condition's element, as a criterion writes it.
std::string Condition(SmartPtr<SearchValue> const& value) {
  auto const criterion = RecordSearchCriterion::CreateOne();
  criterion->SetSearchValue(value);
  std::string const text = Written(*criterion);
  std::string const start = "<sear:searchValue>";
  EXPECT_EQ(text.substr(0, start.size()), start);
  return text.substr(start.size(), text.size() - 2 * start.size() - 1);
}

}  // namespace

TEST(SimpleTextSearch, SendsItsFieldsInOrder) {
  auto const search = SimpleTextSearch::CreateOne();
  EXPECT_EQ(Written(*search),
            "<sear:dbKey/><sear:searchValue/><sear:searchFilter>NoFilter</sear:searchFilter>" +
                kFlagsOff);
  search->SetDBKey("K");
  search->SetSearchValue("6061 & co");
  search->SetSearchFilter(TableFilters::CoatingsTablesOnly);
  search->SetSearchMode(SearchModes::ReadOnly);
  search->SetPopulateGUIDs(true);
  search->SetRecordFilter(RecordFilter::CreateOne());
  search->AddRestrictToTables(PartialTableReference::CreateOne());
  search->SetRestrictToTables({PartialTableReference::CreateOneFromTableName("Steels"), nullptr});
  EXPECT_EQ(Written(*search),
            "<sear:dbKey>K</sear:dbKey><sear:searchValue>6061 &amp; co</sear:searchValue>"
            "<sear:searchFilter>CoatingsTablesOnly</sear:searchFilter><sear:searchMode>ReadOnly"
            "</sear:searchMode><sear:populateGUIDs>true</sear:populateGUIDs><sear:recordFilter/>"
            "<sear:restrictToTables><sear:table><zbt:tableName>Steels</zbt:tableName></sear:table>"
            "<sear:table/></sear:restrictToTables>");
  search->SetSearchMode(static_cast<SearchModes::eSearchMode>(7));
  EXPECT_NE(Written(*search).find("<sear:searchMode/>"), std::string::npos);
  EXPECT_TRUE(WritesOnlyWhenAttached(*search));
}

TEST(CriteriaSearch, SendsCriteriaWithoutAWrapper) {
  auto const search = CriteriaSearch::CreateOne();
  std::string const filter = "<sear:searchFilter>NoFilter</sear:searchFilter>";
  EXPECT_EQ(Written(*search), "<sear:dbKey/>" + filter + kFlagsOff);
  auto const criterion = RecordSearchCriterion::CreateOne();
  criterion->SetSearchAttribute(AttributeReference::CreateOne());
  criterion->GetSearchAttribute()->SetAttributeID(3);
  criterion->SetSearchValue(ExistsSearchValue::CreateOne());
  search->AddSearchCriterion(criterion);
  search->AddSearchCriterion(RecordSearchCriterion::CreateOne());
  search->SetSearchMode(SearchModes::Normal);
  search->SetRecordFilter(RecordFilter::CreateOne());
  EXPECT_EQ(Written(*search),
            "<sear:dbKey/><sear:recordSearchCriterion><sear:searchAttribute><zbt:dbKey/>"
            "<zbt:attributeIdentity>3</zbt:attributeIdentity></sear:searchAttribute>"
            "<sear:searchValue><sear:exists>true</sear:exists></sear:searchValue>"
            "</sear:recordSearchCriterion><sear:recordSearchCriterion/>" +
                filter + "<sear:searchMode>Normal</sear:searchMode>" + kFlagsOff +
                "<sear:recordFilter/>");
  EXPECT_TRUE(WritesOnlyWhenAttached(*search));
}

TEST(RecordNameSearchRequest, SendsItsOptionsAsNumbers) {
  auto const search = RecordNameSearchRequest::CreateOne();
  EXPECT_EQ(Written(*search),
            "<sear:recordName/><sear:options sear:populateGUIDs=\"0\" sear:searchFullNames=\"1\""
            " sear:searchShortNames=\"0\" sear:caseSensitive=\"0\"/>");
  search->SetTable(TableReference::CreateOne());
  search->SetRecordName("Iron");
  search->SetFilter(RecordFilter::CreateOne());
  search->SetPopulateGUIDs(true);
  search->SetSearchFullNames(false);
  search->SetSearchShortNames(true);
  search->SetCaseSensitiveNames(true);
  EXPECT_EQ(Written(*search),
            "<sear:table><zbt:dbKey/></sear:table><sear:recordName>Iron</sear:recordName>"
            "<sear:recordFilter/><sear:options sear:populateGUIDs=\"1\" sear:searchFullNames=\"0\""
            " sear:searchShortNames=\"1\" sear:caseSensitive=\"1\"/>");
}

TEST(SearchValues, WriteTheirConditions) {
  EXPECT_EQ(Condition(With<GreaterThanSearchValue>(150, "MPa")),
            "<sear:greaterThan sear:unit=\"MPa\">1.50000000000000000e+02</sear:greaterThan>");
  EXPECT_EQ(Condition(With<LessThanSearchValue>(-0.1, "")),
            "<sear:lessThan>-1.00000000000000006e-01</sear:lessThan>");
  auto const between = BetweenSearchValue::CreateOne();
  EXPECT_EQ(Condition(between), "<sear:between/>");
  between->SetHighEnd(With<HighEndSearchValue>(2, ""));
  between->SetLowEnd(With<LowEndSearchValue>(1, "GPa"));
  EXPECT_EQ(Condition(between),
            "<sear:between><sear:lowEnd sear:unit=\"GPa\">1.00000000000000000e+00</sear:lowEnd>"
            "<sear:highEnd>2.00000000000000000e+00</sear:highEnd></sear:between>");
  between->SetLowEnd(nullptr);
  between->SetHighEnd(new NamedEnd());
  EXPECT_EQ(Condition(between),
            "<sear:between><sear:top>0.00000000000000000e+00</sear:top></sear:between>");
  auto const dates = BetweenDateTimesSearchValue::CreateOne();
  dates->SetLowEnd("2026");
  EXPECT_EQ(Condition(dates),
            "<sear:betweenDateTimes><sear:lowEnd>2026</sear:lowEnd><sear:highEnd/>"
            "</sear:betweenDateTimes>");
  auto const all = ContainsAllSearchValue::CreateOne();
  EXPECT_EQ(Condition(all), "<sear:containsAll/>");
  all->AddValue("A");
  EXPECT_EQ(Condition(all),
            "<sear:containsAll><sear:discrete>A</sear:discrete></sear:containsAll>");
  auto const any = ContainsAnySearchValue::CreateOne();
  any->AddValue("A");
  any->AddValue("B");
  EXPECT_EQ(Condition(any),
            "<sear:containsAny><sear:discrete>A</sear:discrete><sear:discrete>B</sear:discrete>"
            "</sear:containsAny>");
  auto const contains = ContainsSearchValue::CreateOne();
  contains->SetValue("<b>");
  EXPECT_EQ(Condition(contains), "<sear:contains>&lt;b&gt;</sear:contains>");
  EXPECT_EQ(Condition(DoesNotContainSearchValue::CreateOne()), "<sear:doesNotContain/>");
  EXPECT_EQ(Condition(DoesNotExistSearchValue::CreateOne()),
            "<sear:doesNotExist>true</sear:doesNotExist>");
  auto const exactly = ExactlySearchValue::CreateOne();
  exactly->SetValue(-3);
  EXPECT_EQ(Condition(exactly), "<sear:exactly>-3</sear:exactly>");
  auto const column = TabularColumnContainsSearchValue::CreateOne();
  EXPECT_EQ(Condition(column), "<sear:tabularColumnContains sear:tabularColumn=\"\"/>");
  column->SetValue("Fe");
  column->SetColName("Element");
  EXPECT_EQ(Condition(column),
            "<sear:tabularColumnContains sear:tabularColumn=\"Element\">Fe"
            "</sear:tabularColumnContains>");
  GreaterThanSearchValue().CreateXMLNode(nullptr);
}

TEST(SimpleTextSearchResponse, ReadsResultsThatLieInNoWrapper) {
  auto const response = Read<SimpleTextSearchResponse>(
      "<r><resultRecords color='Red' type='Record'><shortName>S</shortName><fullName>F</fullName>"
      "<recordReference><dbKey>K</dbKey></recordReference><ranking>0.5</ranking></resultRecords>"
      "<resultRecord/><b:resultRecords><ranking/></b:resultRecords></r>");
  ASSERT_THAT(response->AccessSearchResults(), SizeIs(2));
  SearchResult const& first = *response->AccessSearchResults()[0];
  EXPECT_EQ(first.GetShortName() + first.GetLongName() + first.GetRecordReference()->GetDBKey() +
                first.GetRanking() + first.GetColor() + first.GetType(),
            "SFK0.5RedRecord");
  EXPECT_EQ(response->AccessSearchResults()[1]->GetColor(), "");
}
