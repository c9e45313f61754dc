#include "lumo/facade/kpxtkLumoServiceLayer.h"

#include "lumo/services/browse/AttributeDetail.h"
#include "lumo/services/browse/ParameterDetail.h"
#include "lumo/types/TableFilters.h"
#include "lumo/values/ValueFactories.h"

void kpxtkLumoServiceLayer::Initialize() {
  lumo::StartValues();
  AttributeDetail::StaticInit();
  ParameterDetail::StaticInit();
  TableFilters::StaticInit();
}

void kpxtkLumoServiceLayer::Shutdown() {
  lumo::StopValues();
  AttributeDetail::s_supportedColumns.clear();
  ParameterDetail::StaticShutdown();
  TableFilters::StaticShutdown();
}
