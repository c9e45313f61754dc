#include "sandbox/model/Curves.h"

#include <string>
#include <vector>

#include "sandbox/model/ParameterValues.h"
#include "sandbox/model/Units.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {
namespace {

class CurveReader {
 public:
  CurveReader(Store& store, FigureReader& figures) : m_store(store), m_figures(figures) {}

  void ReadSeries(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadCurveHead(in, to);
    if (!in.HasMore()) return;
    pugi::xml_node const graphNode =
        in.Required("zbt:Graph", {"zbt:HideGraph", "zbt:LogarithmicYAxis"});
    in.End();
    pugi::xml_node element = to.append_child("b:Graph");
    element.append_attribute("b:HideGraph") = graphNode.attribute("zbt:HideGraph").value();
    element.append_attribute("b:LogarithmicYAxis") =
        graphNode.attribute("zbt:LogarithmicYAxis").value();
    Checker graph(graphNode);
    while (pugi::xml_node const node = graph.Optional("zbt:Series", {"zbt:decoration"})) {
      ReadOneSeries(node, element.append_child("b:Series"), unit);
    }
    if (auto const axis = graph.Optional("zbt:XAxisParameter")) {
      ReadParameterInformation(m_store, axis, element.append_child("b:XAxisParameter"));
    }
    graph.End();
  }

  void ReadGridded(pugi::xml_node from, pugi::xml_node to) {
    Checker in(from);
    std::string const unit = ReadCurveHead(in, to);
    if (auto const valuesNode = in.Optional("zbt:Values")) {
      Checker values(valuesNode);
      pugi::xml_node list = to.append_child("b:Values");
      list.append_attribute("b:decoration") = from.attribute("zbt:decoration").value();
      while (values.HasMore()) {
        pugi::xml_node const node = values.Required("zbt:Value", {"xsi:type"});
        std::string const type = node.attribute("xsi:type").value();
        bool const isRange = type == "zbt:FloatFunctionalRangedValue";
        pugi::xml_node value = list.append_child("b:Value");
        value.append_attribute("i:type") = ("b:" + type.substr(type.find(':') + 1)).c_str();
        Checker one(node);
        ReadConstraints(m_store, one.Required("zbt:Constraints"),
                        value.append_child("b:Constraints"));
        AddText(value, "b:Estimated", BooleanOf(one.Required("zbt:Estimated")) ? "true" : "false");
        ReadFigures(
            one, value, unit,
            isRange ? std::vector<std::string>{"Low", "High"} : std::vector<std::string>{"Value"});
      }
    }
    if (auto const axis = in.Optional("zbt:DefaultXAxisParameter")) {
      ReadParameterInformation(m_store, axis, to.append_child("b:DefaultXAxisParameter"));
    }
    in.End();
  }

 private:
  /// Reads what both kinds of curves begin with; returns the unit that was sent.
  std::string ReadCurveHead(Checker& in, pugi::xml_node to) {
    ReadParameters(m_store, in.Required("zbt:Parameters"), to.append_child("b:Parameters"));
    Checker unit(in.Required("zbt:Unit"));
    TextOf(unit.Required("zbt:UnitName"));
    std::string symbol = TextOf(unit.Required("zbt:UnitSymbol"));
    unit.End();
    WriteUnit(m_store, to.append_child("b:Unit"), m_figures.Unit());
    return symbol;
  }

  void ReadFigures(Checker& in, pugi::xml_node to, std::string const& unit,
                   std::vector<std::string> const& names) {
    for (std::string const& name : names) {
      AddText(to, ("b:" + name).c_str(), m_figures.Read(in.Required("zbt:" + name), unit));
    }
    in.End();
  }

  void ReadOneSeries(pugi::xml_node from, pugi::xml_node to, std::string const& unit) {
    to.append_attribute("b:decoration") = from.attribute("zbt:decoration").value();
    Checker in(from);
    ReadConstraints(m_store, in.Required("zbt:Constraints"), to.append_child("b:Constraints"));
    Checker points(in.Required("zbt:XYPoints"));
    in.End();
    pugi::xml_node list = to.append_child("b:XYPoints");
    while (points.HasMore()) {
      pugi::xml_node const node = points.Required("zbt:XYPoint", {"xsi:type"});
      bool const isRange = std::string(node.attribute("xsi:type").value()) == "zbt:XYRange";
      pugi::xml_node point = list.append_child("b:XYPoint");
      point.append_attribute("i:type") = isRange ? "b:XYRange" : "b:XYPoint";
      Checker datum(node);
      if (auto const x = datum.Optional("zbt:X", {"xsi:type"})) {
        ReadParameterValue(x, point.append_child("b:X"));
      }
      AddText(point, "b:Estimated", BooleanOf(datum.Required("zbt:Estimated")) ? "true" : "false");
      ReadFigures(
          datum, point, unit,
          isRange ? std::vector<std::string>{"LowerY", "UpperY"} : std::vector<std::string>{"Y"});
    }
  }

  Store& m_store;
  FigureReader& m_figures;
};

}  // namespace

void ReadSeries(Store& store, FigureReader& figures, pugi::xml_node from, pugi::xml_node to) {
  CurveReader(store, figures).ReadSeries(from, to);
}

void ReadGridded(Store& store, FigureReader& figures, pugi::xml_node from, pugi::xml_node to) {
  CurveReader(store, figures).ReadGridded(from, to);
}

}  // namespace sandbox
