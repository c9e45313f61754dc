#include "lumo/services/engineering/AttributeExporterParameters.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<AttributeExporterParameters::eDataPresence> kWords[] = {
    {AttributeExporterParameters::Present, "Present"},
    {AttributeExporterParameters::NotApplicable, "NotApplicable"},
    {AttributeExporterParameters::Missing, "Missing"},
    {AttributeExporterParameters::DataIncompatibleWithConfiguration,
     "DataIncompatibleWithConfiguration"},
};

}  // namespace

AttributeExporterParameters::eDataPresence AttributeExporterParameters::DataPresence_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}
