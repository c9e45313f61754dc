#pragma once

#include <vector>

#include "lumo/services/browse/AttributeMinMax.h"
#include "lumo/services/browse/AttributesRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/UnitConversionContext.h"

/// Asks for the smallest and largest values of attributes.
class LUMO_API GetAttributeMinMaxRequest
    : public lumo::AttributesRequest<GetAttributeMinMaxRequest> {
 public:
  /// Units of the answer; not sent when null.
  SmartPtr<UnitConversionContext> GetUnitConversionContext() const {
    return m_unitConversionContext;
  }
  void SetUnitConversionContext(SmartPtr<UnitConversionContext> const& unitConversionContext) {
    m_unitConversionContext = unitConversionContext;
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  SmartPtr<UnitConversionContext> m_unitConversionContext;
};

/// Smallest and largest values of attributes.
class LUMO_API GetAttributeMinMaxResponse : public lumo::Response<GetAttributeMinMaxResponse> {
 public:
  GetAttributeMinMaxResponse() = default;
  explicit GetAttributeMinMaxResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<AttributeMinMax>>& AccessMinMaxes() { return m_minMaxes; }
  std::vector<SmartPtr<AttributeMinMax>> const& AccessMinMaxes() const { return m_minMaxes; }
  void AddMinMax(SmartPtr<AttributeMinMax> const& minMax) { m_minMaxes.push_back(minMax); }

 private:
  std::vector<SmartPtr<AttributeMinMax>> m_minMaxes;
};

/// Finds the smallest and largest values of attributes. Makes its calls as `Operation.h` says.
class LUMO_API GetAttributeMinMaxImpl
    : public lumo::BrowseOperation<GetAttributeMinMaxImpl, GetAttributeMinMaxRequest,
                                   GetAttributeMinMaxResponse> {
 public:
  static constexpr char Name[] = "GetAttributeMinMax";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestAttributeMinMax(SmartPtr<GetAttributeMinMaxRequest> const& request,
                              GetAttributeMinMaxResponse* response) {
    Call(request, response);
  }
};
