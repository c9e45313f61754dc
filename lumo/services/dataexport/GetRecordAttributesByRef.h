#pragma once

#include <vector>

#include "lumo/services/dataexport/RecordData.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/BinaryDataRepresentations.h"
#include "lumo/types/RecordFilter.h"
#include "lumo/types/UnitConversionContext.h"
#include "lumo/types/WithRecordReferences.h"

/// Asks for the values of some attributes of some records.
class LUMO_API GetRecordAttributesByRefRequest
    : public lumo::WithRecordReferences<lumo::Request<GetRecordAttributesByRefRequest>> {
 public:
  std::vector<SmartPtr<AttributeReference>>& AccessAttributeReferences() {
    return m_attributeReferences;
  }
  std::vector<SmartPtr<AttributeReference>> const& AccessAttributeReferences() const {
    return m_attributeReferences;
  }
  void AddAttributeReference(SmartPtr<AttributeReference> const& attribute) {
    m_attributeReferences.push_back(attribute);
  }
  /// Units of the answer; not sent when null.
  SmartPtr<UnitConversionContext> GetUnitConversionContext() const {
    return m_unitConversionContext;
  }
  void SetUnitConversionContext(SmartPtr<UnitConversionContext> const& unitConversionContext) {
    m_unitConversionContext = unitConversionContext;
  }
  /// Restricts the records; not sent when null.
  SmartPtr<RecordFilter> GetFilter() const { return m_filter; }
  void SetFilter(SmartPtr<RecordFilter> const& filter) { m_filter = filter; }
  /// Whether the records come with their GUIDs.
  bool GetPopulateGUIDs() const { return m_populateGUIDs; }
  void SetPopulateGUIDs(bool populateGUIDs) { m_populateGUIDs = populateGUIDs; }
  /// Whether the server may put another value in the place of one that a record lacks.
  bool GetUseFallback() const { return m_useFallback; }
  void SetUseFallback(bool useFallback) { m_useFallback = useFallback; }
  /// How files and pictures come; as a URL by default.
  BinaryDataRepresentations::eBinaryDataRepresentation GetBinaryDataRepresentation() const {
    return m_binaryDataRepresentation;
  }
  void SetBinaryDataRepresentation(
      BinaryDataRepresentations::eBinaryDataRepresentation binaryDataRepresentation) {
    m_binaryDataRepresentation = binaryDataRepresentation;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::vector<SmartPtr<AttributeReference>> m_attributeReferences;
  SmartPtr<UnitConversionContext> m_unitConversionContext;
  SmartPtr<RecordFilter> m_filter;
  bool m_populateGUIDs = false;
  bool m_useFallback = false;
  BinaryDataRepresentations::eBinaryDataRepresentation m_binaryDataRepresentation =
      BinaryDataRepresentations::URL;
};

/// Records and their values.
class LUMO_API GetRecordAttributesByRefResponse
    : public lumo::Response<GetRecordAttributesByRefResponse> {
 public:
  GetRecordAttributesByRefResponse() = default;
  explicit GetRecordAttributesByRefResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<RecordData>>& AccessRecordData() { return m_recordData; }
  std::vector<SmartPtr<RecordData>> const& AccessRecordData() const { return m_recordData; }
  void AddRecordData(SmartPtr<RecordData> const& record) { m_recordData.push_back(record); }

 private:
  std::vector<SmartPtr<RecordData>> m_recordData;
};

/// Reads values of records. Makes its calls as `Operation.h` says.
class LUMO_API GetRecordAttributesByRefImpl
    : public lumo::DataExportOperation<GetRecordAttributesByRefImpl,
                                       GetRecordAttributesByRefRequest,
                                       GetRecordAttributesByRefResponse> {
 public:
  static constexpr char Name[] = "GetRecordAttributesByRef";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestRecordAttributesByRef(SmartPtr<GetRecordAttributesByRefRequest> const& request,
                                    GetRecordAttributesByRefResponse* response) {
    Call(request, response);
  }
};
