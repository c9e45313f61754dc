#include "lumo/session/kpxtkLumoServiceLayer.h"

#include <utility>

#include "lumo/services/browse/AttributeDetail.h"
#include "lumo/services/browse/ParameterDetail.h"
#include "lumo/types/TableFilters.h"
#include "lumo/values/AttributeValue.h"
#include "lumo/values/DateTimeDataType.h"
#include "lumo/values/DiscreteDataType.h"
#include "lumo/values/EmptyDataType.h"
#include "lumo/values/FileDataType.h"
#include "lumo/values/FloatFunctionalGriddedDataType.h"
#include "lumo/values/FloatFunctionalSeriesDataType.h"
#include "lumo/values/HyperlinkDataType.h"
#include "lumo/values/IntegerDataType.h"
#include "lumo/values/ListDataType.h"
#include "lumo/values/LogicalDataType.h"
#include "lumo/values/LongTextDataType.h"
#include "lumo/values/PictureDataType.h"
#include "lumo/values/PointDataType.h"
#include "lumo/values/RangeDataType.h"
#include "lumo/values/ShortTextDataType.h"
#include "lumo/values/TabularDataType.h"

namespace {

/// The factories of the value classes, one after the other.
template <class... Value>
struct Factories {
  static void Make() { (MakeOne<Value>(), ...); }
  static void Destroy() { (delete std::exchange(Value::s_factory, nullptr), ...); }

 private:
  template <class T>
  static void MakeOne() {
    if (T::s_factory == nullptr) {
      T::s_factory = new TypedDataValueFactory<T>(T().GetTypeString());
    }
  }
};

using AllFactories =
    Factories<PointDataType, RangeDataType, LogicalDataType, DiscreteDataType, ShortTextDataType,
              LongTextDataType, IntegerDataType, DateTimeDataType, HyperlinkDataType,
              PictureDataType, FileDataType, TabularDataType, FloatFunctionalSeriesDataType,
              FloatFunctionalGriddedDataType, ListDataType, EmptyDataType>;

}  // namespace

void kpxtkLumoServiceLayer::Initialize() {
  AllFactories::Make();
  AttributeValue::RegisterTypes();
  TabularDataCell::RegisterTypes();
  ListDataType::RegisterTypes();
  AttributeDetail::StaticInit();
  ParameterDetail::StaticInit();
  TableFilters::StaticInit();
}

void kpxtkLumoServiceLayer::Shutdown() {
  AttributeValue::AccessRegistry().clear();
  TabularDataCell::AccessRegistry().clear();
  ListDataType::AccessRegistry().clear();
  AllFactories::Destroy();
  AttributeDetail::s_supportedColumns.clear();
  ParameterDetail::StaticShutdown();
  TableFilters::StaticShutdown();
}
