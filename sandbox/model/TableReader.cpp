#include "sandbox/model/TableReader.h"

#include <algorithm>
#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Tables.h"
#include "sandbox/model/ValueReader.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

/// Reads tabular data in the form of an import into the stored table.
class TableReader {
 public:
  TableReader(Store& store, Attribute const& attribute, StoredValue& value, pugi::xml_node table)
      : m_store(store), m_attribute(attribute), m_value(value), m_table(table) {
    for (Row const& row : store.Rows(
             "SELECT name, type, unit FROM tabular_column WHERE attribute_id = ? ORDER BY position",
             {std::to_string(attribute.id)})) {
      m_columns.push_back({row.Text(0), row.Text(2)});
    }
    if (!table.child("b:columns")) {
      pugi::xml_node columns = table.append_child("b:columns");
      for (Column const& column : m_columns) {
        AddText(columns, "b:column", column.name).append_attribute("b:columnType") = "Local";
      }
      table.append_child("b:summaryRow");
      table.append_child("b:rows");
    }
    m_rows = table.child("b:rows");
    for (pugi::xml_node const row : m_rows.children()) {
      m_lastIdentity = std::max(m_lastIdentity, row.attribute("b:identity").as_int());
    }
  }

  void Read(pugi::xml_node from) {
    Checker in(from);
    if (auto const rows = in.Optional("zbt:Rows")) {
      m_rows.remove_children();
      Checker list(rows);
      while (list.HasMore()) ReadRow(RowIn(list, "zbt:Row"), m_rows.append_child("b:row"));
    } else {
      Checker changes(in.Required("zbt:Changes"));
      for (std::string const kind : {"InsertBefore", "Append", "Update", "Delete"}) {
        while (changes.HasMore() && Peek(changes, "zbt:" + kind)) Change(kind);
      }
      changes.End();
    }
    in.End();
    m_value.text = AllText();
  }

 private:
  struct Column {
    std::string name;
    std::string unit;
  };

  static pugi::xml_node RowIn(Checker& in, std::string const& name) {
    return in.RequiredWithAnyOf(name, {"zbt:linkingValue", "zbt:rowIdentity"});
  }
  bool Peek(Checker& changes, std::string const& name) {
    if (!changes.IsNext(name)) return false;
    m_change = RowIn(changes, name);
    return true;
  }

  void Change(std::string const& kind) {
    int const identity = m_change.attribute("zbt:rowIdentity").as_int();
    if (kind == "Append") return ReadRow(m_change, m_rows.append_child("b:row"));
    pugi::xml_node target = m_rows.find_child([identity](pugi::xml_node row) {
      return row.attribute("b:identity").as_int() == identity;
    });
    if (!target) throw Fault("the table has no row " + std::to_string(identity));
    if (kind == "InsertBefore") {
      ReadRow(m_change, m_rows.insert_child_before("b:row", target));
    } else if (kind == "Update") {
      ReadRow(m_change, target);
    } else {
      m_rows.remove_child(target);
    }
  }

  void ReadRow(pugi::xml_node from, pugi::xml_node row) {
    if (!row.attribute("b:identity")) row.append_attribute("b:identity") = ++m_lastIdentity;
    if (!row.child("b:Cells")) {
      pugi::xml_node cells = row.append_child("b:Cells");
      for (std::size_t i = 0; i < m_columns.size(); ++i) {
        cells.append_child("b:TabularDataCell").append_child("b:Empty");
      }
    }
    Checker in(from);
    Checker cells(in.Required("zbt:Cells"));
    in.End();
    while (cells.HasMore()) ReadCell(cells.RequiredWithAnyOf("zbt:Cell", {"zbt:columnName"}), row);
    std::string const linking = from.attribute("zbt:linkingValue").value();
    if (!linking.empty()) LinkRow(row, linking);
  }

  void ReadCell(pugi::xml_node from, pugi::xml_node row) {
    if (!from.attribute("zbt:columnName")) return Checker(from).End();
    std::string const name = from.attribute("zbt:columnName").value();
    auto const column = std::find_if(m_columns.begin(), m_columns.end(),
                                     [&name](Column const& c) { return c.name == name; });
    if (column == m_columns.end()) throw Fault("the table has no column \"" + name + "\"");
    Checker in(from);
    pugi::xml_node const node =
        in.RequiredWithAnyOf(from.first_child().name(), {"zbt:isNotApplicable"});
    in.End();
    std::string const kind = std::string(node.name()).substr(4);
    pugi::xml_node cell = row.child("b:Cells").first_child();
    for (auto i = m_columns.begin(); i != column; ++i) cell = cell.next_sibling();
    cell.remove_children();
    Attribute asAttribute = m_attribute;
    asAttribute.unit = column->unit;
    StoredValue ignored;
    ValueReader(m_store, asAttribute, ignored)
        .Read(kind, node, cell.append_child(("b:" + kind).c_str()));
  }

  /// A row links to the records of its database that have the linking value for their short name.
  void LinkRow(pugi::xml_node row, std::string const& linking) {
    row.remove_child("b:LinkedRecords");
    pugi::xml_node links = row.prepend_child("b:LinkedRecords");
    int const database = TableOf(m_store, m_attribute.tableId).databaseId;
    for (Record const& record :
         Records(m_store, "r.short_name = ? AND r.is_current = 1 AND d.id = ?",
                 {linking, std::to_string(database)})) {
      pugi::xml_node link = links.append_child("b:LinkedRecord");
      link.append_attribute("b:linkingValue") = linking.c_str();
      WriteRecord(link, record);
    }
  }

  std::string AllText() const {
    std::string text;
    for (pugi::xml_node const row : m_rows.children()) {
      pugi::xml_node cell = row.child("b:Cells").first_child();
      for (Column const& column : m_columns) {
        text += column.name + "=" + cell.first_child().text().get() + "\n";
        cell = cell.next_sibling();
      }
    }
    return text;
  }

  Store& m_store;
  Attribute const& m_attribute;
  StoredValue& m_value;
  pugi::xml_node m_table;
  pugi::xml_node m_rows;
  pugi::xml_node m_change;
  std::vector<Column> m_columns;
  int m_lastIdentity = 0;
};

}  // namespace

void ReadTabular(Store& store, Attribute const& attribute, pugi::xml_node from,
                 pugi::xml_node table, StoredValue& value) {
  TableReader(store, attribute, value, table).Read(from);
}

}  // namespace sandbox
