#pragma once

#include "lumo/session/ServiceLayerResponse.h"
#include "lumo/xml/FromXml.h"

/// Base of every response: what the call came to.
class LUMO_API IResponse : public SmartPtrTarget_ts {
 public:
  using HoldsNothingRead = IResponse;
  /// Null before the call.
  SmartPtr<ServiceLayerResponse> GetServiceLayerResponse() const { return m_serviceLayerResponse; }
  void SetServiceLayerResponse(SmartPtr<ServiceLayerResponse> const& outcome) {
    m_serviceLayerResponse = outcome;
  }

 private:
  SmartPtr<ServiceLayerResponse> m_serviceLayerResponse;
};

namespace lumo {

/// Base of a response class: `class GetTablesResponse : public lumo::Response<GetTablesResponse>`.
template <class T>
using Response = FromXml<T, IResponse>;

}  // namespace lumo
