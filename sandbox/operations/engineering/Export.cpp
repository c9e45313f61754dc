#include "sandbox/operations/engineering/Export.h"

#include <cstdio>

#include "sandbox/Fault.h"
#include "sandbox/operations/engineering/Figures.h"

namespace sandbox {
namespace {

std::string Shown(Store& store, Export const& job, Attribute const& attribute, double value,
                  std::string* unit = nullptr) {
  std::string const target = TargetUnit(store, attribute.unit, job.units);
  if (unit != nullptr) *unit = target;
  char text[48];
  std::snprintf(text, sizeof text, "%.*g", job.significantFigures > 0 ? job.significantFigures : 6,
                Convert(store, value, attribute.unit, target));
  return text;
}

std::string TableOutput(Store& store, Export const& job) {
  std::string text = "Record";
  std::vector<Attribute> columns = job.attributes;
  if (columns.empty() && !job.records.empty()) {
    for (Figure const& figure : NeededFigures(store, job.records[0])) {
      columns.push_back(figure.attribute);
    }
  }
  for (Attribute const& column : columns) {
    std::string const unit = TargetUnit(store, column.unit, job.units);
    text += "\t" + column.name + (unit.empty() ? "" : " (" + unit + ")");
  }
  text += "\n";
  for (Record const& record : job.records) {
    text += record.shortName;
    for (Attribute const& column : columns) {
      Figure const figure = FigureOf(store, record, column);
      text += "\t";
      if (figure.value) text += Shown(store, job, column, *figure.value);
    }
    text += "\n";
  }
  return text;
}

/// One quantity of a card: its keyword, a comment with name and unit, and the figure.
std::string CardLine(Store& store, Export const& job, std::string const& keyword,
                     Attribute const& attribute, double value, std::string const& note = "") {
  std::string unit;
  std::string const shown = Shown(store, job, attribute, value, &unit);
  return (keyword.empty() ? "" : "*" + keyword + "\n") + "** " + attribute.name +
         (unit.empty() ? "" : ", " + unit) + note + "\n" + shown + "\n";
}

std::string CardOutput(Store& store, Export const& job) {
  // Where a card shows the figures; without a word one stands below the figure before.
  constexpr char const* kKeywords[] = {"DENSITY", "ELASTIC", "", "YIELD", "STRENGTH", "EXPANSION"};
  std::string text;
  for (Record const& record : job.records) {
    std::vector<Figure> const figures = NeededFigures(store, record);
    text += "** " + record.longName + "\n** typical figures, middles of ranges; not for design\n" +
            "*MATERIAL, " + record.shortName + "\n";
    for (std::size_t i = 0; i < figures.size(); ++i) {
      std::optional<double> value = figures[i].value;
      std::string note;
      if (i == kYield && job.temperature) {
        Curve const curve = CurveOf(store, record);
        if (curve.empty()) throw Fault("\"" + record.shortName + "\" has no curve to read from");
        value = Interpolated(curve, *job.temperature);
        note = " at " + TextOfNumber(*job.temperature) + " degC";
      }
      if (!value && i < kRequired) {
        throw Fault("\"" + record.shortName + "\" has no " + figures[i].attribute.name);
      }
      if (value) text += CardLine(store, job, kKeywords[i], figures[i].attribute, *value, note);
    }
    text += "*END\n";
  }
  return text;
}

/// What stands there before anything is formatted.
std::string CollectedOutput(Store& store, Export const& job) {
  std::string text;
  for (Record const& record : job.records) {
    for (Figure const& figure : NeededFigures(store, record)) {
      if (!figure.value) continue;
      text += record.shortName + ": " + figure.attribute.name + " = " +
              Shown(store, job, figure.attribute, *figure.value) + "\n";
    }
  }
  return text;
}

}  // namespace

std::string Output(Store& store, Export const& job) {
  if (job.stopBefore <= 0) return "";
  if (job.stopBefore == 1) return CollectedOutput(store, job);
  return job.exporter->format == Format::Card ? CardOutput(store, job) : TableOutput(store, job);
}

}  // namespace sandbox
