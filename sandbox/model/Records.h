#pragma once

#include <string>
#include <vector>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// One version of a record; records are addressed by their history, which is the same for all
/// versions.
struct Record {
  int id = 0;
  int historyId = 0;
  int tableId = 0;
  int parentId = 0;  ///< row of the current version of the parent; 0 at the top
  int version = 0;
  std::string guid;
  std::string historyGuid;
  std::string shortName;
  std::string longName;
  std::string state;
  std::string color;
  std::string dbKey;
  bool isFolder = false;
};

/// Rows by a condition on the columns of record r and database d.
std::vector<Record> Records(Store& store, std::string const& condition,
                            std::vector<std::string> const& values);
Record ReadRecord(Store& store, pugi::xml_node node);
/// The records of `<zbt:recordReferences>`.
std::vector<Record> ReadRecords(Store& store, pugi::xml_node list, char const* item = "zbt:record");

/// Append the children by which a reply names a record.
void WriteRecord(pugi::xml_node node, Record const& record, bool withGuids = false);
/// Short name, full name and reference.
void WriteNamedRecord(pugi::xml_node node, Record const& record, bool withGuids = false);

/// A GUID made from a name, so that it is the same in every run.
std::string GuidOf(std::string const& name);

/// A record to make; the parent is a row, 0 for the top of the tree.
struct NewRecord {
  int tableId = 0;
  int parentId = 0;
  std::string shortName;
  std::string longName;
  bool isFolder = false;
  std::string state = "Released";
};
/// Makes it and returns its row.
int AddRecord(Store& store, NewRecord const& record);

}  // namespace sandbox
