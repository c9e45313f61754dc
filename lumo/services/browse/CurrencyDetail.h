#pragma once

#include <string>

#include "lumo/xml/FromXml.h"

/// A currency of a database.
class LUMO_API CurrencyDetail : public lumo::FromXml<CurrencyDetail> {
 public:
  CurrencyDetail() = default;
  explicit CurrencyDetail(XmlNode<char> const* node);

  /// Three letters, such as "EUR" (ISO 4217).
  std::string const& GetCode() const { return m_code; }
  void SetCode(std::string const& code) { m_code = code; }
  /// The currency in words.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// The factor that the server gives for the currency, 0 when it gives none. To which currency it
  /// leads the reply does not say.
  double GetFactor() const { return m_factor; }
  void SetFactor(double factor) { m_factor = factor; }

 private:
  std::string m_code;
  std::string m_name;
  double m_factor = 0;
};
