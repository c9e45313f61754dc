#include "lumo/toolkit/ImportFields.h"

#include <algorithm>
#include <string_view>

#include "lumo/toolkit/ImportPlan.h"
#include "lumo/toolkit/Names.h"
#include "lumo/toolkit/Pipeline.h"
#include "lumo/toolkit/Source.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

/// Attributes of servers have no names in such brackets: properties of records have.
constexpr std::string_view kLinks = "[links] ";
constexpr char kSubsets[] = "[subsets]";

constexpr std::size_t kRecordsInCall = 200;

/// The entry of just that name, whatever its case.
template <class List, class NameOf>
auto const& Exactly(List const& list, std::string const& name, std::string const& what,
                    NameOf nameOf) {
  std::vector<std::string> names;
  for (auto const& one : list) {
    if (EqualIgnoringCase(nameOf(one), name)) return one;
    names.push_back(nameOf(one));
  }
  std::string const why = "there is no " + what + " " + Quoted(name);
  std::vector<std::string> alike = Alike(name, names);
  if (!alike.empty()) {
    throw Error(ErrorCode::NotFound, why, {HintCode::DidYouMean, std::move(alike)});
  }
  throw Error(ErrorCode::NotFound, why + (names.empty() ? "" : "; there are " + Joined(names)));
}

/// The records of which a value tells links.
std::vector<RecordId> LinkedIn(Value const& value) {
  auto const* const links = std::get_if<LinkedRecords>(&value);
  return links == nullptr || links->groups.empty() ? std::vector<RecordId>()
                                                   : links->groups[0].records;
}

bool ComesFirst(RecordId const& a, RecordId const& b) { return a.identity < b.identity; }

/// Nothing for no records.
Value LinksOf(std::string const& group, std::vector<RecordId> records, std::string const& dbKey) {
  for (RecordId& id : records) {
    id.guid.clear();
    if (id.database.empty()) id.database = dbKey;
  }
  std::sort(records.begin(), records.end(), ComesFirst);
  auto const isSame = [](auto const& a, auto const& b) { return a.identity == b.identity; };
  records.erase(std::unique(records.begin(), records.end(), isSame), records.end());
  if (records.empty()) return {};
  return LinkedRecords{{{group, std::move(records)}}};
}

/// Those of `a` that are not in `b`; both in order.
std::vector<RecordId> Without(std::vector<RecordId> const& a, std::vector<RecordId> const& b) {
  std::vector<RecordId> rest;
  std::set_difference(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(rest), ComesFirst);
  return rest;
}

}  // namespace

ImportFields::Kind ImportFields::KindOf(std::string const& name) {
  if (name == kSubsets) return Kind::Subsets;
  return name.compare(0, kLinks.size(), kLinks) == 0 ? Kind::Links : Kind::Values;
}

std::string ImportFields::ShownName(std::string const& name) {
  switch (KindOf(name)) {
    case Kind::Links: return "links: " + name.substr(kLinks.size());
    case Kind::Subsets: return "subsets";
    default: return name;
  }
}

// ---- fields

std::vector<ImportFields::LinkField> const& ImportFields::LinkFields() {
  if (m_links) return *m_links;
  auto const connection = m_table->pool->Lend();
  m_links.emplace();
  for (LinkGroup& group : LinkGroupsOf(*connection, m_table->info)) {
    LinkField field;
    field.attribute.name = std::string(kLinks) + group.name;
    field.attribute.type = AttributeType::Other;
    field.group = std::move(group);
    m_links->push_back(std::move(field));
  }
  return *m_links;
}

ImportFields::LinkField const& ImportFields::FieldOf(Attribute const& links) {
  return Exactly(LinkFields(), links.name, "link group",
                 [](LinkField const& one) { return one.attribute.name; });
}

Attribute const& ImportFields::FindLinks(std::string const& group) {
  return Exactly(LinkFields(), group, "link group",
                 [](LinkField const& one) { return one.group.name; })
      .attribute;
}

Attribute const& ImportFields::Subsets() {
  if (!m_subsets) {
    Attribute subsets;
    subsets.name = kSubsets;
    subsets.type = AttributeType::Discrete;
    subsets.isMultiValued = true;
    subsets.words = m_table->info.Subsets(*m_table->pool->Lend());
    m_subsets = std::move(subsets);
  }
  return *m_subsets;
}

Attribute const& ImportFields::Find(std::string const& name) {
  switch (KindOf(name)) {
    case Kind::Links: return FindLinks(name.substr(kLinks.size()));
    case Kind::Subsets: return Subsets();
    default: return m_table->info.FindAttribute(*m_table->pool->Lend(), name);
  }
}

