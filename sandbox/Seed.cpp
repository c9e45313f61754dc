#include <string>
#include <vector>

#include "SeedData.h"
#include "Store.h"

namespace sandbox {
namespace {

constexpr char kSchema[] = R"(
CREATE TABLE database (id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, name TEXT NOT NULL);
CREATE TABLE unit (
  id INTEGER PRIMARY KEY, symbol TEXT NOT NULL UNIQUE, name TEXT NOT NULL, dimension TEXT NOT NULL,
  factor REAL NOT NULL, offset REAL NOT NULL, has_currency INTEGER NOT NULL);
CREATE TABLE unit_system (name TEXT PRIMARY KEY);
CREATE TABLE unit_system_unit (
  system TEXT NOT NULL REFERENCES unit_system, dimension TEXT NOT NULL, symbol TEXT NOT NULL,
  PRIMARY KEY (system, dimension));
CREATE TABLE currency (code TEXT PRIMARY KEY, name TEXT NOT NULL, factor REAL NOT NULL);
CREATE TABLE data_table (
  id INTEGER PRIMARY KEY, database_id INTEGER NOT NULL REFERENCES database,
  guid TEXT NOT NULL UNIQUE, name TEXT NOT NULL, UNIQUE (database_id, name));
CREATE TABLE table_filter (
  table_id INTEGER NOT NULL REFERENCES data_table, word TEXT NOT NULL,
  PRIMARY KEY (table_id, word));
CREATE TABLE attribute (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  type TEXT NOT NULL, unit TEXT NOT NULL DEFAULT '', standard_name TEXT NOT NULL DEFAULT '',
  about_id INTEGER REFERENCES attribute, is_multi_valued INTEGER NOT NULL DEFAULT 0,
  is_gridded INTEGER NOT NULL DEFAULT 0, UNIQUE (table_id, name));
CREATE TABLE attribute_discrete (
  attribute_id INTEGER NOT NULL REFERENCES attribute, position INTEGER NOT NULL,
  word TEXT NOT NULL, PRIMARY KEY (attribute_id, position));
CREATE TABLE tabular_column (
  attribute_id INTEGER NOT NULL REFERENCES attribute, position INTEGER NOT NULL,
  name TEXT NOT NULL, type TEXT NOT NULL, unit TEXT NOT NULL, PRIMARY KEY (attribute_id, position));
CREATE TABLE parameter (
  id INTEGER PRIMARY KEY, database_id INTEGER NOT NULL REFERENCES database, name TEXT NOT NULL,
  unit TEXT NOT NULL, type TEXT NOT NULL, scale TEXT NOT NULL, interpolation TEXT NOT NULL,
  UNIQUE (database_id, name));
CREATE TABLE parameter_value (
  parameter_id INTEGER NOT NULL REFERENCES parameter, position INTEGER NOT NULL,
  value TEXT NOT NULL, PRIMARY KEY (parameter_id, position));
CREATE TABLE attribute_parameter (
  attribute_id INTEGER NOT NULL REFERENCES attribute,
  parameter_id INTEGER NOT NULL REFERENCES parameter, PRIMARY KEY (attribute_id, parameter_id));
CREATE TABLE subset (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  UNIQUE (table_id, name));
-- One row per version; the current one stands in the tree.
CREATE TABLE record (
  id INTEGER PRIMARY KEY, table_id INTEGER NOT NULL REFERENCES data_table,
  parent_id INTEGER REFERENCES record, history_id INTEGER, guid TEXT NOT NULL UNIQUE,
  history_guid TEXT NOT NULL, short_name TEXT NOT NULL, long_name TEXT NOT NULL,
  is_folder INTEGER NOT NULL DEFAULT 0, version INTEGER NOT NULL DEFAULT 1,
  state TEXT NOT NULL DEFAULT 'Released', is_current INTEGER NOT NULL DEFAULT 1,
  color TEXT NOT NULL DEFAULT 'Black', created TEXT NOT NULL DEFAULT '2026-01-05T09:00:00',
  created_user TEXT NOT NULL DEFAULT 'seed', modified TEXT NOT NULL DEFAULT '2026-01-05T09:00:00',
  modified_user TEXT NOT NULL DEFAULT 'seed', update_count INTEGER NOT NULL DEFAULT 0);
CREATE INDEX record_by_parent ON record (parent_id);
CREATE INDEX record_by_history ON record (history_id);
CREATE INDEX record_by_name ON record (table_id, short_name);
CREATE TABLE record_subset (
  record_id INTEGER NOT NULL REFERENCES record, subset_id INTEGER NOT NULL REFERENCES subset,
  PRIMARY KEY (record_id, subset_id));
-- The content of the value's element in replies, and what searches look at, in the unit of the
-- attribute.
CREATE TABLE attribute_value (
  record_id INTEGER NOT NULL REFERENCES record, attribute_id INTEGER NOT NULL REFERENCES attribute,
  xml TEXT NOT NULL, low REAL, high REAL, text TEXT NOT NULL DEFAULT '',
  version INTEGER NOT NULL DEFAULT 1, PRIMARY KEY (record_id, attribute_id));
CREATE TABLE record_link_group (
  id INTEGER PRIMARY KEY, from_table_id INTEGER NOT NULL REFERENCES data_table,
  to_table_id INTEGER NOT NULL REFERENCES data_table, name TEXT NOT NULL,
  reverse_name TEXT NOT NULL, kind TEXT NOT NULL, standard_name TEXT NOT NULL DEFAULT '');
-- Between histories: a link holds for every version.
CREATE TABLE record_link (
  group_id INTEGER NOT NULL REFERENCES record_link_group,
  from_id INTEGER NOT NULL, to_id INTEGER NOT NULL,
  notes TEXT NOT NULL DEFAULT '', reverse_notes TEXT NOT NULL DEFAULT '',
  PRIMARY KEY (group_id, from_id, to_id));
)";

struct SeedAttribute {
  char const* name;
  char const* type;
  char const* unit = "";
  char const* standardName = "";
  char const* about = nullptr;  ///< the attribute that a meta-attribute describes
  /// Words of a discrete attribute, "|" between them; a leading "*" allows several. Columns of a
  /// tabular one as "name:type:unit". Parameters of points and curves; a leading "#" says gridded.
  char const* more = "";
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

std::vector<SeedDatabase> Databases() {
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
          {"Poisson's ratio", "RNGE", "", "Poisson's ratio"},
          {"Shear modulus", "RNGE", "GPa", "Shear modulus"},
          {"Yield strength (elastic limit)", "RNGE", "MPa", "Yield strength"},
          {"Yield strength: test method", "STXT", "", "", "Yield strength (elastic limit)"},
          {"Tensile strength", "RNGE", "MPa", "Tensile strength"},
          {"Compressive strength", "RNGE", "MPa", "Compressive strength"},
          {"Elongation", "RNGE", "%", "Elongation"},
          {"Fracture toughness", "RNGE", "MPa.m^0.5", "Fracture toughness"},
          {"Hardness - Vickers", "RNGE", "HV", "Vickers hardness"},
          {"Melting point", "RNGE", "degC", "Melting point"},
          {"Glass transition temperature", "RNGE", "degC"},
          {"Maximum service temperature", "RNGE", "degC"},
          {"Thermal conductivity", "RNGE", "W/m.degC", "Thermal conductivity"},
          {"Specific heat capacity", "RNGE", "J/kg.degC", "Specific heat capacity"},
          {"Thermal expansion coefficient", "RNGE", "ustrain/degC"},
          {"Electrical resistivity", "RNGE", "uohm.cm", "Electrical resistivity"},
          {"Embodied energy, primary production", "RNGE", "MJ/kg"},
          {"CO2 footprint, primary production", "RNGE", "kg/kg"},
          {"Recyclable", "LOGI"},
          {"Stress strain curve", "FUNC", "MPa", "", nullptr, "Strain|Temperature"},
          {"Typical uses", "LTXT"},
          {"Composition", "TABL", "", "Composition", nullptr,
           "Element:STXT:|Least:POIN:%|Most:POIN:%"},
          {"Yield strength against temperature", "FUNC", "MPa", "", nullptr,
           "Temperature|Condition"},
          {"Young's modulus against temperature", "FUNC", "GPa", "", nullptr, "Temperature"},
          {"Fatigue strength by temperature", "FUNC", "MPa", "", nullptr, "#Temperature|Condition"},
          {"Hardness by condition", "POIN", "HV", "", nullptr, "Temperature|Condition"},
          {"Durability: sea water", "DISC", "", "", nullptr,
           "*Excellent|Acceptable|Limited use|Unacceptable"},
          {"Year of first use", "INPT"},
          {"Number of suppliers", "INPT"},
          {"Last reviewed", "DTTM"},
          {"Data sheet", "HLNK"},
          {"Photo", "PICT"},
          {"Processing note", "FILE"}},
         {"All materials", "Metals and alloys", "Polymers", "Ceramics and glasses", "Composites",
          "Structural metals", "Education level 1", "Natural materials"}},
        {"Processes",
         {"ProcessesTablesOnly", "UniverseTablesOnly"},
         {{"Process class", "DISC", "", "", nullptr, "Shaping|Joining|Surface treatment"},
          {"Mass range", "RNGE", "kg"},
          {"Section thickness", "RNGE", "mm"},
          {"Tolerance", "RNGE", "mm"},
          {"Roughness", "RNGE", "um"},
          {"Economic batch size", "RNGE"},
          {"Process notes", "LTXT"}},
         {"All processes", "Shaping", "Joining", "Surface treatment"}},
        {"Material Producers",
         {"ProducersTablesOnly"},
         {{"Address", "LTXT"},
          {"Country", "DISC", "", "", nullptr,
           "Germany|Netherlands|Norway|United "
           "Kingdom|Austria|Belgium|Canada|Czechia|Denmark|Finland|"
           "France|Italy|Japan|Poland|Spain|Sweden|Switzerland|United States"},
          {"Web site", "HLNK"}},
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
          {"Crystal structure", "DISC", "", "", nullptr,
           "Body-centred cubic|Cubic|Diamond cubic|Face-centred cubic|Hexagonal|Tetragonal|"
           "Orthorhombic|Monoclinic|Rhombohedral"},
          {"Electronegativity (Pauling)", "POIN"},
          {"Discovered", "DTTM"}},
         {"All elements", "Metals", "Metalloids", "Nonmetals", "Noble gases", "Lanthanides",
          "Actinides"}}}},
  };
}

