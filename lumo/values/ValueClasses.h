#pragma once

#include "lumo/values/DateTimeDataType.h"
#include "lumo/values/DiscreteDataType.h"
#include "lumo/values/EmptyDataType.h"
#include "lumo/values/FileDataType.h"
#include "lumo/values/FloatFunctionalGriddedDataType.h"
#include "lumo/values/FloatFunctionalSeriesDataType.h"
#include "lumo/values/HyperlinkDataType.h"
#include "lumo/values/IntegerDataType.h"
#include "lumo/values/LinkedRecordsDataType.h"
#include "lumo/values/ListDataType.h"
#include "lumo/values/LogicalDataType.h"
#include "lumo/values/LongTextDataType.h"
#include "lumo/values/PictureDataType.h"
#include "lumo/values/PointDataType.h"
#include "lumo/values/RangeDataType.h"
#include "lumo/values/ShortTextDataType.h"
#include "lumo/values/TabularDataType.h"

namespace lumo {

template <class... Class>
struct ValueClassList {};

/// Every class of values. What goes through them all names this list, so that a new class is added
/// in one place.
using ValueClasses =
    ValueClassList<PointDataType, RangeDataType, LogicalDataType, DiscreteDataType,
                   ShortTextDataType, LongTextDataType, IntegerDataType, DateTimeDataType,
                   HyperlinkDataType, PictureDataType, FileDataType, TabularDataType,
                   FloatFunctionalSeriesDataType, FloatFunctionalGriddedDataType, ListDataType,
                   EmptyDataType, LinkedRecordsDataType>;

}  // namespace lumo
