#include "lumo/toolkit/Reader.h"

#include <algorithm>
#include <map>
#include <utility>

#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Text.h"

namespace lumo {
namespace {

using Clock = std::chrono::steady_clock;

/// Values in a first call.
constexpr std::size_t kFirstValues = 1000;
constexpr std::size_t kSmallest = 10;
constexpr std::size_t kLargestFirst = 200;
constexpr std::size_t kLargest = 1000;
/// Replies below this grow while they come fast; those above that shrink.
constexpr std::size_t kSmallReply = 256UL * 1024;
constexpr std::size_t kLargeReply = 1024UL * 1024;
constexpr std::chrono::seconds kFast{1};
constexpr std::chrono::seconds kSlow{4};
constexpr int kTooLarge = 413;

std::size_t FirstSize(std::size_t attributes, bool withFiles) {
  if (withFiles) return kSmallest;
  return std::clamp(kFirstValues / std::max<std::size_t>(attributes, 1), kSmallest, kLargestFirst);
}

Attribute InUnitsOf(Attribute attribute, UnitSystem const& system) {
  attribute.unit = system.UnitFor(attribute.unit);
  for (GridColumnInfo& column : attribute.columns) column.unit = system.UnitFor(column.unit);
  for (ParameterInfo& one : attribute.parameters) one.unit = system.UnitFor(one.unit);
  return attribute;
}

bool AsksForLess(Error const& error) {
  return error.Code() == ErrorCode::Timeout || error.HttpStatus() == kTooLarge;
}

/// Finds the data of records, which mostly come in the order in which they were asked for.
class DataFinder {
 public:
  explicit DataFinder(GetRecordAttributesByRefResponse const& found)
      : m_data(found.AccessRecordData()) {}

  RecordData const* Find(int identity) {
    if (m_next < m_data.size() && IdentityAt(m_next) == identity) return m_data[m_next++].get();
    if (m_places.empty()) {
      for (std::size_t i = 0; i < m_data.size(); ++i) m_places[IdentityAt(i)] = i;
    }
    auto const place = m_places.find(identity);
    if (place == m_places.end()) return nullptr;
    m_next = place->second + 1;
    return m_data[place->second].get();
  }

 private:
  int IdentityAt(std::size_t i) const {
    if (!m_data[i] || !m_data[i]->GetRecordReference()) return 0;
    return m_data[i]->GetRecordReference()->GetIdentity();
  }

