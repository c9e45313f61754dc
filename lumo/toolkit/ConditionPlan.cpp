#include "lumo/toolkit/ConditionPlan.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "lumo/toolkit/ConditionNode.h"

namespace lumo {
namespace {

using Node = Condition::Node;
using NodePtr = std::shared_ptr<Node const>;

constexpr std::size_t kMostSearches = 16;

/// A comparison or its contrary.
struct Literal {
  NodePtr node;
  bool isNegated = false;
};
using Conjunction = std::vector<Literal>;

/// The condition as conjunctions of which one must hold; empty when there would be too many.
std::vector<Conjunction> Conjunctions(NodePtr const& node, bool isNegated) {
  if (node->kind == Node::Kind::Comparison) return {{{node, isNegated}}};
  if (node->kind == Node::Kind::Not) return Conjunctions(node->parts[0], !isNegated);
  bool const isAnd = (node->kind == Node::Kind::And) != isNegated;
  std::vector<Conjunction> all;
  if (isAnd) all.emplace_back();
  for (NodePtr const& part : node->parts) {
    std::vector<Conjunction> const more = Conjunctions(part, isNegated);
    if (more.empty()) return {};
    if (!isAnd) {
      all.insert(all.end(), more.begin(), more.end());
    } else {
      std::vector<Conjunction> joined;
      for (Conjunction const& a : all) {
        for (Conjunction const& b : more) {
          joined.push_back(a);
          joined.back().insert(joined.back().end(), b.begin(), b.end());
          if (joined.size() > kMostSearches) return {};
        }
      }
      all = std::move(joined);
    }
    if (all.size() > kMostSearches) return {};
  }
  return all;
}

/// What a server is asked about one attribute. Its numbers meet ranges by overlap, and a record
/// without a value meets no criterion but `DoesNotExistSearchValue` and
/// `DoesNotContainSearchValue`.
struct Criterion {
  SmartPtr<SearchValue> value;  ///< null when the server cannot judge
  bool isExact = false;         ///< otherwise the server may let more records through
};

template <class SearchClass, class Content>
SmartPtr<SearchValue> With(Content const& content) {
  auto value = SearchClass::CreateOne();
  value->SetValue(content);
  return value;
}

template <class SearchClass>
SmartPtr<SearchClass> Number(Bound const& bound) {
  auto value = SearchClass::CreateOne();
  value->SetValue(bound.number);
  value->SetUnit(bound.unit);
  return value;
}

Criterion Exists() { return {ExistsSearchValue::CreateOne(), false}; }

/// What the server judges of an interval, by overlap.
SmartPtr<SearchValue> IntervalOf(NumberTest const& test) {
  if (!test.low && !test.high->isIncluded) return Number<LessThanSearchValue>(*test.high);
  if (!test.high && !test.low->isIncluded) return Number<GreaterThanSearchValue>(*test.low);
  auto between = BetweenSearchValue::CreateOne();
  if (test.low) between->SetLowEnd(Number<LowEndSearchValue>(*test.low));
  if (test.high) between->SetHighEnd(Number<HighEndSearchValue>(*test.high));
  return between;
}

std::optional<Bound> Turned(std::optional<Bound> bound) {
  if (bound) bound->isIncluded = !bound->isIncluded;
  return bound;
}

class CriterionOf {
 public:
  CriterionOf(Subject const& subject, bool isNegated)
      : m_subject(subject), m_isNegated(isNegated) {}

  /// The contrary of "some part" is "the whole", and the server only knows of some part.
  Criterion operator()(NumberTest const& test) const {
    bool const isWhole = (test.match == Match::All) != m_isNegated;
    if (!m_isNegated) return {IntervalOf(test), !isWhole};
    if (test.low && test.high) return Exists();
    return {IntervalOf({Turned(test.high), Turned(test.low), Match::Overlap}), !isWhole};
  }
  Criterion operator()(ProductTest const& /*test*/) const { return Exists(); }
  Criterion operator()(DateTest const& test) const {
    if (m_isNegated && test.from && test.before) return Exists();
    auto const from = m_isNegated ? test.before : test.from;
    auto const before = m_isNegated ? test.from : test.before;
    auto between = BetweenDateTimesSearchValue::CreateOne();
    if (from) between->SetLowEnd(DateTime::FromMicroseconds(*from).text);
    if (before) between->SetHighEnd(DateTime::FromMicroseconds(*before - 1).text);
    return {between, true};
  }
  Criterion operator()(WordTest const& test) const {
    if (m_isNegated) return Exists();
    auto any = ContainsAnySearchValue::CreateOne();
    for (std::string const& word : test.words) any->AddValue(word);
    return {any, true};
  }
  Criterion operator()(LogicalTest const& test) const {
    return {With<ContainsSearchValue>(std::string(test.isYes == m_isNegated ? "false" : "true")),
            true};
  }
  Criterion operator()(TextTest const& test) const {
    bool const isLacks = test.kind == TextTest::Kind::Lacks;
    if (isLacks && !m_isNegated) return {With<DoesNotContainSearchValue>(test.text), true};
    if (!isLacks && m_isNegated) return Exists();
    return {With<ContainsSearchValue>(test.text), test.kind != TextTest::Kind::Equal};
  }
  Criterion operator()(ExistsTest const& /*test*/) const {
    if (m_isNegated) return {DoesNotExistSearchValue::CreateOne(), true};
    return {ExistsSearchValue::CreateOne(), true};
  }

