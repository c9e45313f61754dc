#pragma once

#include <string>

#include "lumo/types/ParameterInformation.h"

/// A parameter that an exporter needs.
class LUMO_API ExporterParameter : public lumo::FromXml<ExporterParameter, ParameterInformation> {
 public:
  ExporterParameter() = default;
  explicit ExporterParameter(XmlNode<char> const* node);

  /// Identity of the parameter.
  std::string const& GetId() const { return m_id; }
  void SetId(std::string const& id) { m_id = id; }
  /// What the exporter needs it for, as the server says it.
  std::string const& GetUsage() const { return m_usage; }
  void SetUsage(std::string const& usage) { m_usage = usage; }

 private:
  std::string m_id;
  std::string m_usage;
};
