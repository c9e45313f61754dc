#include "lumo/services/engineering/EngineeringDataService.h"

#include "lumo/session/ServiceOperation.h"

EngineeringDataService::EngineeringDataService(LumoSession* /*session*/) {}

std::string EngineeringDataService::GetEngineeringDataDefinition(std::string const& version) {
  return lumo::Endpoints::EngineeringData.Namespace(version);
}
