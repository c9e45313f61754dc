#pragma once

#include <string>
#include <vector>

#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/LumoDatabase.h"

/// The databases that a server holds.
class LUMO_API GetDatabasesResponse : public lumo::Response<GetDatabasesResponse> {
 public:
  GetDatabasesResponse() = default;
  explicit GetDatabasesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<LumoDatabase>>& AccessDatabases() { return m_databases; }
  std::vector<SmartPtr<LumoDatabase>> const& AccessDatabases() const { return m_databases; }
  void AddDatabase(SmartPtr<LumoDatabase> const& database) { m_databases.push_back(database); }

 private:
  std::vector<SmartPtr<LumoDatabase>> m_databases;
};

/// Lists the databases of the server. Makes its calls as `Operation.h` says.
class LUMO_API GetDatabaseImpl
    : public lumo::BrowseOperation<GetDatabaseImpl, IRequest, GetDatabasesResponse> {
 public:
  static constexpr char Name[] = "GetDatabases";
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "GetDatabasesRequest"; }
  /// Fills `response`; the request has no contents.
  void GetDatabases(GetDatabasesResponse* response) { CallWithoutRequest(response); }
};