void AddMore(Store& store, std::string const& attributeId, SeedDatabase const& database,
             SeedAttribute const& attribute) {
  std::string more = attribute.more;
  bool const isMarked = !more.empty() && (more[0] == '*' || more[0] == '#');
  if (isMarked) {
    store.Insert(more[0] == '*' ? "UPDATE attribute SET is_multi_valued = 1 WHERE id = ?"
                                : "UPDATE attribute SET is_gridded = 1 WHERE id = ?",
                 {attributeId});
    more.erase(0, 1);
  }
  int position = 0;
  for (std::string const& part : Split(more, '|')) {
    std::string const place = std::to_string(position++);
    std::string const type = attribute.type;
    if (type == "DISC") {
      store.Insert("INSERT INTO attribute_discrete VALUES (?, ?, ?)", {attributeId, place, part});
    } else if (type == "TABL") {
      std::vector<std::string> const column = Split(part, ':');
      store.Insert(
          "INSERT INTO tabular_column VALUES (?, ?, ?, ?, ?)",
          {attributeId, place, column.at(0), column.at(1), column.size() > 2 ? column[2] : ""});
    } else {
      store.Insert(
          "INSERT INTO attribute_parameter SELECT ?, p.id FROM parameter p JOIN database d"
          " ON d.id = p.database_id WHERE p.name = ? AND d.key = ?",
          {attributeId, part, database.key});
    }
  }
}

