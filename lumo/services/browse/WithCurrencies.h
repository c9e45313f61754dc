#pragma once

#include <vector>

#include "lumo/services/browse/CurrencyDetail.h"

namespace lumo {

/// Adds a list of currencies to a response.
template <class Base>
class WithCurrencies : public Base {
 public:
  std::vector<SmartPtr<CurrencyDetail>>& AccessCurrencies() { return m_currencies; }
  std::vector<SmartPtr<CurrencyDetail>> const& AccessCurrencies() const { return m_currencies; }
  void AddCurrency(SmartPtr<CurrencyDetail> const& currency) { m_currencies.push_back(currency); }

 protected:
  std::vector<SmartPtr<CurrencyDetail>> m_currencies;
};

}  // namespace lumo
