#include "lumo/values/ParameterValue.h"

#include <stdexcept>
#include <string_view>

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/NodeWriter.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<ParameterValue::eParameterValueType> kWords[] = {
    {ParameterValue::Numeric, "Numeric"},
    {ParameterValue::Discrete, "Discrete"},
};

}  // namespace

ParameterValue::eParameterValueType ParameterValue::TypeFromString(std::string const& text) {
  using Word = lumo::Word<eParameterValueType>;
  Word const* const word = lumo::FindWord(kWords, &Word::text, std::string_view(text));
  if (word != nullptr) return word->value;
  throw std::runtime_error("unknown parameter value type valid types are Numeric and Discrete");
}

std::string ParameterValue::TypeAsString() const { return lumo::WordOf(kWords, m_type, "Unknown"); }

ParameterValue::ParameterValue(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  if (in.TypeContains("Numeric")) m_type = Numeric;
  if (m_type == Numeric) {
    in.Child("Value", m_numericValue);
  } else {
    in.Child("Value", m_discreteValue);
  }
}

void ParameterValue::CreateXMLNode(XmlNode<char>* node) const {
  lumo::NodeWriter out(node);
  if (m_type == Numeric) {
    out.Attribute("xsi:type", "zbt:NumericParameterValue");
    out.Child("zbt:Value", m_numericValue);
  } else {
    out.Attribute("xsi:type", "zbt:DiscreteParameterValue");
    out.Child("zbt:Value", m_discreteValue);
  }
}
