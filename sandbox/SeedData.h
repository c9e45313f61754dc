#pragma once

#include <string>
#include <vector>

#include "Store.h"

namespace sandbox {

/// The data files, made part of the program when it is built.
extern char const kUnitData[];
extern char const kMetalData[];
extern char const kMaterialData[];
extern char const kProcessData[];
extern char const kProducerData[];
extern char const kReferenceData[];
extern char const kElementData[];
extern char const kValueData[];
extern char const kLinkData[];

std::string Trimmed(std::string const& text);
/// Parts between the separators, trimmed; nothing for an empty text.
std::vector<std::string> Split(std::string const& text, char separator);
/// The lines of a data file in their "|"-separated columns, comments and empty lines left out.
/// Lines that belong to the minimal content too begin with "*", which is taken off.
std::vector<std::vector<std::string>> Lines(char const* data, Content content = Content::Full);
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

/// Fills the tables with records, values, versions and links.
void AddRecords(Store& store, Content content);

}  // namespace sandbox
