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
/// `T` reads with `NodeReader` alone, so that it may be built while the reply is parsed; a class
/// that looks at nodes itself derives from `FromXml<T, IResponse>`.
template <class T>
class Response : public FromXml<T, IResponse> {
 public:
  /// The class that promises to read with `NodeReader` alone.
  using ReadsWithNodeReader = T;
  using FromXml<T, IResponse>::FromXml;
  Response() = default;
};

}  // namespace lumo
