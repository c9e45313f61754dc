#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/HelpInfo.h"
#include "lumo/types/AttributeReference.h"
#include "lumo/types/ParameterInformation.h"
#include "lumo/types/RecordReference.h"
#include "lumo/types/RevisionInfo.h"
#include "lumo/values/ParameterValue.h"

/// Definition of a parameter.
class LUMO_API ParameterDetail : public lumo::FromXml<ParameterDetail, ParameterInformation> {
 public:
  /// Scale of the parameter's axis.
  class LUMO_API ScaleType {
   public:
    enum eScaleType : int { NotSet = 0, Linear = 1, Log = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `NotSet` for an unknown word, and for every word while the library is not initialised.
    static eScaleType FromString(std::string const& text);
  };
  /// How values between the given ones are found.
  class LUMO_API Interpolation {
   public:
    enum eInterpolation : int { None = 0, Linear = 1, CubicSpline = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `None` for an unknown word, and for every word while the library is not initialised.
    static eInterpolation FromString(std::string const& text);
  };
  /// Which values the parameter takes.
  class LUMO_API ParameterType {
   public:
    enum eParameterType : int { NumericUnrestricted = 0, NumericRestricted = 1, Discrete = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `NumericUnrestricted` for an unknown word, and for every word while the library is not
    /// initialised.
    static eParameterType FromString(std::string const& text);
  };

  /// Fills the three tables of words, and empties them again; library start-up and shut-down call
  /// them.
  static void StaticInit();
  static void StaticShutdown();

  ParameterDetail() = default;
  explicit ParameterDetail(XmlNode<char> const* node);

  /// Null when the reply gave none.
  SmartPtr<ParameterValue> GetDefaultValue() const { return m_defaultValue; }
  void SetDefaultValue(SmartPtr<ParameterValue> const& defaultValue) {
    m_defaultValue = defaultValue;
  }
  /// `NotSet` when the reply does not say.
  ScaleType::eScaleType GetScaleType() const { return m_scaleType; }
  void SetScaleType(ScaleType::eScaleType scaleType) { m_scaleType = scaleType; }
  /// How values between the given ones are found.
  Interpolation::eInterpolation GetInterpolationMethod() const { return m_interpolationMethod; }
  void SetInterpolationMethod(Interpolation::eInterpolation interpolationMethod) {
    m_interpolationMethod = interpolationMethod;
  }
  /// Which values the parameter takes.
  ParameterType::eParameterType GetParameterType() const { return m_parameterType; }
  void SetParameterType(ParameterType::eParameterType parameterType) {
    m_parameterType = parameterType;
  }
  /// Null when the reply gave none.
  SmartPtr<RevisionInfo> GetRevisionInfo() const { return m_revisionInfo; }
  void SetRevisionInfo(SmartPtr<RevisionInfo> const& revisionInfo) {
    m_revisionInfo = revisionInfo;
  }
  /// Null when the reply gave none.
  SmartPtr<HelpInfo> GetHelpInfo() const { return m_helpInfo; }
  void SetHelpInfo(SmartPtr<HelpInfo> const& helpInfo) { m_helpInfo = helpInfo; }
  /// The values that a restricted or discrete parameter takes.
  std::vector<SmartPtr<ParameterValue>>& AccessParameterValues() { return m_parameterValues; }
  std::vector<SmartPtr<ParameterValue>> const& AccessParameterValues() const {
    return m_parameterValues;
  }
  void AddParameterValue(SmartPtr<ParameterValue> const& value) {
    m_parameterValues.push_back(value);
  }
  /// The attribute for which the definition holds; null for all.
  SmartPtr<AttributeReference> GetAppliesToAttribute() const { return m_appliesToAttribute; }
  void SetAppliesToAttribute(SmartPtr<AttributeReference> const& appliesToAttribute) {
    m_appliesToAttribute = appliesToAttribute;
  }
  /// The record for which the definition holds; null for all.
  SmartPtr<RecordReference> GetAppliesToRecord() const { return m_appliesToRecord; }
  void SetAppliesToRecord(SmartPtr<RecordReference> const& appliesToRecord) {
    m_appliesToRecord = appliesToRecord;
  }
  /// Place of the parameter among those of its attribute.
  int GetOrder() const { return m_order; }
  void SetOrder(int order) { m_order = order; }

 private:
  SmartPtr<ParameterValue> m_defaultValue;
  ScaleType::eScaleType m_scaleType = ScaleType::NotSet;
  Interpolation::eInterpolation m_interpolationMethod = Interpolation::None;
  ParameterType::eParameterType m_parameterType = ParameterType::NumericUnrestricted;
  SmartPtr<RevisionInfo> m_revisionInfo;
  SmartPtr<HelpInfo> m_helpInfo;
  std::vector<SmartPtr<ParameterValue>> m_parameterValues;
  SmartPtr<AttributeReference> m_appliesToAttribute;
  SmartPtr<RecordReference> m_appliesToRecord;
  int m_order = 0;
};
