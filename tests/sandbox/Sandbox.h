#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "lumo/LumoServiceLayer.h"

/// Address of the sandbox; the last argument of the program.
extern std::string serverUrl;

inline LumoServiceLayerServices& Services() {
  static auto const services =
      LumoServiceLayerServices::CreateOne(serverUrl, LumoSLAuth_Annonymous::CreateOne());
  return *services;
}
inline SmartPtr<BrowseService> Browse() { return Services().GetBrowseService(); }

/// Whether the call went well; what the server said is shown when not.
inline testing::AssertionResult IsFine(IResponse const& response) {
  auto const outcome = response.GetServiceLayerResponse();
  if (outcome->GetResponseCode() == 200) return testing::AssertionSuccess();
  return testing::AssertionFailure() << outcome->GetErrorMessage() << outcome->GetTransportError();
}

constexpr char kMaterials[] = "ENG_MATERIALS";

inline SmartPtr<TableReference> TableNamed(std::string const& name,
                                           std::string const& dbKey = kMaterials) {
  auto table = TableReference::CreateOne();
  table->SetDBKey(dbKey);
  table->SetTableName(name);
  return table;
}

inline SmartPtr<AttributeReference> AttributeNamed(std::string const& name,
                                                   std::string const& table = "Materials") {
  auto attribute = AttributeReference::CreateOne();
  attribute->SetDBKey(kMaterials);
  attribute->SetName(name);
  attribute->SetPartialTableReference(PartialTableReference::CreateOneFromTableName(table));
  return attribute;
}

inline SmartPtr<UnitConversionContext> UnitsOf(std::string const& system) {
  auto context = UnitConversionContext::CreateOne();
  context->SetUnitSystem(system);
  return context;
}

/// The record of that short name, looked for in the tree of its table.
SmartPtr<RecordReference> RecordNamed(std::string const& name,
                                      std::string const& table = "Materials");
