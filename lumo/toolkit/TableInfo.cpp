#include "lumo/toolkit/TableInfo.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "lumo/toolkit/Names.h"

namespace lumo {
namespace {

std::vector<SmartPtr<TableDetail>> TableDetailsOf(Connection& connection,
                                                  std::string const& dbKey) {
  auto const request = GetTables::CreateOne();
  request->SetDBKey(dbKey);
  auto const found = connection.Ask<GetTablesResponse>(
      [&](auto* into) { connection.Browse()->GetGetTablesImpl()->RequestTables(request, into); });
  std::vector<SmartPtr<TableDetail>> tables;
  for (auto const& table : found->AccessTableDetails()) {
    if (table && table->GetTableReference()) tables.push_back(table);
  }
  return tables;
}

GridColumnInfo ColumnOf(TabularColumnDetail const& detail) {
  return {detail.GetName(), AttributeTypeOf(detail.GetType()), detail.GetDatabaseUnit(),
          detail.AccessDiscreteValues()};
}

Attribute AttributeOf(AttributeDetail const& detail) {
  Attribute attribute;
  attribute.name = detail.GetName();
  attribute.identity = detail.GetIdentity();
  attribute.type = AttributeTypeOf(detail.GetType());
  attribute.unit = detail.GetDatabaseUnit();
  attribute.isMultiValued = detail.GetIsMultiValued();
  attribute.isSearchable = detail.GetIsSearchable();
  attribute.words = detail.AccessDiscreteValues();
  for (auto const& column : detail.AccessColumns()) {
    if (column) attribute.columns.push_back(ColumnOf(*column));
  }
  return attribute;
}

Interpolation InterpolationOf(ParameterDetail const& detail) {
  switch (detail.GetInterpolationMethod()) {
    case ParameterDetail::Interpolation::Linear: return Interpolation::Linear;
    case ParameterDetail::Interpolation::CubicSpline: return Interpolation::CubicSpline;
    default: return Interpolation::None;
  }
}

ParameterInfo ParameterOf(ParameterDetail const& detail) {
  ParameterInfo info;
  info.name = detail.GetName();
  if (auto const reference = detail.GetParameterReference()) info.identity = reference->GetID();
  if (auto const unit = detail.GetUnit()) info.unit = unit->GetUnitSymbol();
  info.isDiscrete = detail.GetParameterType() == ParameterDetail::ParameterType::Discrete;
  info.interpolation = InterpolationOf(detail);
  info.isLogarithmic = detail.GetScaleType() == ParameterDetail::ScaleType::Log;
  for (auto const& value : detail.AccessParameterValues()) {
    if (!value) continue;
    if (value->GetType() == ::ParameterValue::Numeric) {
      info.numbers.push_back(value->GetValue_Numeric());
    } else {
      info.words.push_back(value->GetValue_Discrete());
    }
  }
  return info;
}

using AttributePointers = std::vector<Attribute*>;

/// Adds a parameter to the attribute for which its definition holds; false when the server does not
/// say which one that is.
bool AddTo(AttributePointers const& attributes, ParameterDetail const& detail) {
  auto const appliesTo = detail.GetAppliesToAttribute();
  for (Attribute* const attribute : attributes) {
    bool const isIt = appliesTo && (appliesTo->GetAttributeID() == attribute->identity ||
                                    appliesTo->GetName() == attribute->name);
    if (!isIt && attributes.size() > 1) continue;
    attribute->parameters.push_back(ParameterOf(detail));
    return true;
  }
  return false;
}

void LoadParameters(Connection& connection, TableInfo const& table,
                    AttributePointers const& attributes) {
  if (attributes.empty()) return;
  auto const request = GetAttributeParametersRequest::CreateOne();
  for (Attribute const* const attribute : attributes) {
    request->AddAttributeReference(table.ReferenceTo(*attribute));
  }
  auto const found = connection.Ask<GetAttributeParametersResponse>([&](auto* into) {
    connection.Browse()->GetGetAttributeParametersImpl()->GetAttributeParameters(request, into);
  });
  bool areAllPlaced = true;
  for (auto const& detail : found->AccessParameterDetails()) {
    areAllPlaced = areAllPlaced && (!detail || AddTo(attributes, *detail));
  }
  if (areAllPlaced) return;
  for (Attribute* const attribute : attributes) {
    attribute->parameters.clear();
    LoadParameters(connection, table, {attribute});
  }
}

SmartPtr<GetUnitConversionsResponse> ConversionsOf(Connection& connection,
                                                   SmartPtr<GetUnitConversions> const& request) {
  return connection.Ask<GetUnitConversionsResponse>([&](auto* into) {
    connection.Browse()->GetGetUnitConversionsImpl()->GetUnitConversions(request, into);
  });
}

UnitStep StepOf(Conversion const& conversion) {
  return {conversion.GetTargetSymbol(), conversion.GetFactor(), conversion.GetOffset()};
}

}  // namespace

std::vector<DatabaseInfo> DatabasesOf(Connection& connection) {
  auto const found = connection.Ask<GetDatabasesResponse>(
      [&](auto* into) { connection.Browse()->GetGetDatabaseImpl()->GetDatabases(into); });
  std::vector<DatabaseInfo> databases;
  for (auto const& database : found->AccessDatabases()) {
    if (database) databases.push_back({database->GetDBKey(), database->GetName()});
  }
  return databases;
}

DatabaseInfo FindDatabase(Connection& connection, std::string const& keyOrName) {
  std::vector<DatabaseInfo> const databases = DatabasesOf(connection);
  std::vector<std::string> keys;
  std::vector<std::string> names;
  for (DatabaseInfo const& database : databases) {
    keys.push_back(database.key);
    names.push_back(database.name);
  }
  for (auto const& known : {keys, names}) {
    if (auto const place = TryName(known, keyOrName, "database")) return databases[*place];
  }
  ThrowNotFound("database", keyOrName, keys);
}

std::vector<std::string> TablesOf(Connection& connection, std::string const& dbKey) {
  std::vector<std::string> names;
  for (auto const& table : TableDetailsOf(connection, dbKey)) {
    names.push_back(table->GetTableReference()->GetTableName());
  }
  return names;
}

struct TableInfo::Known {
  struct Systems {
    std::vector<std::string> systems;
    std::vector<std::string> currencies;
  };

