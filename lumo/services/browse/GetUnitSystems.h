#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/WithCurrencies.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// Asks for the unit systems and the currencies of a database.
class LUMO_API GetUnitSystems : public lumo::Request<GetUnitSystems> {
 public:
  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// Whether the currencies are left out.
  bool GetExcludeCurrencies() const { return m_excludeCurrencies; }
  void SetExcludeCurrencies(bool excludeCurrencies) { m_excludeCurrencies = excludeCurrencies; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  bool m_excludeCurrencies = false;
};

/// Unit systems and currencies of a database.
class LUMO_API GetUnitSystemsResponse
    : public lumo::WithCurrencies<lumo::Response<GetUnitSystemsResponse>> {
 public:
  GetUnitSystemsResponse() = default;
  explicit GetUnitSystemsResponse(XmlNode<char> const* node);

  /// Key of the database.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// Names of the unit systems.
  std::vector<std::string>& AccessUnitSystems() { return m_unitSystems; }
  std::vector<std::string> const& AccessUnitSystems() const { return m_unitSystems; }
  void AddUnitSystem(std::string const& unitSystem) { m_unitSystems.push_back(unitSystem); }

 private:
  std::string m_dbKey;
  std::vector<std::string> m_unitSystems;
};

/// Lists unit systems and currencies. Makes its calls as `Operation.h` says.
class LUMO_API GetUnitSystemsImpl
    : public lumo::BrowseOperation<GetUnitSystemsImpl, GetUnitSystems, GetUnitSystemsResponse> {
 public:
  static constexpr char Name[] = "GetUnitSystems";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent. The method hides the request class
  /// of the same name, which callers name as usual.
  void GetUnitSystems(SmartPtr<::GetUnitSystems> const& request, GetUnitSystemsResponse* response) {
    Call(request, response);
  }
};
