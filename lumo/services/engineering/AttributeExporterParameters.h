#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"

/// The parameters that an exporter needs for one attribute: whether a record has its data.
class LUMO_API AttributeExporterParameters : public lumo::Counted<AttributeExporterParameters> {
 public:
  /// Whether a record has the data that an exporter needs.
  enum eDataPresence : int {
    Unknown = 0,
    Present = 1,
    NotApplicable = 2,
    Missing = 3,
    DataIncompatibleWithConfiguration = 4,
  };
  /// `Unknown` for an unknown word.
  static eDataPresence DataPresence_FromString(std::string const& text);
};
