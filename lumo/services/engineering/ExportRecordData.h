#pragma once

#include <string>
#include <vector>

#include "lumo/services/engineering/RecordsRequest.h"
#include "lumo/services/engineering/UnittedParameterValue.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/UnitConversionContext.h"
#include "lumo/xml/NodeWriter.h"

/// Runs an exporter.
class LUMO_API ExportRecordDataRequest : public lumo::RecordsRequest<ExportRecordDataRequest> {
 public:
  /// The attributes to export; not sent when there are none.
  std::vector<SmartPtr<AttributeReference>>& AccessAttributes() { return m_attributes; }
  std::vector<SmartPtr<AttributeReference>> const& AccessAttributes() const { return m_attributes; }
  void AddAttribute(SmartPtr<AttributeReference> const& attribute) {
    m_attributes.push_back(attribute);
  }
  /// Key of the exporter.
  std::string const& GetExporterKey() const { return m_exporterKey; }
  void SetExporterKey(std::string const& exporterKey) { m_exporterKey = exporterKey; }
  /// Units of the output; not sent when null.
  SmartPtr<UnitConversionContext> GetUnitConversionContext() const {
    return m_unitConversionContext;
  }
  void SetUnitConversionContext(SmartPtr<UnitConversionContext> const& unitConversionContext) {
    m_unitConversionContext = unitConversionContext;
  }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetRecordFilter() const { return m_recordFilter; }
  void SetRecordFilter(SmartPtr<RecordFilter> const& recordFilter) {
    m_recordFilter = recordFilter;
  }
  /// How many figures numbers have in the output; not sent when 0 or less.
  int GetSignificantFigures() const { return m_significantFigures; }
  void SetSignificantFigures(int significantFigures) { m_significantFigures = significantFigures; }
  /// Stops before the step of the exporter with that index; below 0, the default, the id decides.
  int GetStopBeforeIndex() const { return m_stopBeforeIndex; }
  void SetStopBeforeIndex(int stopBeforeIndex) { m_stopBeforeIndex = stopBeforeIndex; }
  /// Stops before the step of that id; not sent when empty.
  std::string const& GetStopBeforeId() const { return m_stopBeforeId; }
  void SetStopBeforeId(std::string const& stopBeforeId) { m_stopBeforeId = stopBeforeId; }
  /// Values for the parameters that the exporter needs.
  std::vector<UnittedParameterValue>& AccessParameterValues() { return m_parameterValues; }
  std::vector<UnittedParameterValue> const& AccessParameterValues() const {
    return m_parameterValues;
  }
  void AddParameterValue(UnittedParameterValue const& value) { m_parameterValues.push_back(value); }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  void WriteParameterValues(lumo::NodeWriter& out) const;
  void WriteStop(lumo::NodeWriter& out) const;

  std::vector<UnittedParameterValue> m_parameterValues;
  std::vector<SmartPtr<AttributeReference>> m_attributes;
  std::string m_exporterKey;
  SmartPtr<UnitConversionContext> m_unitConversionContext;
  SmartPtr<RecordFilter> m_recordFilter;
  int m_significantFigures = 0;
  int m_stopBeforeIndex = -1;
  std::string m_stopBeforeId;
};

/// What an exporter put out.
class LUMO_API ExportRecordDataResponse : public lumo::Response<ExportRecordDataResponse> {
 public:
  ExportRecordDataResponse() = default;
  explicit ExportRecordDataResponse(XmlNode<char> const* node);

  /// The whole output as text.
  std::string const& GetExportResult() const { return m_exportResult; }
  void SetExportResult(std::string const& exportResult) { m_exportResult = exportResult; }

 private:
  std::string m_exportResult;
};

/// Runs exporters. Makes its calls as `Operation.h` says.
class LUMO_API ExportRecordDataImpl
    : public lumo::EngineeringOperation<ExportRecordDataImpl, ExportRecordDataRequest,
                                        ExportRecordDataResponse> {
 public:
  static constexpr char Name[] = "ExportRecordData";
  using ServiceOperation::ServiceOperation;
  std::string GetResponseTagName() const override { return "text"; }
  /// Fills `response`; a null request is logged and not sent.
  void ExportRecordData(SmartPtr<ExportRecordDataRequest> const& request,
                        ExportRecordDataResponse* response) {
    Call(request, response);
  }
};
