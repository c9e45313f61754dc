#pragma once

#include <string>
#include <vector>

#include "lumo/toolkit/Value.h"

namespace lumo {

/// Some records of a table and what is to be read of them, for another process or machine. It goes
/// there as one line of text, without user and password:
///
///     for (auto const& part : selection.Partitions(1000, {"Density"})) Send(part.ToText());
///     ...
///     auto const part = lumo::Partition::FromText(Receive());
///     for (auto const& record : Client::Connect(part.server).Read(part)) Use(record);
struct LUMO_API Partition {
  std::string server = {};                   ///< its URL
  std::string database = {};                 ///< key
  std::string table = {};                    ///< name
  std::vector<std::string> attributes = {};  ///< names of those that are read
  std::vector<RecordId> records = {};        ///< each by its identity

  /// "lumo/1 URL DATABASE TABLE ATTRIBUTE,ATTRIBUTE 12-40,44": unusual characters as in URLs.
  std::string ToText() const;
  /// Throws `Error` (InvalidArgument) for a text that is none.
  static Partition FromText(std::string const& text);
};

}  // namespace lumo
