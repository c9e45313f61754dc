#pragma once

#include <vector>

#include "lumo/services/browse/CurrencyDetail.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"

/// The currencies that the server knows.
class LUMO_API GetCurrenciesResponse : public lumo::Response<GetCurrenciesResponse> {
 public:
  GetCurrenciesResponse() = default;
  explicit GetCurrenciesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<CurrencyDetail>>& AccessCurrencies() { return m_currencies; }
  std::vector<SmartPtr<CurrencyDetail>> const& AccessCurrencies() const { return m_currencies; }
  void AddCurrency(SmartPtr<CurrencyDetail> const& currency) { m_currencies.push_back(currency); }

 private:
  std::vector<SmartPtr<CurrencyDetail>> m_currencies;
};

/// Lists the currencies of the server. Makes its calls as `Operation.h` says.
class LUMO_API GetCurrenciesImpl
    : public lumo::BrowseOperation<GetCurrenciesImpl, IRequest, GetCurrenciesResponse> {
 public:
  static inline std::string const Name = "GetCurrencies";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; the request has no contents.
  void GetCurrencies(GetCurrenciesResponse* response) { CallWithoutRequest(response); }
};
