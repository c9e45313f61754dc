#include "lumo/session/kpxtkLumoServiceLayer.h"

#include "lumo/services/browse/ParameterDetail.h"
#include "lumo/types/TableFilters.h"
#include "lumo/values/AttributeValue.h"

void kpxtkLumoServiceLayer::Initialize() {
  AttributeValue::RegisterTypes();
  ParameterDetail::StaticInit();
  TableFilters::StaticInit();
}

void kpxtkLumoServiceLayer::Shutdown() {
  AttributeValue::AccessRegistry().clear();
  ParameterDetail::StaticShutdown();
  TableFilters::StaticShutdown();
}
