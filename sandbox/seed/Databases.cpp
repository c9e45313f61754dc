#include "sandbox/seed/Databases.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "sandbox/model/Records.h"
#include "sandbox/seed/Lines.h"
#include "sandbox/seed/SeedData.h"

namespace sandbox {
namespace {

using Line = std::vector<std::string>;

/// A column of a line; empty when it is "-" or left out.
std::string Column(Line const& line, std::size_t index) {
  return index < line.size() && line[index] != "-" ? line[index] : "";
}

/// Makes a parameter in every database.
void MakeParameter(Store& store, Line const& line) {
  store.Insert(
      "INSERT INTO parameter (database_id, name, unit, type, scale, interpolation)"
      " SELECT id, ?, ?, ?, ?, ? FROM database",
      {line.at(1), Column(line, 2), line.at(3), line.at(4), line.at(5)});
  int position = 0;
  for (std::string const& value : Split(Column(line, 6), ';')) {
    store.Insert("INSERT INTO parameter_value SELECT id, ?, ? FROM parameter WHERE name = ?",
                 {std::to_string(position++), value, line.at(1)});
  }
}

/// Makes what databases.txt says, line by line; the databases themselves are there.
class DatabaseMaker {
 public:
  explicit DatabaseMaker(Store& store) : m_store(store) {}

  void Make(Line const& line) {
    if (line[0] == "parameter") {
      MakeParameter(m_store, line);
    } else if (line[0] == "database") {
      EnterDatabase(line);
    } else if (line[0] == "table") {
      MakeTable(line);
    } else if (line[0] == "attribute") {
      MakeAttribute(line);
    } else {
      throw std::runtime_error("databases.txt: " + line[0]);
    }
  }

 private:
  void EnterDatabase(Line const& line) {
    m_key = line.at(1);
    m_database = m_store.Only("SELECT id FROM database WHERE key = ?", {m_key}).Text(0);
  }

  void MakeTable(Line const& line) {
    std::string const& name = line.at(1);
    m_store.Insert("INSERT INTO data_table (database_id, guid, name) VALUES (?, ?, ?)",
                   {m_database, GuidOf(m_key + "/" + name), name});
    m_table = m_store.LastId();
    for (std::string const& word : Split(line.at(2), ',')) {
      m_store.Insert("INSERT INTO table_filter VALUES (?, ?)", {m_table, word});
    }
    for (std::string const& subset : Split(line.at(3), ',')) {
      m_store.Insert("INSERT INTO subset (table_id, name) VALUES (?, ?)", {m_table, subset});
    }
  }

  void MakeAttribute(Line const& line) {
    std::string const& type = line.at(2);
    std::string more = Column(line, 6);
    char const mark = more.empty() ? ' ' : more[0];
    if (mark == '*' || mark == '#') more.erase(0, 1);
    m_store.Insert(
        "INSERT INTO attribute (table_id, name, type, unit, standard_name, about_id,"
        " is_multi_valued, is_gridded) VALUES (?1, ?2, ?3, ?4, ?5,"
        " (SELECT a.id FROM attribute a WHERE a.table_id = ?1 AND a.name = ?6), ?7, ?8)",
        {m_table, line.at(1), type, Column(line, 3), Column(line, 4), Column(line, 5),
         mark == '*' ? "1" : "0", mark == '#' ? "1" : "0"});
    std::string const attribute = m_store.LastId();
    int position = 0;
    for (std::string const& part : Split(more, ';')) {
      AddPart(attribute, type, std::to_string(position++), part);
    }
  }

  /// A word, a column or a parameter of the attribute.
  void AddPart(std::string const& attribute, std::string const& type, std::string const& place,
               std::string const& part) {
    if (type == "DISC") {
      m_store.Insert("INSERT INTO attribute_discrete VALUES (?, ?, ?)", {attribute, place, part});
    } else if (type == "TABL") {
      Line const column = Split(part, ':');
      m_store.Insert("INSERT INTO tabular_column VALUES (?, ?, ?, ?, ?)",
                     {attribute, place, column.at(0), column.at(1), Column(column, 2)});
    } else {
      m_store.Insert(
          "INSERT INTO attribute_parameter SELECT ?, id FROM parameter"
          " WHERE name = ? AND database_id = ?",
          {attribute, part, m_database});
    }
  }

  Store& m_store;
  std::string m_key;
  std::string m_database;
  std::string m_table;
};

}  // namespace

void AddUnits(Store& store) {
  for (std::vector<std::string> const& unit : Lines(kUnitData)) {
    bool const hasCurrency = unit.at(2) == "price per mass";
    store.Insert(
        "INSERT INTO unit (symbol, name, dimension, factor, offset, has_currency)"
        " VALUES (?, ?, ?, ?, ?, ?)",
        {unit[0], unit[1], unit[2], unit.at(3), unit.at(4), hasCurrency ? "1" : "0"});
  }
  for (Line const& currency : Lines(kCurrencyData)) {
    store.Insert("INSERT INTO currency VALUES (?, ?, ?)", currency);
  }
  for (Line const& line : Lines(kUnitSystemData)) {
    store.Insert("INSERT OR IGNORE INTO unit_system VALUES (?)", {line.at(0)});
    store.Insert("INSERT INTO unit_system_unit VALUES (?, ?, ?)", line);
  }
}

void AddDatabases(Store& store) {
  std::vector<Line> const lines = Lines(kDatabaseData);
  for (Line const& line : lines) {
    if (line[0] != "database") continue;
    store.Insert("INSERT INTO database (key, name) VALUES (?, ?)", {line.at(1), line.at(2)});
  }
  DatabaseMaker maker(store);
  for (Line const& line : lines) maker.Make(line);
}
}  // namespace sandbox