  /// What is in the slot, loaded without the lock when it is empty: two threads may load at once,
  /// and the first one's result stays.
  template <class T, class Load>
  T const& Once(std::optional<T>& slot, Load load) {
    {
      std::lock_guard<std::mutex> const lock(mutex);
      if (slot) return *slot;
    }
    T loaded = load();
    std::lock_guard<std::mutex> const lock(mutex);
    if (!slot) slot = std::move(loaded);
    return *slot;
  }

  std::mutex mutex;
  std::optional<std::vector<Attribute>> attributes;
  std::optional<std::vector<std::string>> subsets;
  std::optional<Units> units;
  std::optional<Systems> systems;
  std::map<std::pair<std::string, std::string>, UnitSystem> conversions;
};

TableInfo::TableInfo(Connection& connection, std::string const& database, std::string const& table)
    : m_database(FindDatabase(connection, database)), m_known(std::make_unique<Known>()) {
  auto const details = TableDetailsOf(connection, m_database.key);
  auto const& detail = FindNamed(details, table, "table", [](auto const& one) {
    return one->GetTableReference()->GetTableName();
  });
  m_reference = detail->GetTableReference();
  m_name = m_reference->GetTableName();
  m_attributeReferences = detail->AccessAttributeReferences();
}

TableInfo::~TableInfo() = default;

SmartPtr<TableReference> TableInfo::Reference() const { return m_reference; }

SmartPtr<PartialTableReference> TableInfo::Partial() const {
  return PartialTableReference::CreateOneFromTableName(m_name);
}

std::vector<Attribute> const& TableInfo::Attributes(Connection& connection) const {
  return m_known->Once(m_known->attributes, [&] {
    std::vector<Attribute> attributes;
    if (m_attributeReferences.empty()) return attributes;
    auto const request = GetAttributeDetailsRequest::CreateOne();
    request->AccessAttributeReferences() = m_attributeReferences;
    auto const found = connection.Ask<GetAttributeDetailsResponse>([&](auto* into) {
      connection.Browse()->GetGetAttributeDetailsImpl()->RequestAttributeDetails(request, into);
    });
    for (auto const& detail : found->AccessAttributeDetails()) {
      if (detail && !detail->GetIsMeta()) attributes.push_back(AttributeOf(*detail));
    }
    AttributePointers functional;
    for (Attribute& attribute : attributes) {
      bool const mayDepend =
          attribute.type == AttributeType::Number || attribute.type == AttributeType::Curve;
      if (mayDepend) functional.push_back(&attribute);
    }
    LoadParameters(connection, *this, functional);
    return attributes;
  });
}

Attribute const& TableInfo::FindAttribute(Connection& connection, std::string const& name) const {
  return FindNamed(Attributes(connection), name, "attribute",
                   [](Attribute const& one) { return one.name; });
}

SmartPtr<AttributeReference> TableInfo::ReferenceTo(Attribute const& attribute) const {
  auto reference = AttributeReference::CreateOne();
  reference->SetDBKey(m_database.key);
  reference->SetName(attribute.name);
  reference->SetPartialTableReference(Partial());
  return reference;
}

std::vector<std::string> const& TableInfo::Subsets(Connection& connection) const {
  return m_known->Once(m_known->subsets, [&] {
    auto const request = GetSubsets::CreateOne();
    request->SetTable(m_reference);
    auto const found = connection.Ask<GetSubsetsResponse>(
        [&](auto* into) { connection.Browse()->GetGetSubsetsImpl()->GetSubsets(request, into); });
    std::vector<std::string> names;
    for (auto const& subset : found->AccessSubsetDetails()) {
      if (subset) names.push_back(subset->GetName());
    }
    return names;
  });
}

std::string const& TableInfo::FindSubset(Connection& connection, std::string const& name) const {
  std::vector<std::string> const& names = Subsets(connection);
  return names[FindName(names, name, "subset")];
}

SmartPtr<SubsetReference> TableInfo::SubsetNamed(std::string const& name) const {
  auto reference = SubsetReference::CreateOne();
  reference->SetDBKey(m_database.key);
  reference->SetName(name);
  reference->SetPartialTableReference(Partial());
  return reference;
}

SmartPtr<RecordFilter> TableInfo::FilterOf(Connection& connection,
                                           std::string const& subset) const {
  if (subset.empty()) return nullptr;
  auto filter = RecordFilter::CreateOne();
  filter->AddSubsetReference(SubsetNamed(FindSubset(connection, subset)));
  return filter;
}

std::vector<std::string> TableInfo::UnitsOfAll(Connection& connection) const {
  std::set<std::string> units;
  for (Attribute const& attribute : Attributes(connection)) {
    units.insert(attribute.unit);
    for (GridColumnInfo const& column : attribute.columns) units.insert(column.unit);
    for (ParameterInfo const& parameter : attribute.parameters) units.insert(parameter.unit);
  }
  units.erase("");
  return {units.begin(), units.end()};
}

Units const& TableInfo::KnownUnits(Connection& connection) const {
  return m_known->Once(m_known->units, [&] {
    std::map<std::string, std::vector<UnitStep>> steps;
    auto const request = GetUnitConversions::CreateOne();
    request->SetDBKey(m_database.key);
    request->AccessSourceUnits() = UnitsOfAll(connection);
    if (request->AccessSourceUnits().empty()) return Units();
    auto const found = ConversionsOf(connection, request);
    for (auto const& unit : found->AccessSourceUnits()) {
      if (!unit) continue;
      std::vector<UnitStep>& ways = steps[unit->GetSourceSymbol()];
      for (auto const& conversion : unit->AccessConversions()) {
        if (conversion) ways.push_back(StepOf(*conversion));
      }
    }
    return Units(std::move(steps));
  });
}

void TableInfo::LoadSystems(Connection& connection) const {
  m_known->Once(m_known->systems, [&] {
    auto const request = GetUnitSystems::CreateOne();
    request->SetDBKey(m_database.key);
    auto const found = connection.Ask<GetUnitSystemsResponse>([&](auto* into) {
      connection.Browse()->GetGetUnitSystemsImpl()->GetUnitSystems(request, into);
    });
    Known::Systems systems = {found->AccessUnitSystems(), {}};
    for (auto const& currency : found->AccessCurrencies()) {
      if (currency) systems.currencies.push_back(currency->GetCode());
    }
    return systems;
  });
}

std::vector<std::string> const& TableInfo::UnitSystems(Connection& connection) const {
  LoadSystems(connection);
  return m_known->systems->systems;
}

std::vector<std::string> const& TableInfo::Currencies(Connection& connection) const {
  LoadSystems(connection);
  return m_known->systems->currencies;
}

UnitSystem TableInfo::SystemOf(Connection& connection, std::string const& system,
                               std::string const& currency) const {
  if (system.empty() && currency.empty()) return {};
  auto const pick = [](std::vector<std::string> const& names, std::string const& name,
                       char const* what) {
    return name.empty() ? name : names[FindName(names, name, what)];
  };
  std::pair<std::string, std::string> const key = {
      pick(UnitSystems(connection), system, "unit system"),
      pick(Currencies(connection), currency, "currency")};
  {
    std::lock_guard<std::mutex> const lock(m_known->mutex);
    auto const known = m_known->conversions.find(key);
    if (known != m_known->conversions.end()) return known->second;
  }
  auto context = UnitConversionContext::CreateOne();
  context->SetUnitSystem(key.first);
  context->SetCurrency(key.second);
  auto const request = GetUnitConversions::CreateOne();
  request->SetDBKey(m_database.key);
  request->AddUnitConversionContext(context);
  request->AccessSourceUnits() = UnitsOfAll(connection);
  std::map<std::string, UnitStep> steps;
  auto const found = ConversionsOf(connection, request);
  for (auto const& one : found->AccessUnitConversionContexts()) {
    if (!one) continue;
    for (auto const& conversion : one->AccessConversions()) {
      if (conversion) steps[conversion->GetSourceSymbol()] = StepOf(*conversion);
    }
  }
  std::lock_guard<std::mutex> const lock(m_known->mutex);
  return m_known->conversions.emplace(key, UnitSystem(std::move(steps))).first->second;
}

}  // namespace lumo
