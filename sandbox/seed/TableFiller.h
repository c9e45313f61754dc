#pragma once

#include <map>
#include <string>
#include <vector>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Tables.h"
#include "sandbox/seed/Lines.h"

namespace sandbox {

/// Makes records of one table.
class TableFiller {
 public:
  TableFiller(Store& store, std::string const& dbKey, std::string const& table);

  /// Makes a record, and the folders to it that are not there; returns its row.
  int AddIn(std::string const& folders, std::string const& name, std::string const& longName);
  /// "subsets" names, with commas between, the subsets that the record is in besides.
  void SetValue(int record, std::string const& name, std::string const& text);
  /// One record to a line, the first line names the columns. Lines may leave out the last ones.
  void AddLines(char const* data, Content content);
  /// The record of that name, made at the top when it is new.
  int Named(std::string const& name);
  /// The record of that name, which is there.
  int Known(std::string const& name) const;

 private:
  void PutInto(int record, std::vector<std::string> const& subsets);
  /// The state in which records are made: those of the elements have no versions.
  std::string State() const;

  Store& m_store;
  Table m_table;
  int m_root = 0;
  std::map<std::string, int> m_folders;
  std::map<std::string, int> m_records;
  std::map<std::string, Attribute> m_attributes;
};

}  // namespace sandbox
