#include "sandbox/model/ValueReader.h"

#include "sandbox/Fault.h"
#include "sandbox/model/Curves.h"
#include "sandbox/model/ParameterValues.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void ValueReader::Read(std::string const& kind, pugi::xml_node from, pugi::xml_node to) {
  ReadKind(kind, from, to);
  m_value.low = m_figures.Low();
  m_value.high = m_figures.High();
}

void ValueReader::ReadKind(std::string const& kind, pugi::xml_node from, pugi::xml_node to) {
  if (kind == "Range") return ReadRange(from, to);
  if (kind == "Point") return ReadPoint(from, to);
  if (kind == "Discrete") return ReadDiscrete(from, to);
  if (kind == "Hyperlink") return ReadTexts(from, to, {"Value", "Description"});
  if (kind == "File")
    return ReadTexts(from, to, {"data", "contentType", "fileName", "description"});
  if (kind == "Picture") return ReadTexts(from, to, {"data", "contentType"});
  if (kind == "FloatFunctionalSeries") return ReadSeries(m_store, m_figures, from, to);
  if (kind == "FloatFunctionalGridded") return ReadGridded(m_store, m_figures, from, to);
  if (kind == "Empty" || kind == "List") return Checker(from).End();
  std::string text = TextOf(from);
  if (kind == "Integer") m_figures.Add(IntegerOf(from));
  if (kind == "Logical") text = BooleanOf(from) ? "true" : "false";
  m_value.text += text + "\n";
  to.text().set(text.c_str());
}

std::string ValueReader::ReadUnit(Checker& in, pugi::xml_node to) {
  bool const isEstimated = BooleanOf(in.Required("zbt:Estimated"));
  std::string unit = TextOf(in.Required("zbt:UnitSymbol"));
  AddText(to, "b:UnitSymbol", m_attribute.unit);
  AddText(to, "b:Estimated", isEstimated ? "true" : "false");
  return unit;
}

void ValueReader::ReadRange(pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  std::string const unit = ReadUnit(in, to);
  for (std::string const name : {"LowValue", "HighValue"}) {
    pugi::xml_node const bound = in.Required("zbt:" + name);
    bool const isOpen = TextOf(bound) == "NaN";
    AddText(to, ("b:" + name).c_str(), isOpen ? "NaN" : m_figures.Read(bound, unit));
  }
  in.End();
}

void ValueReader::ReadPoint(pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  std::string const unit = ReadUnit(in, to);
  pugi::xml_node const parameters = in.Required("zbt:Parameters");
  while (in.HasMore()) {
    Checker point(in.Required("zbt:Point"));
    pugi::xml_node element = to.append_child("b:Point");
    AddText(element, "b:Value", m_figures.Read(point.Required("zbt:Value"), unit));
    Checker values(point.Required("zbt:ValueParameters"));
    point.End();
    pugi::xml_node list = element.append_child("b:ValueParameters");
    while (values.HasMore()) {
      Checker with(values.Required("zbt:ParameterWithValue"));
      ReadParameterAndValue(m_store, with, list.append_child("b:ParameterWithValue"));
      with.End();
    }
  }
  ReadParameters(m_store, parameters, to.append_child("b:Parameters"));
}

void ValueReader::ReadDiscrete(pugi::xml_node from, pugi::xml_node to) {
  Checker in(from);
  int count = 0;
  while (in.HasMore()) {
    pugi::xml_node const node = in.Required("zbt:Discrete", {"zbt:order"});
    std::string const word = TextOf(node);
    auto const known =
        m_store.Rows("SELECT position FROM attribute_discrete WHERE attribute_id = ? AND word = ?",
                     {std::to_string(m_attribute.id), word});
    if (known.empty()) throw Fault("the attribute does not know the word \"" + word + "\"");
    AddText(to, "b:Discrete", word).append_attribute("b:order") = known[0].Int(0);
    m_value.text += word + "\n";
    ++count;
  }
  if (count > 1 && !m_attribute.isMultiValued) {
    throw Fault("\"" + m_attribute.name + "\" takes one word only");
  }
}

void ValueReader::ReadTexts(pugi::xml_node from, pugi::xml_node to,
                            std::vector<std::string> const& names) {
  Checker in(from);
  for (std::string const& name : names) {
    std::string const text = TextOf(in.Required("zbt:" + name));
    AddText(to, ("b:" + name).c_str(), text);
    if (name != "data") m_value.text += text + "\n";
  }
  in.End();
}

}  // namespace sandbox