std::string const& ImportFields::FaultOf(Attribute const& field) {
  static std::string const kNone;
  return IsLinks(field.name) ? FieldOf(field).group.fault : kNone;
}

// ---- what is wanted

void ImportFields::LookUp(std::vector<ImportRow> const& rows, CancellationToken const& cancel) {
  struct Wish {
    LinkGroup const* group;
    std::string text;
  };
  std::vector<Wish> wishes;
  std::map<std::string, std::shared_ptr<TableInfo const>> tables;
  auto const connection = m_table->pool->Lend();
  connection->Scope().cancel = cancel;
  for (ImportRow const& row : rows) {
    for (ImportLinks const& links : row.links) {
      for (LinkField const& field : LinkFields()) {
        LinkGroup const& group = field.group;
        bool const isIt = EqualIgnoringCase(group.name, links.group) && group.fault.empty();
        for (std::string const& text : isIt ? links.records : std::vector<std::string>()) {
          Error const unknown(ErrorCode::NotFound, "there is no record " + Quoted(text));
          if (m_targets.emplace(std::pair(group.name, text), unknown).second) {
            wishes.push_back({&group, text});
          }
        }
        if (isIt && tables.count(group.table) == 0) {
          tables[group.table] =
              std::make_shared<TableInfo>(*connection, group.database, group.table);
        }
      }
    }
  }
  if (wishes.empty()) return;
  auto next = wishes.begin();
  PipelineOptions options;
  options.cancel = cancel;
  options.onCall = connection->Scope().onCall;
  using Found = std::pair<Wish, Target>;
  Pipeline<Wish, Found> searches(
      [&](Connection& /*connection*/) {
        return next == wishes.end() ? std::nullopt : std::optional<Wish>(*next++);
      },
      [&](Connection& one, Wish&& wish) -> Found {
        try {
          return {wish, FindExactly(one, *tables.at(wish.group->table), wish.text)};
        } catch (Error const& error) {
          bool const isFault =
              error.Code() == ErrorCode::NotFound || error.Code() == ErrorCode::Ambiguous;
          if (!isFault) throw;
          return {wish, error};
        }
      },
      options);
  searches.Start(m_table->pool->Lend(std::min(m_table->pool->MostCalls(), wishes.size())));
  while (auto found = searches.Take([] {})) {
    auto& [wish, target] = *found;
    if (auto const* const head = std::get_if<RecordHead>(&target)) {
      m_paths[head->id.identity] = PathBelow(head->folder, head->name);
    }
    m_targets.insert_or_assign({wish.group->name, wish.text}, std::move(target));
  }
}

Value ImportFields::LinksTo(Attribute const& links, std::vector<std::string> const& records) const {
  std::string const group = links.name.substr(kLinks.size());
  std::vector<RecordId> ids;
  for (std::string const& text : records) {
    auto const target = m_targets.find({group, text});
    if (target == m_targets.end()) continue;  // of a group that cannot be written at all
    if (auto const* const error = std::get_if<Error>(&target->second)) throw *error;
    ids.push_back(std::get<RecordHead>(target->second).id);
  }
  return LinksOf(group, std::move(ids), m_table->info.DatabaseKey());
}

Value ImportFields::InSubsets(std::vector<std::string> const& subsets) {
  std::vector<std::string> words;
  words.reserve(subsets.size());
  for (std::string const& subset : subsets) {
    words.push_back(
        Exactly(Subsets().words, subset, "subset", [](std::string const& one) { return one; }));
  }
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
  if (words.empty()) return {};
  return words;
}

// ---- what is there

std::map<int, Value> ImportFields::Linked(Connection& connection, LinkField const& field,
                                          std::vector<RecordHead> const& records) {
  std::map<int, Value> values;
  for (auto& [identity, groups] : LinkedRecordsOf(connection, records, {field.group.reference})) {
    for (LinkedRecords::Group& group : groups) {
      if (group.name != field.group.name) continue;
      values[identity] = LinksOf(group.name, std::move(group.records), m_table->info.DatabaseKey());
    }
  }
  return values;
}

