#pragma once

#include <string>
#include <vector>

#include "lumo/services/engineering/Exporter.h"
#include "lumo/services/engineering/ExporterListing.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/PartialTableReference.h"

/// Asks which exporters a server has. Texts are sent when they are not empty.
class LUMO_API GetAvailableExportersRequest
    : public lumo::ExporterListing<lumo::Request<GetAvailableExportersRequest>> {
 public:
  /// Key of the database.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// The table that the exporters are for; not sent when null.
  SmartPtr<PartialTableReference> GetTable() const { return m_table; }
  void SetTable(SmartPtr<PartialTableReference> const& table) { m_table = table; }
  /// Whether the table's database must match too; sent with the table, when set.
  bool GetMatchDatabase() const { return m_matchDatabase; }
  void SetMatchDatabase(bool matchDatabase) { m_matchDatabase = matchDatabase; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  SmartPtr<PartialTableReference> m_table;
  bool m_matchDatabase = false;
};

/// Exporters of a server.
class LUMO_API GetAvailableExportersResponse
    : public lumo::Response<GetAvailableExportersResponse> {
 public:
  GetAvailableExportersResponse() = default;
  explicit GetAvailableExportersResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<Exporter>>& AccessExporters() { return m_exporters; }
  std::vector<SmartPtr<Exporter>> const& AccessExporters() const { return m_exporters; }
  void AddExporter(SmartPtr<Exporter> const& exporter) { m_exporters.push_back(exporter); }

 private:
  std::vector<SmartPtr<Exporter>> m_exporters;
};

/// Lists the exporters of a server. Makes its calls as `Operation.h` says.
class LUMO_API GetAvailableExportersImpl
    : public lumo::EngineeringOperation<GetAvailableExportersImpl, GetAvailableExportersRequest,
                                        GetAvailableExportersResponse> {
 public:
  static constexpr char Name[] = "GetAvailableExporters";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetAvailableExporters(SmartPtr<GetAvailableExportersRequest> const& request,
                             GetAvailableExportersResponse* response) {
    Call(request, response);
  }
};
