#pragma once

#include <string>

#include "sandbox/store/Store.h"

namespace sandbox {

/// A file or a picture with its MIME type.
struct Data {
  std::string bytes;
  std::string contentType;
};

/// Path on the server under which the data of a record's attribute is fetched and put.
std::string DataPath(int recordId, int attributeId);
/// The data in a record's file or picture; throws `Fault` when there is none.
Data LoadData(Store& store, int recordId, int attributeId);
/// Replaces the data, or makes a value that holds them.
void SaveData(Store& store, int recordId, int attributeId, Data const& data);

}  // namespace sandbox
