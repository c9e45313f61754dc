#include "lumo/types/ExporterListingModes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<ExporterListingModes::eExporterListingMode> kWords[] = {
    {ExporterListingModes::IncludeAll, "IncludeAll"},
    {ExporterListingModes::LatestVersionPerName, "LatestVersionPerName"},
};

}  // namespace

std::string ExporterListingModes::ExporterListingMode_ToString(eExporterListingMode mode) {
  return lumo::WordOf(kWords, mode, "");
}
