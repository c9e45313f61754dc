#pragma once

#include <string>
#include <vector>

#include "lumo/services/engineering/Exporter.h"
#include "lumo/services/engineering/ExporterListing.h"
#include "lumo/services/engineering/RecordsRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordReference.h"

/// Asks which exporters apply to records. Texts are sent when they are not empty.
class LUMO_API ExportersForRecordsRequest
    : public lumo::ExporterListing<lumo::RecordsRequest<ExportersForRecordsRequest>> {
 public:
  /// Whether only exporters for a tool and a model are listed.
  bool GetPackageAndModelRequired() const { return m_packageAndModelRequired; }
  void SetPackageAndModelRequired(bool packageAndModelRequired) {
    m_packageAndModelRequired = packageAndModelRequired;
  }
  /// Whether only exporters of single attributes are listed.
  bool GetSpecificAttributeExportersOnly() const { return m_specificAttributeExportersOnly; }
  void SetSpecificAttributeExportersOnly(bool specificAttributeExportersOnly) {
    m_specificAttributeExportersOnly = specificAttributeExportersOnly;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  bool m_packageAndModelRequired = false;
  bool m_specificAttributeExportersOnly = false;
};

/// Exporters that apply, record by record.
class LUMO_API ExportersForRecordsResponse : public lumo::Response<ExportersForRecordsResponse> {
 public:
  ExportersForRecordsResponse() = default;
  explicit ExportersForRecordsResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<ExportersForRecord>>& AccessRecords() { return m_records; }
  std::vector<SmartPtr<ExportersForRecord>> const& AccessRecords() const { return m_records; }
  void AddRecord(SmartPtr<ExportersForRecord> const& record) { m_records.push_back(record); }

 private:
  std::vector<SmartPtr<ExportersForRecord>> m_records;
};

/// Lists the exporters that apply to records. Makes its calls as `Operation.h` says.
class LUMO_API ExportersForRecordsImpl
    : public lumo::EngineeringOperation<ExportersForRecordsImpl, ExportersForRecordsRequest,
                                        ExportersForRecordsResponse> {
 public:
  static constexpr char Name[] = "ExportersForRecords";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetExportersForRecords(SmartPtr<ExportersForRecordsRequest> const& request,
                              ExportersForRecordsResponse* response) {
    Call(request, response);
  }
};