  std::vector<SmartPtr<RecordData>> const& m_data;
  std::size_t m_next = 0;
  std::unordered_map<int, std::size_t> m_places;
};

}  // namespace

// ---- the size of chunks

ChunkSize::ChunkSize(std::size_t fixed, std::size_t attributes, bool withFiles)
    : m_isFixed(fixed != 0), m_size(fixed != 0 ? fixed : FirstSize(attributes, withFiles)) {}

void ChunkSize::NoteAnswer(std::size_t records, std::size_t bytes, Clock::duration time) {
  std::size_t const size = Get();
  if (m_isFixed || records < size) return;  // a part of a chunk tells little
  if (bytes > kLargeReply || time > kSlow) {
    m_size = std::max<std::size_t>(1, size / 2);
  } else if (bytes < kSmallReply && time < kFast) {
    m_size = std::min(size + size / 2 + 1, std::max(kLargest, size));
  }
}

void ChunkSize::NoteFailure(std::size_t records) {
  m_size = std::max<std::size_t>(1, std::min(Get(), records / 2));
}

// ---- what is read

ReadPlan::ReadPlan(Connection& connection, std::shared_ptr<OpenedTable> table,
                   std::vector<std::string> const& attributes, ReadOptions const& options)
    : m_table(std::move(table)),
      m_hasSystem(!options.unitSystem.empty() || !options.currency.empty()),
      m_digits(options.digits),
      m_withFiles(options.withFiles),
      m_withGuids(options.withGuids) {
  TableInfo const& info = m_table->info;
  auto const add = [&](Attribute const& attribute) {
    if (!m_places.try_emplace(attribute.name, m_attributes.size()).second) return;
    m_attributes.push_back(attribute);
    m_references.push_back(info.ReferenceTo(attribute));
  };
  if (attributes.empty()) {
    for (Attribute const& attribute : info.Attributes(connection)) add(attribute);
  }
  for (std::string const& name : attributes) {
    Attribute const& attribute = info.FindAttribute(connection, name);
    add(attribute);
    m_places.try_emplace(name, m_places[attribute.name]);
  }
  if (m_hasSystem) m_system = info.SystemOf(connection, options.unitSystem, options.currency);
  for (Attribute const& attribute : m_attributes) m_shown.push_back(InUnitsOf(attribute, m_system));
}

std::optional<std::size_t> ReadPlan::FindPlace(std::string const& attribute) const {
  auto const place = m_places.find(attribute);
  if (place == m_places.end()) return std::nullopt;
  return place->second;
}

std::size_t ReadPlan::PlaceOf(std::string_view attribute) const {
  std::string const name(attribute);
  if (auto const place = FindPlace(name)) return *place;
  std::vector<std::string> names;
  for (Attribute const& one : m_attributes) {
    if (EqualIgnoringCase(one.name, name)) return m_places.at(one.name);
    names.push_back(one.name);
  }
  throw Error(ErrorCode::InvalidArgument, Quoted(name) + " is not among the attributes read",
              Hint{HintCode::OneOf, std::move(names)});
}

Value ReadPlan::Convert(Value value) const {
  return m_hasSystem ? m_system.Convert(std::move(value), m_digits) : value;
}

Units const& ReadPlan::KnownUnits() const {
  return m_table->info.KnownUnits(*m_table->pool->Lend());
}

SmartPtr<GetRecordAttributesByRefRequest> ReadPlan::RequestFor(
    std::vector<RecordHead> const& heads) const {
  auto request = GetRecordAttributesByRefRequest::CreateOne();
  for (RecordHead const& head : heads) request->AddRecordReference(ReferenceTo(head.id));
  request->AccessAttributeReferences() = m_references;
  request->SetPopulateGUIDs(m_withGuids);
  request->SetBinaryDataRepresentation(m_withFiles ? BinaryDataRepresentations::Inline
                                                   : BinaryDataRepresentations::URL);
  return request;
}

// ---- reading

std::vector<Record> Reader::Read(Connection& connection, std::vector<RecordHead> heads) const {
  std::vector<Record> records;
  records.reserve(heads.size());
  // All parts of the chunk share the time that one call has for its tries.
  connection.Scope().lastTry = Clock::now() + connection.Options().retry.maxElapsed;
  ReadInto(records, connection, std::move(heads));
  connection.Scope().lastTry.reset();
  connection.Scope().repeatsTimeouts = true;
  return records;
}

void Reader::ReadInto(std::vector<Record>& records, Connection& connection,
                      std::vector<RecordHead> heads) const {
  connection.Scope().repeatsTimeouts = heads.size() == 1;
  Clock::time_point const begin = Clock::now();
  try {
    auto const request = m_plan->RequestFor(heads);
    auto const found = connection.Ask<GetRecordAttributesByRefResponse>([&](auto* into) {
      connection.Export()->GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(request,
                                                                                           into);
    });
    auto const reply = found->GetServiceLayerResponse()->GetExchange()->GetResponseBuffer();
    m_size->NoteAnswer(heads.size(), reply->GetBytes().size(), Clock::now() - begin);
    Convert(records, std::move(heads), *found);
    return;
  } catch (Error const& error) {
    if (heads.size() == 1 || !AsksForLess(error)) throw;
    if (Clock::now() > *connection.Scope().lastTry) throw;
    connection.Scope().ThrowWhenOver(error.Operation());
  }
  m_size->NoteFailure(heads.size());
  auto const middle = heads.begin() + static_cast<std::ptrdiff_t>(heads.size() / 2);
  ReadInto(records, connection, {heads.begin(), middle});
  ReadInto(records, connection, {middle, heads.end()});
}

void Reader::Convert(std::vector<Record>& records, std::vector<RecordHead> heads,
                     GetRecordAttributesByRefResponse const& found) const {
  DataFinder finder(found);
  for (RecordHead& head : heads) {
    auto data = std::make_shared<Record::Data>();
    RecordData const* const read = finder.Find(head.id.identity);
    data->head = std::move(head);
    if (read == nullptr) {
      data->values.resize(m_plan->Attributes().size());
    } else {
      if (data->head.id.guid.empty()) {
        data->head.id.guid = read->GetRecordReference()->GetRecordGUID();
      }
      data->values = ValuesOf(*read);
    }
    data->plan = m_plan;
    records.push_back(Record(std::move(data)));
  }
}

std::vector<Value> Reader::ValuesOf(RecordData const& data) const {
  std::vector<Value> values(m_plan->Attributes().size());
  for (auto const& value : data.AccessAttributeValues()) {
    auto const place = value ? m_plan->FindPlace(value->GetAttributeName()) : std::nullopt;
    if (!place) continue;
    Attribute const& attribute = m_plan->Attributes()[*place];
    values[*place] = m_plan->Convert(FromDataValue(value->GetDataValue().get(), &attribute));
  }
  return values;
}

}  // namespace lumo
