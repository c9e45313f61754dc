#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "Store.h"

namespace sandbox {
namespace {

constexpr char kSchema[] = R"(
CREATE TABLE database (id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, name TEXT NOT NULL);
CREATE TABLE data_table (
  id INTEGER PRIMARY KEY, database_id INTEGER NOT NULL REFERENCES database,
  guid TEXT NOT NULL UNIQUE, name TEXT NOT NULL, UNIQUE (database_id, name));
CREATE TABLE table_filter (
  table_id INTEGER NOT NULL REFERENCES data_table, word TEXT NOT NULL,
  PRIMARY KEY (table_id, word));
CREATE TABLE attribute (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  type TEXT NOT NULL, unit TEXT NOT NULL DEFAULT '', standard_name TEXT NOT NULL DEFAULT '',
  about_id INTEGER REFERENCES attribute, UNIQUE (table_id, name));
CREATE TABLE subset (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  UNIQUE (table_id, name));
CREATE TABLE record (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table,
  parent_id INTEGER REFERENCES record, guid TEXT NOT NULL UNIQUE, history_guid TEXT NOT NULL,
  short_name TEXT NOT NULL, long_name TEXT NOT NULL, is_folder INTEGER NOT NULL DEFAULT 0);
CREATE TABLE record_subset (
  record_id INTEGER NOT NULL REFERENCES record, subset_id INTEGER NOT NULL REFERENCES subset,
  PRIMARY KEY (record_id, subset_id));
CREATE TABLE attribute_value (
  record_id INTEGER NOT NULL REFERENCES record, attribute_id INTEGER NOT NULL REFERENCES attribute,
  value TEXT NOT NULL, PRIMARY KEY (record_id, attribute_id));
CREATE TABLE record_link_group (
  id INTEGER PRIMARY KEY, from_table_id INTEGER NOT NULL REFERENCES data_table,
  to_table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  reverse_name TEXT NOT NULL, kind TEXT NOT NULL);
CREATE TABLE record_link (
  group_id INTEGER NOT NULL REFERENCES record_link_group,
  from_id INTEGER NOT NULL REFERENCES record, to_id INTEGER NOT NULL REFERENCES record,
  PRIMARY KEY (group_id, from_id, to_id));
)";

struct SeedAttribute {
  char const* name;
  char const* type;
  char const* unit = "";
  char const* standardName = "";
  char const* about = nullptr;  ///< the attribute that a meta-attribute describes
};

struct SeedTable {
  char const* name;
  std::vector<char const*> filters;
  std::vector<SeedAttribute> attributes;
  std::vector<char const*> subsets;
};

struct SeedDatabase {
  char const* key;
  char const* name;
  std::vector<SeedTable> tables;
};

std::vector<SeedDatabase> Content() {
  return {
      {"ENG_MATERIALS",
       "Engineering Materials",
       {{"Materials",
         {"MaterialsTablesOnly", "UniverseTablesOnly"},
         {{"Designation", "STXT", "", "Designation"},
          {"Composition (summary)", "STXT"},
          {"Density", "RNGE", "kg/m^3", "Density"},
          {"Density: source", "STXT", "", "", "Density"},
          {"Price", "RNGE", "EUR/kg", "Price"},
          {"Young's modulus", "RNGE", "GPa", "Young's modulus"},
          {"Yield strength (elastic limit)", "RNGE", "MPa", "Yield strength"},
          {"Yield strength: test method", "STXT", "", "", "Yield strength (elastic limit)"},
          {"Tensile strength", "RNGE", "MPa", "Tensile strength"},
          {"Elongation", "RNGE", "%", "Elongation"},
          {"Fracture toughness", "RNGE", "MPa.m^0.5", "Fracture toughness"},
          {"Hardness - Vickers", "RNGE", "HV", "Vickers hardness"},
          {"Melting point", "RNGE", "degC", "Melting point"},
          {"Maximum service temperature", "RNGE", "degC"},
          {"Thermal conductivity", "RNGE", "W/m.degC", "Thermal conductivity"},
          {"Specific heat capacity", "RNGE", "J/kg.degC", "Specific heat capacity"},
          {"Thermal expansion coefficient", "RNGE", "ustrain/degC"},
          {"Electrical resistivity", "RNGE", "uohm.cm", "Electrical resistivity"},
          {"Embodied energy, primary production", "RNGE", "MJ/kg"},
          {"CO2 footprint, primary production", "RNGE", "kg/kg"},
          {"Recyclable", "LOGI"},
          {"Stress strain curve", "FUNC", "MPa"},
          {"Typical uses", "LTXT"}},
         {"All materials", "Metals and alloys", "Polymers", "Ceramics and glasses", "Composites",
          "Structural metals", "Education level 1"}},
        {"Processes",
         {"ProcessesTablesOnly", "UniverseTablesOnly"},
         {{"Process class", "DISC"},
          {"Mass range", "RNGE", "kg"},
          {"Section thickness", "RNGE", "mm"},
          {"Tolerance", "RNGE", "mm"},
          {"Roughness", "RNGE", "um"},
          {"Economic batch size", "RNGE"},
          {"Process notes", "LTXT"}},
         {"All processes", "Shaping", "Joining", "Surface treatment"}},
        {"Material Producers",
         {"ProducersTablesOnly"},
         {{"Address", "LTXT"}, {"Country", "DISC"}, {"Web site", "HLNK"}},
         {"All producers"}},
        {"References",
         {"ReferenceTablesOnly"},
         {{"Title", "STXT"}, {"Authors", "STXT"}, {"Year", "INPT"}, {"Publisher", "STXT"}},
         {"All references", "Standards"}}}},
      {"ELEMENTS",
       "Chemical Elements",
       {{"Elements",
         {"ElementsTablesOnly", "UniverseTablesOnly"},
         {{"Symbol", "STXT"},
          {"Atomic number", "INPT"},
          {"Atomic weight", "POIN"},
          {"Density at 20 degC", "POIN", "kg/m^3", "Density"},
          {"Density at 20 degC: source", "STXT", "", "", "Density at 20 degC"},
          {"Melting point", "POIN", "K", "Melting point"},
          {"Boiling point", "POIN", "K"},
          {"Crystal structure", "DISC"},
          {"Electronegativity (Pauling)", "POIN"},
          {"Discovered", "DTTM"}},
         {"All elements", "Metals", "Metalloids", "Nonmetals", "Noble gases", "Lanthanides",
          "Actinides"}}}},
  };
}

/// 64-bit FNV-1a.
std::uint64_t Hash(std::string const& text, std::uint64_t hash) {
  for (char const c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211ULL;
  }
  return hash;
}

/// A GUID made from a name, so that it is the same in every run.
std::string GuidOf(std::string const& name) {
  std::uint64_t const high = Hash(name, 14695981039346656037ULL);
  std::uint64_t const low = Hash(name, high);
  char text[37];
  std::snprintf(text, sizeof text, "%08x-%04x-5%03x-a%03x-%012llx",
                static_cast<unsigned>(high >> 32U), static_cast<unsigned>((high >> 16U) & 0xFFFFU),
                static_cast<unsigned>(high & 0xFFFU), static_cast<unsigned>(low >> 52U),
                static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
  return text;
}

void AddTable(Store& store, SeedDatabase const& database, SeedTable const& table) {
  std::string const guid = GuidOf(std::string(database.key) + "/" + table.name);
  store.Insert(
      "INSERT INTO data_table (database_id, guid, name) SELECT id, ?, ? FROM database WHERE key = "
      "?",
      {guid, table.name, database.key});
  for (char const* word : table.filters) {
    store.Insert("INSERT INTO table_filter SELECT id, ? FROM data_table WHERE guid = ?",
                 {word, guid});
  }
  for (SeedAttribute const& attribute : table.attributes) {
    store.Insert(
        "INSERT INTO attribute (table_id, name, type, unit, standard_name, about_id)"
        " SELECT t.id, ?, ?, ?, ?, (SELECT a.id FROM attribute a WHERE a.table_id = t.id"
        " AND a.name = ?) FROM data_table t WHERE t.guid = ?",
        {attribute.name, attribute.type, attribute.unit, attribute.standardName,
         attribute.about == nullptr ? "" : attribute.about, guid});
  }
  for (char const* name : table.subsets) {
    store.Insert("INSERT INTO subset (table_id, name) SELECT id, ? FROM data_table WHERE guid = ?",
                 {name, guid});
  }
}

}  // namespace

void Seed(Store& store) {
  store.Run("BEGIN");
  store.Run(kSchema);
  for (SeedDatabase const& database : Content()) {
    store.Insert("INSERT INTO database (key, name) VALUES (?, ?)", {database.key, database.name});
    for (SeedTable const& table : database.tables) AddTable(store, database, table);
  }
  store.Run("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  store.Run("COMMIT");
}

}  // namespace sandbox