void AddTable(Store& store, SeedDatabase const& database, SeedTable const& table) {
  std::string const guid = GuidOf(std::string(database.key) + "/" + table.name);
  store.Insert(
      "INSERT INTO data_table (database_id, guid, name) SELECT id, ?, ? FROM database WHERE key = "
      "?",
      {guid, table.name, database.key});
  std::string const id = store.LastId();
  for (char const* word : table.filters) {
    store.Insert("INSERT INTO table_filter VALUES (?, ?)", {id, word});
  }
  for (SeedAttribute const& attribute : table.attributes) {
    store.Insert(
        "INSERT INTO attribute (table_id, name, type, unit, standard_name, about_id)"
        " VALUES (?1, ?2, ?3, ?4, ?5,"
        " (SELECT a.id FROM attribute a WHERE a.table_id = ?1 AND a.name = ?6))",
        {id, attribute.name, attribute.type, attribute.unit, attribute.standardName,
         attribute.about == nullptr ? "" : attribute.about});
    AddMore(store, store.LastId(), database, attribute);
  }
  for (char const* name : table.subsets) {
    store.Insert("INSERT INTO subset (table_id, name) VALUES (?, ?)", {id, name});
  }
}

void AddUnits(Store& store) {
  for (std::vector<std::string> const& unit : Lines(kUnitData)) {
    bool const hasCurrency = unit.at(2) == "price per mass";
    store.Insert(
        "INSERT INTO unit (symbol, name, dimension, factor, offset, has_currency)"
        " VALUES (?, ?, ?, ?, ?, ?)",
        {unit[0], unit[1], unit[2], unit.at(3), unit.at(4), hasCurrency ? "1" : "0"});
  }
  store.Run(R"(
INSERT INTO currency VALUES ('EUR', 'euro', 1), ('USD', 'US dollar', 0.92);
INSERT INTO unit_system VALUES ('Metric'), ('SI'), ('US customary');
INSERT INTO unit_system_unit VALUES
  ('Metric', 'stress', 'MPa'), ('Metric', 'temperature', 'degC'),
  ('SI', 'stress', 'Pa'), ('SI', 'temperature', 'K'), ('SI', 'resistivity', 'ohm.m'),
  ('SI', 'length', 'm'), ('SI', 'thermal conductivity', 'W/m.K'),
  ('US customary', 'stress', 'ksi'), ('US customary', 'temperature', 'degF'),
  ('US customary', 'density', 'lb/in^3'), ('US customary', 'price per mass', 'EUR/lb'),
  ('US customary', 'thermal conductivity', 'BTU.ft/h.ft^2.degF'),
  ('US customary', 'specific heat', 'BTU/lb.degF'), ('US customary', 'mass', 'lb'),
  ('US customary', 'thermal expansion', 'ustrain/degF'), ('US customary', 'length', 'in'),
  ('US customary', 'fracture toughness', 'ksi.in^0.5'),
  ('US customary', 'energy per mass', 'BTU/lb'), ('US customary', 'resistivity', 'uohm.in'),
  ('US customary', 'mass per mass', 'lb/lb'),
  ('SI', 'density', 'kg/m^3'), ('SI', 'specific heat', 'J/kg.K'),
  ('SI', 'thermal expansion', 'ustrain/K'), ('SI', 'fracture toughness', 'Pa.m^0.5'),
  ('SI', 'energy per mass', 'J/kg'), ('SI', 'mass per mass', 'kg/kg'), ('SI', 'mass', 'kg'),
  ('SI', 'price per mass', 'EUR/kg'),
  ('Metric', 'density', 'kg/m^3'), ('Metric', 'thermal conductivity', 'W/m.degC'),
  ('Metric', 'specific heat', 'J/kg.degC'), ('Metric', 'thermal expansion', 'ustrain/degC'),
  ('Metric', 'resistivity', 'uohm.cm'), ('Metric', 'fracture toughness', 'MPa.m^0.5'),
  ('Metric', 'energy per mass', 'MJ/kg'), ('Metric', 'mass per mass', 'kg/kg'),
  ('Metric', 'mass', 'kg'), ('Metric', 'length', 'mm'), ('Metric', 'price per mass', 'EUR/kg');
)");
}

