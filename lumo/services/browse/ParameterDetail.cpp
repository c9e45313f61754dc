#include "lumo/services/browse/ParameterDetail.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Words.h"

namespace {

using ScaleType = ParameterDetail::ScaleType;
using Interpolation = ParameterDetail::Interpolation;
using ParameterType = ParameterDetail::ParameterType;

constexpr lumo::Word<ScaleType::eScaleType> kScaleWords[] = {
    {ScaleType::NotSet, "NotSet"},
    {ScaleType::Linear, "Linear"},
    {ScaleType::Log, "Log"},
};
constexpr lumo::Word<Interpolation::eInterpolation> kInterpolationWords[] = {
    {Interpolation::None, "None"},
    {Interpolation::Linear, "Linear"},
    {Interpolation::CubicSpline, "CubicSpline"},
};
constexpr lumo::Word<ParameterType::eParameterType> kTypeWords[] = {
    {ParameterType::NumericUnrestricted, "NumericUnrestricted"},
    {ParameterType::NumericRestricted, "NumericRestricted"},
    {ParameterType::Discrete, "Discrete"},
};

lumo::WordTable scales(kScaleWords);
lumo::WordTable interpolations(kInterpolationWords);
lumo::WordTable types(kTypeWords);

}  // namespace

void ParameterDetail::ScaleType::StaticInit() { scales.Fill(); }
void ParameterDetail::ScaleType::StaticShutdown() { scales.Clear(); }
ScaleType::eScaleType ParameterDetail::ScaleType::FromString(std::string const& text) {
  return scales.ValueOf(text);
}

void ParameterDetail::Interpolation::StaticInit() { interpolations.Fill(); }
void ParameterDetail::Interpolation::StaticShutdown() { interpolations.Clear(); }
Interpolation::eInterpolation ParameterDetail::Interpolation::FromString(std::string const& text) {
  return interpolations.ValueOf(text);
}

void ParameterDetail::ParameterType::StaticInit() { types.Fill(); }
void ParameterDetail::ParameterType::StaticShutdown() { types.Clear(); }
ParameterType::eParameterType ParameterDetail::ParameterType::FromString(std::string const& text) {
  return types.ValueOf(text);
}

void ParameterDetail::StaticInit() {
  ScaleType::StaticInit();
  Interpolation::StaticInit();
  ParameterType::StaticInit();
}

void ParameterDetail::StaticShutdown() {
  ScaleType::StaticShutdown();
  Interpolation::StaticShutdown();
  ParameterType::StaticShutdown();
}

ParameterDetail::ParameterDetail(XmlNode<char> const* node) : FromXml(node) {
  lumo::NodeReader in(node);
  in.Child("defaultValue", m_defaultValue);
  in.Child("scaleType", m_scaleType, ScaleType::FromString);
  in.Child("interpolationMethod", m_interpolationMethod, Interpolation::FromString);
  in.Child("parameterType", m_parameterType, ParameterType::FromString);
  in.Child("revisionInfo", m_revisionInfo);
  in.Child("helpInfo", m_helpInfo);
  in.In("parameterValues").Children("parameterValue", m_parameterValues);
  lumo::NodeReader appliesTo = in.In("appliesTo");
  appliesTo.Child("attributeReference", m_appliesToAttribute);
  appliesTo.Child("recordReference", m_appliesToRecord);
  in.Child("order", m_order);
}
