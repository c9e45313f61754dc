#pragma once

#include <string>
#include <vector>

#include "lumo/services/engineering/AttributeExporterParameters.h"
#include "lumo/services/engineering/RecordsRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/UnitConversionContext.h"
#include "lumo/xml/FromXml.h"

/// What an exporter needs of one record.
class LUMO_API RecordExporterParameters : public lumo::FromXml<RecordExporterParameters> {
 public:
  RecordExporterParameters() = default;
  explicit RecordExporterParameters(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }
  std::vector<SmartPtr<AttributeExporterParameters>>& AccessAttributes() { return m_attributes; }
  std::vector<SmartPtr<AttributeExporterParameters>> const& AccessAttributes() const {
    return m_attributes;
  }
  void AddAttribute(SmartPtr<AttributeExporterParameters> const& attribute) {
    m_attributes.push_back(attribute);
  }

 private:
  SmartPtr<RecordReference> m_record;
  std::vector<SmartPtr<AttributeExporterParameters>> m_attributes;
};

/// Asks which parameters an exporter needs for records.
class LUMO_API GetExporterParametersRequest
    : public lumo::RecordsRequest<GetExporterParametersRequest> {
 public:
  /// Key of the exporter.
  std::string const& GetExporterKey() const { return m_exporterKey; }
  void SetExporterKey(std::string const& exporterKey) { m_exporterKey = exporterKey; }
  /// Units of the answer; not sent when null.
  SmartPtr<UnitConversionContext> GetUnitConversionContext() const {
    return m_unitConversionContext;
  }
  void SetUnitConversionContext(SmartPtr<UnitConversionContext> const& unitConversionContext) {
    m_unitConversionContext = unitConversionContext;
  }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_exporterKey;
  SmartPtr<UnitConversionContext> m_unitConversionContext;
  bool m_populateGUIDs = false;
};

/// What an exporter needs, record by record.
class LUMO_API GetExporterParametersResponse
    : public lumo::Response<GetExporterParametersResponse> {
 public:
  GetExporterParametersResponse() = default;
  explicit GetExporterParametersResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordExporterParameters>>& AccessRecords() { return m_records; }
  std::vector<SmartPtr<RecordExporterParameters>> const& AccessRecords() const { return m_records; }
  void AddRecord(SmartPtr<RecordExporterParameters> const& record) { m_records.push_back(record); }

 private:
  std::vector<SmartPtr<RecordExporterParameters>> m_records;
};

/// Tells what an exporter needs. Makes its calls as `Operation.h` says.
class LUMO_API GetExporterParametersImpl
    : public lumo::EngineeringOperation<GetExporterParametersImpl, GetExporterParametersRequest,
                                        GetExporterParametersResponse> {
 public:
  static constexpr char Name[] = "GetExporterParameters";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void GetExporterParameters(SmartPtr<GetExporterParametersRequest> const& request,
                             GetExporterParametersResponse* response) {
    Call(request, response);
  }
};