  /// The same for a column of a grid, of which the server knows little.
  Criterion InColumn(Comparison const& comparison) const {
    auto const* const text = std::get_if<TextTest>(&comparison.test);
    bool const isLacks = text != nullptr && text->kind == TextTest::Kind::Lacks;
    bool const isExists = std::holds_alternative<ExistsTest>(comparison.test);
    // These hold for records without the table too.
    if ((isLacks && !m_isNegated) || (isExists && m_isNegated)) return {};
    if (text == nullptr || isLacks != m_isNegated) return Exists();
    auto contains = TabularColumnContainsSearchValue::CreateOne();
    contains->SetValue(text->text);
    contains->SetColName(m_subject.column);
    return {contains, text->kind != TextTest::Kind::Equal};
  }

 private:
  Subject const& m_subject;
  bool m_isNegated;
};

Criterion Of(Comparison const& comparison, bool isNegated) {
  CriterionOf const criterionOf(comparison.subject, isNegated);
  if (!comparison.subject.attribute.isSearchable) return {};
  if (!comparison.subject.column.empty()) return criterionOf.InColumn(comparison);
  return std::visit(criterionOf, comparison.test);
}

/// Attributes without which a comparison cannot be told.
std::vector<Attribute const*> AttributesOf(Comparison const& comparison) {
  auto const* const product = std::get_if<ProductTest>(&comparison.test);
  if (product == nullptr) return {&comparison.subject.attribute};
  std::vector<Attribute const*> attributes;
  for (Factor const& factor : product->factors) attributes.push_back(&factor.subject.attribute);
  return attributes;
}

NodePtr AsNode(Literal const& literal) {
  if (!literal.isNegated) return literal.node;
  auto node = std::make_shared<Node>();
  node->kind = Node::Kind::Not;
  node->parts = {literal.node};
  return node;
}

Condition AllOf(std::vector<NodePtr> parts, Units const& units) {
  if (parts.size() == 1) return {std::move(parts[0]), units};
  auto node = std::make_shared<Node>();
  node->kind = Node::Kind::And;
  node->parts = std::move(parts);
  return {std::move(node), units};
}

ServerSearch SearchOf(Conjunction const& conjunction, Condition const& condition,
                      TableInfo const& table) {
  ServerSearch search;
  std::vector<NodePtr> rest;
  for (Literal const& literal : conjunction) {
    Comparison const& comparison = literal.node->comparison;
    Criterion const criterion = Of(comparison, literal.isNegated);
    if (criterion.value) {
      for (Attribute const* const attribute : AttributesOf(comparison)) {
        auto one = RecordSearchCriterion::CreateOne();
        one->SetSearchAttribute(table.ReferenceTo(*attribute));
        one->SetSearchValue(criterion.value);
        search.criteria.push_back(one);
      }
    }
    if (!criterion.isExact) rest.push_back(AsNode(literal));
  }
  if (!rest.empty()) search.rest = AllOf(std::move(rest), condition.Units());
  return search;
}

std::vector<RecordHead> AllRecords(Connection& connection, TableInfo const& table,
                                   std::string const& subset) {
  TreeWalk walk(connection, table, "", subset);
  std::vector<RecordHead> records;
  for (TreeWalk::Step step; walk.Next(connection, step, std::numeric_limits<int>::max());) {
    if (!step.isFolder) records.push_back(std::move(step.record));
  }
  return records;
}

/// Drops the records that do not fulfil the condition.
void Keep(std::vector<RecordHead>& records, Condition const& condition, ValueReader const& read) {
  std::vector<std::string> const names = condition.Attributes();
  std::vector<bool> fulfil(records.size(), false);
  read(records, names, [&](std::size_t record, std::vector<Value> const& values) {
    auto const holds = condition.Judge([&](std::string const& name) -> Value const& {
      auto const place = std::lower_bound(names.begin(), names.end(), name) - names.begin();
      return values[static_cast<std::size_t>(place)];
    });
    fulfil[record] = holds.value_or(false);
  });
  std::size_t kept = 0;
  for (std::size_t i = 0; i < records.size(); ++i) {
    if (fulfil[i]) std::swap(records[kept++], records[i]);
  }
  records.resize(kept);
}

}  // namespace

std::vector<ServerSearch> PlanOf(Condition const& condition, TableInfo const& table) {
  std::vector<Conjunction> const conjunctions = Conjunctions(condition.Top(), false);
  std::vector<ServerSearch> searches;
  for (Conjunction const& conjunction : conjunctions) {
    searches.push_back(SearchOf(conjunction, condition, table));
    if (searches.back().criteria.empty()) return {{{}, condition}};  // reads the whole table anyway
  }
  if (searches.empty()) return {{{}, condition}};
  return searches;
}

std::vector<RecordHead> FindWhere(Connection& connection, TableInfo const& table,
                                  Condition const& condition, std::string const& subset,
                                  ValueReader const& read) {
  std::vector<RecordHead> found;
  std::set<int> known;
  for (ServerSearch const& search : PlanOf(condition, table)) {
    std::vector<RecordHead> records =
        search.criteria.empty() ? AllRecords(connection, table, subset)
                                : FindByCriteria(connection, table, search.criteria, subset);
    records.erase(std::remove_if(records.begin(), records.end(),
                                 [&](RecordHead const& record) {
                                   return known.count(record.id.identity) != 0;
                                 }),
                  records.end());
    if (search.rest && !records.empty()) Keep(records, *search.rest, read);
    for (RecordHead& record : records) {
      if (known.insert(record.id.identity).second) found.push_back(std::move(record));
    }
  }
  return found;
}

}  // namespace lumo
