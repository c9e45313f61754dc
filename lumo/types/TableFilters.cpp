#include "lumo/types/TableFilters.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<TableFilters::eTablesFilter> kWords[] = {
    {TableFilters::NoFilter, "NoFilter"},
    {TableFilters::MaterialsTablesOnly, "MaterialsTablesOnly"},
    {TableFilters::ProcessesTablesOnly, "ProcessesTablesOnly"},
    {TableFilters::SubstancesTablesOnly, "SubstancesTablesOnly"},
    {TableFilters::LegislationsTablesOnly, "LegislationsTablesOnly"},
    {TableFilters::TransportTypesTablesOnly, "TransportTypesTablesOnly"},
    {TableFilters::RegionsTablesOnly, "RegionsTablesOnly"},
    {TableFilters::EndOfLifeOptionsTablesOnly, "EndOfLifeOptionsTablesOnly"},
    {TableFilters::EnergyConversionOptionsTablesOnly, "EnergyConversionOptionsTablesOnly"},
    {TableFilters::CoatingsTablesOnly, "CoatingsTablesOnly"},
    {TableFilters::PartsTablesOnly, "PartsTablesOnly"},
    {TableFilters::InHouseTablesOnly, "InHouseTablesOnly"},
    {TableFilters::SequenceSpecificationsTablesOnly, "SequenceSpecificationsTablesOnly"},
    {TableFilters::ElementsTablesOnly, "ElementsTablesOnly"},
    {TableFilters::UniverseTablesOnly, "UniverseTablesOnly"},
    {TableFilters::ProducersTablesOnly, "ProducersTablesOnly"},
    {TableFilters::ShapeTablesOnly, "ShapeTablesOnly"},
    {TableFilters::ReferenceTablesOnly, "ReferenceTablesOnly"},
    {TableFilters::MobileUseTypesTablesOnly, "MobileUseTypesTablesOnly"},
};

lumo::WordTable table(kWords);

}  // namespace

void TableFilters::StaticInit() { table.Fill(); }
void TableFilters::StaticShutdown() { table.Clear(); }

std::string TableFilters::ToString(eTablesFilter filter) {
  return lumo::WordOf(kWords, filter, "");
}

TableFilters::eTablesFilter TableFilters::FromString(std::string const& text) {
  return table.ValueOf(text);
}
