#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Classes of tables by which a table list can be restricted.
class LUMO_API TableFilters {
 public:
  enum eTablesFilter : int {
    NoFilter = 0,
    MaterialsTablesOnly = 1,
    ProcessesTablesOnly = 2,
    SubstancesTablesOnly = 3,
    LegislationsTablesOnly = 4,
    TransportTypesTablesOnly = 5,
    RegionsTablesOnly = 6,
    EndOfLifeOptionsTablesOnly = 7,
    EnergyConversionOptionsTablesOnly = 8,
    CoatingsTablesOnly = 9,
    PartsTablesOnly = 10,
    InHouseTablesOnly = 11,
    SequenceSpecificationsTablesOnly = 12,
    ElementsTablesOnly = 13,
    UniverseTablesOnly = 14,
    ProducersTablesOnly = 15,
    ShapeTablesOnly = 16,
    ReferenceTablesOnly = 17,
    MobileUseTypesTablesOnly = 18,
  };
  /// Fills the words that `FromString` knows, and empties them again; library start-up and
  /// shut-down call them.
  static void StaticInit();
  static void StaticShutdown();
  /// The word on the wire; empty for a value without one.
  static std::string ToString(eTablesFilter filter);
  /// `NoFilter` for an unknown word, and for every word while the library is not initialised.
  static eTablesFilter FromString(std::string const& text);
};