void AddParameters(Store& store, Content content) {
  store.Run(R"(
INSERT INTO parameter (database_id, name, unit, type, scale, interpolation)
  SELECT id, 'Temperature', 'degC', 'NumericUnrestricted', 'Linear', 'Linear' FROM database;
INSERT INTO parameter (database_id, name, unit, type, scale, interpolation)
  SELECT id, 'Time', 's', 'NumericRestricted', 'Log', 'CubicSpline' FROM database;
INSERT INTO parameter (database_id, name, unit, type, scale, interpolation)
  SELECT id, 'Condition', '', 'Discrete', 'NotSet', 'None' FROM database;
INSERT INTO parameter (database_id, name, unit, type, scale, interpolation)
  SELECT id, 'Strain', '%', 'NumericUnrestricted', 'Linear', 'Linear' FROM database;
INSERT INTO parameter_value SELECT id, 0, '1' FROM parameter WHERE name = 'Time';
INSERT INTO parameter_value SELECT id, 1, '1000' FROM parameter WHERE name = 'Time';
INSERT INTO parameter_value SELECT id, 0, 'O' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 1, 'T3' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 2, 'T6' FROM parameter WHERE name = 'Condition';
)");
  if (content != Content::Full) return;
  store.Run(R"(
INSERT INTO parameter_value SELECT id, 3, 'Annealed' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 4, 'Normalised' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 5, 'Cold worked' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 6, 'Quenched and tempered' FROM parameter
  WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 7, 'Aged' FROM parameter WHERE name = 'Condition';
INSERT INTO parameter_value SELECT id, 8, 'As cast' FROM parameter WHERE name = 'Condition';
)");
}

}  // namespace

void Seed(Store& store, Content content) {
  store.Run("BEGIN");
  store.Run(kSchema);
  AddUnits(store);
  std::vector<SeedDatabase> const databases = Databases();
  for (SeedDatabase const& database : databases) {
    store.Insert("INSERT INTO database (key, name) VALUES (?, ?)", {database.key, database.name});
  }
  AddParameters(store, content);
  for (SeedDatabase const& database : databases) {
    for (SeedTable const& table : database.tables) AddTable(store, database, table);
  }
  AddRecords(store, content);
  store.Run("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  store.Run("COMMIT");
}

}  // namespace sandbox
