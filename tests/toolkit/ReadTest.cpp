// Selections of the sandbox's full content read in each of the ways that there are.

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lumo/Toolkit.h"
#include "tests/toolkit/Sandbox.h"

using testing::HasSubstr;

namespace {

class Reading : public SandboxTest {
 protected:
  static lumo::Table Table() {
    lumo::ConnectOptions options;
    options.credentials = lumo::Anonymous{};
    return lumo::Client::Connect(Link().Url(), options).OpenTable("ENG_MATERIALS", "Materials");
  }
};

std::vector<lumo::Record> AllOf(lumo::RecordStream stream) {
  std::vector<lumo::Record> records;
  for (lumo::Record const& record : stream) records.push_back(record);
  return records;
}

std::vector<int> IdentitiesOf(std::vector<lumo::Record> const& records) {
  std::vector<int> identities;
  identities.reserve(records.size());
  for (lumo::Record const& record : records) identities.push_back(record.Id().identity);
  return identities;
}

std::optional<double> LowOf(lumo::Value const& value) {
  auto const* const range = std::get_if<lumo::Range>(&value);
  return range == nullptr ? lumo::NumberIn(value) : range->low;
}

/// Small chunks, so that several are put together.
lumo::ReadOptions InChunks() {
  lumo::ReadOptions options;
  options.chunkSize = 40;
  return options;
}

std::vector<std::string> const kAttributes = {"Density", "Recyclable", "Typical uses"};

std::string ArrowText(ArrowArray const& array, std::int64_t row) {
  auto const* const offsets = static_cast<std::int32_t const*>(array.buffers[1]) + row;
  return {static_cast<char const*>(array.buffers[2]) + offsets[0],
          static_cast<std::size_t>(offsets[1] - offsets[0])};
}

ArrowArray const& ChildNamed(std::string const& name, ArrowSchema const& schema,
                             ArrowArray const& array) {
  for (std::int64_t i = 0; i < schema.n_children; ++i) {
    if (name == schema.children[i]->name) return *array.children[i];
  }
  throw std::runtime_error("there is no column " + name);
}

}  // namespace

TEST_F(Reading, GivesTheRecordsThatMeetAConditionAndNoOthers) {
  std::vector<int> expected;
  for (lumo::Record const& record : AllOf(Table().All().Read(kAttributes))) {
    auto const low = LowOf(record["Density"]);
    auto const* const recyclable = std::get_if<bool>(&record["Recyclable"]);
    bool const isBelow = record.Folder().compare(0, 17, "Metals and alloys") == 0;
    bool const fits = low && *low < 5000 && recyclable != nullptr && *recyclable && isBelow;
    if (fits) expected.push_back(record.Id().identity);
  }
  ASSERT_GT(expected.size(), 10U);
  // The second half is judged on this side, the first by the server.
  lumo::Selection const found = Table()
                                    .Where("density < 5 g/cm^3")
                                    .Where("not recyclable = no and recyclable exists")
                                    .Below("Metals and alloys");
  std::vector<int> const read = IdentitiesOf(AllOf(found.Read({"Density"}, InChunks())));
  EXPECT_THAT(read, testing::UnorderedElementsAreArray(expected));
  std::vector<int> ids;
  for (lumo::RecordId const& id : found.Ids()) ids.push_back(id.identity);
  EXPECT_EQ(ids, read);
}

TEST_F(Reading, GivesColumnsWithWhatTheRecordsHold) {
  lumo::Selection const metals = Table().Below("Metals and alloys");
  lumo::ReadOptions options = InChunks();
  options.unitSystem = Table().UnitSystems().front();
  std::vector<lumo::Record> const records = AllOf(metals.Read(kAttributes, options));
  lumo::RecordStream stream = metals.Read(kAttributes, options);
  std::size_t row = 0;
  int chunks = 0;
  while (auto const columns = stream.NextColumns()) {
    ++chunks;
    lumo::Column const& lows = *columns->Find("Density.low");
    for (std::size_t i = 0; i < columns->rows; ++i, ++row) {
      lumo::Record const& record = records.at(row);
      EXPECT_EQ(columns->Find("record.identity")->integers[i], record.Id().identity);
      EXPECT_EQ(columns->Find("record.name")->Text(i), record.Name());
      auto const low = LowOf(record["Density"]);
      ASSERT_EQ(lows.IsValid(i), low.has_value());
      EXPECT_EQ(lows.numbers[i], low.value_or(0));
      if (low) {
        EXPECT_EQ(lows.field.unit, lumo::UnitIn(record["Density"]));
      }
      auto const* const recyclable = std::get_if<bool>(&record["Recyclable"]);
      ASSERT_EQ(columns->Find("Recyclable")->IsValid(i), recyclable != nullptr);
      if (recyclable != nullptr) {
        EXPECT_EQ(columns->Find("Recyclable")->Logical(i), *recyclable);
      }
    }
  }
  EXPECT_EQ(row, records.size());
  EXPECT_GT(chunks, 1);
}

TEST_F(Reading, HandsArrowTheSameRows) {
  lumo::Selection const metals = Table().Below("Metals and alloys");
  std::map<std::int64_t, std::string> expected;
  for (lumo::Record const& record : AllOf(metals.Read(kAttributes))) {
    expected[record.Id().identity] = record.Name();
  }
  ArrowArrayStream stream;
  metals.Read(kAttributes, InChunks()).ExportArrow(&stream);
  ArrowSchema schema;
  ASSERT_EQ(stream.get_schema(&stream, &schema), 0);
  std::map<std::int64_t, std::string> rows;
  for (;;) {
    ArrowArray chunk;
    ASSERT_EQ(stream.get_next(&stream, &chunk), 0) << stream.get_last_error(&stream);
    if (chunk.release == nullptr) break;
    auto const* const identities =
        static_cast<std::int64_t const*>(ChildNamed("record.identity", schema, chunk).buffers[1]);
    ArrowArray const& names = ChildNamed("record.name", schema, chunk);
    for (std::int64_t i = 0; i < chunk.length; ++i) rows[identities[i]] = ArrowText(names, i);
    chunk.release(&chunk);
  }
  EXPECT_EQ(rows, expected);
  schema.release(&schema);
  stream.release(&stream);
}

// The other library learns of a failure by the stream's error, whenever it comes.
TEST_F(Reading, TellsArrowOfAFailure) {
  lumo::ReadOptions options;
  options.chunkSize = 3;  // more of them than are read ahead
  lumo::RecordStream read = Table().All().Read(kAttributes, options);
  ArrowArrayStream stream;
  std::move(read).ExportArrow(&stream);
  ArrowArray chunk;
  ASSERT_EQ(stream.get_next(&stream, &chunk), 0);
  chunk.release(&chunk);
  options.cancel.Cancel();
  while (stream.get_next(&stream, &chunk) == 0) {
    ASSERT_NE(chunk.release, nullptr) << "the stream ends as if nothing had happened";
    chunk.release(&chunk);
  }
  EXPECT_THAT(stream.get_last_error(&stream), HasSubstr("cancelled"));
  stream.release(&stream);
}
