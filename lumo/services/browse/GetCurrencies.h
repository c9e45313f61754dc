#pragma once

#include <vector>

#include "lumo/services/browse/WithCurrencies.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// The currencies that the server knows.
class LUMO_API GetCurrenciesResponse
    : public lumo::WithCurrencies<lumo::Response<GetCurrenciesResponse>> {
 public:
  GetCurrenciesResponse() = default;
  explicit GetCurrenciesResponse(XmlNode<char> const* node);

 private:
};

/// Lists the currencies of the server. Makes its calls as `Operation.h` says.
class LUMO_API GetCurrenciesImpl
    : public lumo::BrowseOperation<GetCurrenciesImpl, IRequest, GetCurrenciesResponse> {
 public:
  static constexpr char Name[] = "GetCurrencies";
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "GetCurrenciesRequest"; }
  /// Fills `response`; the request has no contents.
  void GetCurrencies(GetCurrenciesResponse* response) { CallWithoutRequest(response); }
};
