#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/DatabaseUnits.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the units of a database.
class LUMO_API GetUnits : public lumo::Request<GetUnits> {
 public:
  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
};

/// The units, database by database.
class LUMO_API GetUnitsResponse : public lumo::Response<GetUnitsResponse> {
 public:
  GetUnitsResponse() = default;
  explicit GetUnitsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<DatabaseUnits>>& AccessDatabases() { return m_databases; }
  std::vector<SmartPtr<DatabaseUnits>> const& AccessDatabases() const { return m_databases; }
  void AddDatabase(SmartPtr<DatabaseUnits> const& database) { m_databases.push_back(database); }

 private:
  std::vector<SmartPtr<DatabaseUnits>> m_databases;
};

/// Lists the units of a database. Makes its calls as `Operation.h` says.
class LUMO_API GetUnitsImpl
    : public lumo::BrowseOperation<GetUnitsImpl, GetUnits, GetUnitsResponse> {
 public:
  static constexpr char Name[] = "GetUnits";
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "GetUnitsRequest"; }
  /// Fills `response`; a null request is logged and not sent. The method hides the request class
  /// of the same name, which callers name as usual.
  void GetUnits(SmartPtr<::GetUnits> const& request, GetUnitsResponse* response) {
    Call(request, response);
  }
};
