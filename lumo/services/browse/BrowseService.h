#pragma once

#include <string>

#include "lumo/services/browse/GetDatabases.h"
#include "lumo/services/browse/GetSubsets.h"
#include "lumo/services/browse/GetTables.h"

/// Structure and contents of databases.
class LUMO_API BrowseService : public SmartPtrTarget_ts {
 public:
  /// The session must outlive the service and its operations.
  explicit BrowseService(LumoSession* session);
  /// Namespace of the service for an interface version such as "16/01".
  static std::string GetBrowseDefinition(std::string const& version);

  SmartPtr<GetDatabaseImpl> GetGetDatabaseImpl() const { return m_getDatabase; }
  SmartPtr<GetTablesImpl> GetGetTablesImpl() const { return m_getTables; }
  SmartPtr<GetSubsetsImpl> GetGetSubsetsImpl() const { return m_getSubsets; }

 private:
  SmartPtr<GetDatabaseImpl> m_getDatabase;
  SmartPtr<GetTablesImpl> m_getTables;
  SmartPtr<GetSubsetsImpl> m_getSubsets;
};
