#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/UnitConversion.h"
#include "lumo/session/IRequest.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/UnitConversionContext.h"

/// Asks how units are converted: into the units of some contexts, and for some source units.
class LUMO_API GetUnitConversions : public lumo::Request<GetUnitConversions> {
 public:
  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  std::vector<SmartPtr<UnitConversionContext>>& AccessUnitConversionContexts() {
    return m_unitConversionContexts;
  }
  std::vector<SmartPtr<UnitConversionContext>> const& AccessUnitConversionContexts() const {
    return m_unitConversionContexts;
  }
  void AddUnitConversionContext(SmartPtr<UnitConversionContext> const& context) {
    m_unitConversionContexts.push_back(context);
  }
  /// Currency of the source units; not sent when empty.
  std::string const& GetSourceCurrency() const { return m_sourceCurrency; }
  void SetSourceCurrency(std::string const& sourceCurrency) { m_sourceCurrency = sourceCurrency; }
  /// Symbols of the units to convert from.
  std::vector<std::string>& AccessSourceUnits() { return m_sourceUnits; }
  std::vector<std::string> const& AccessSourceUnits() const { return m_sourceUnits; }
  void AddSourceUnit(std::string const& symbol) { m_sourceUnits.push_back(symbol); }
  /// Currency to convert into; not sent when empty.
  std::string const& GetTargetCurrency() const { return m_targetCurrency; }
  void SetTargetCurrency(std::string const& targetCurrency) { m_targetCurrency = targetCurrency; }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  std::vector<SmartPtr<UnitConversionContext>> m_unitConversionContexts;
  std::string m_sourceCurrency;
  std::vector<std::string> m_sourceUnits;
  std::string m_targetCurrency;
};

/// The conversions that were asked for.
class LUMO_API GetUnitConversionsResponse : public lumo::Response<GetUnitConversionsResponse> {
 public:
  GetUnitConversionsResponse() = default;
  explicit GetUnitConversionsResponse(XmlNode<char> const* node);

  /// Key of the database.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  std::vector<SmartPtr<UnitConversion>>& AccessUnitConversionContexts() {
    return m_unitConversionContexts;
  }
  std::vector<SmartPtr<UnitConversion>> const& AccessUnitConversionContexts() const {
    return m_unitConversionContexts;
  }
  void AddUnitConversionContext(SmartPtr<UnitConversion> const& conversion) {
    m_unitConversionContexts.push_back(conversion);
  }
  std::vector<SmartPtr<SourceUnit>>& AccessSourceUnits() { return m_sourceUnits; }
  std::vector<SmartPtr<SourceUnit>> const& AccessSourceUnits() const { return m_sourceUnits; }
  void AddSourceUnit(SmartPtr<SourceUnit> const& unit) { m_sourceUnits.push_back(unit); }

 private:
  std::string m_dbKey;
  std::vector<SmartPtr<UnitConversion>> m_unitConversionContexts;
  std::vector<SmartPtr<SourceUnit>> m_sourceUnits;
};

/// Tells how units are converted. Makes its calls as `Operation.h` says.
class LUMO_API GetUnitConversionsImpl
    : public lumo::BrowseOperation<GetUnitConversionsImpl, GetUnitConversions,
                                   GetUnitConversionsResponse> {
 public:
  static constexpr char Name[] = "GetUnitConversions";
  using ServiceOperation::ServiceOperation;
  std::string GetRootTagName() const override { return "GetUnitConversionsRequest"; }
  /// Fills `response`; a null request is logged and not sent. The method hides the request class
  /// of the same name, which callers name as usual.
  void GetUnitConversions(SmartPtr<::GetUnitConversions> const& request,
                          GetUnitConversionsResponse* response) {
    Call(request, response);
  }
};