void ImportFields::ReadPresent(
    std::vector<RecordHead> const& records, std::set<Attribute const*> const& fields,
    CancellationToken const& cancel,
    std::function<void(std::size_t, Attribute const&, Value const&)> const& take) {
  std::set<Attribute const*> attributes;
  auto const connection = m_table->pool->Lend();
  connection->Scope().cancel = cancel;
  for (Attribute const* const field : fields) {
    Kind const kind = KindOf(field->name);
    if (kind == Kind::Values) {
      attributes.insert(field);
      continue;
    }
    for (std::size_t at = 0; at < records.size(); at += kRecordsInCall) {
      std::size_t const end = std::min(records.size(), at + kRecordsInCall);
      std::vector<RecordHead> const chunk(records.begin() + static_cast<std::ptrdiff_t>(at),
                                          records.begin() + static_cast<std::ptrdiff_t>(end));
      std::map<int, Value> values;
      if (kind == Kind::Links) {
        values = Linked(*connection, FieldOf(*field), chunk);
      } else {
        for (auto& [id, words] : SubsetsOf(*connection, m_table->info, chunk)) {
          std::sort(words.begin(), words.end());
          values[id] = std::move(words);
        }
      }
      for (auto const& [id, value] : values) NoteValue(value);
      for (std::size_t i = at; i < end; ++i) take(i, *field, values[records[i].id.identity]);
    }
  }
  lumo::ReadPresent(m_table, records, attributes, cancel, take);
}

// ---- for people

void ImportFields::NoteValue(Value const& value) {
  for (RecordId const& id : LinkedIn(value)) {
    if (m_paths.count(id.identity) == 0) m_unknownPaths[id.identity] = id;
  }
}

void ImportFields::LoadPaths() {
  auto const connection = m_table->pool->Lend();
  FolderPaths paths;
  while (!m_unknownPaths.empty()) {
    std::vector<RecordHead> heads;
    while (!m_unknownPaths.empty() && heads.size() < kRecordsInCall) {
      heads.push_back({m_unknownPaths.extract(m_unknownPaths.begin()).mapped(), "", "", ""});
    }
    paths.Fill(*connection, heads);
    for (RecordHead const& head : heads) {
      m_paths[head.id.identity] =
          head.name.empty() ? IdentityText(head.id) : PathBelow(head.folder, head.name);
    }
  }
}

std::string ImportFields::TextOf(Value const& value, Attribute const& field) {
  if (KindOf(field.name) == Kind::Values) {
    Units const& units = m_table->info.KnownUnits(*m_table->pool->Lend());
    return lumo::TextOf(AsKept(value, field, units));
  }
  if (KindOf(field.name) == Kind::Subsets) return lumo::TextOf(value);
  NoteValue(value);
  LoadPaths();
  std::vector<std::string> words;
  for (RecordId const& id : LinkedIn(value)) words.push_back(m_paths[id.identity]);
  return lumo::TextOf(words);
}

// ---- writing

void ImportFields::WriteLinks(Connection& connection, Attribute const& links,
                              std::vector<std::pair<RecordId, Value>> const& records) {
  LinkField const& field = FieldOf(links);
  std::vector<RecordHead> heads;
  heads.reserve(records.size());
  for (auto const& [id, value] : records) heads.push_back({id, "", "", ""});
  std::map<int, Value> const present = Linked(connection, field, heads);
  auto const unlink = UnlinkRecords::CreateOne();
  auto const link = LinkRecords::CreateOne();
  for (auto const& [id, value] : records) {
    auto const found = present.find(id.identity);
    std::vector<RecordId> const has =
        found == present.end() ? std::vector<RecordId>() : LinkedIn(found->second);
    std::vector<RecordId> const wanted = LinkedIn(value);
    auto const gone = TargettedSourceRecord::CreateOne();
    for (RecordId const& one : Without(has, wanted)) gone->AddRecord(ReferenceTo(one));
    auto const added = NotatedTargettedSourceRecord::CreateOne();
    for (RecordId const& one : Without(wanted, has)) {
      auto const target = NotatedTargetRecord::CreateOne();
      target->SetRecord(ReferenceTo(one));
      added->AddRecord(target);
    }
    gone->SetRecord(ReferenceTo(id));
    added->SetRecord(ReferenceTo(id));
    if (!gone->AccessTargets().empty()) unlink->AddSourceRecord(gone);
    if (!added->AccessTargets().empty()) link->AddSourceRecord(added);
  }
  auto const changes = RecordLinkModifications::CreateOne();
  if (!unlink->AccessSources().empty()) changes->AddUnlinkRecords(unlink);
  if (!link->AccessSources().empty()) changes->AddLinkRecords(link);
  if (changes->AccessUnlinkRecords().empty() && changes->AccessLinkRecords().empty()) return;
  auto const request = ModifyRecordLinksRequest::CreateOne();
  request->SetRecordLinkGroupReference(field.group.reference);
  request->SetImportErrorMode("FaultAndRollbackOnAnyError");
  request->SetRecordLinkModifications(changes);
  connection.Write<ModifyRecordLinksResponse>([&](auto* into) {
    connection.Import()->ModifyRecordLinksImplPtr()->ModifyRecordLinks(request, into);
  });
}

}  // namespace lumo
