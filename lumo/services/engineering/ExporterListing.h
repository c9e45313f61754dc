#pragma once

#include <string>

#include "lumo/types/ExporterListingModes.h"
#include "lumo/xml/NodeWriter.h"

namespace lumo {

/// What the requests that list exporters have in common: by what the list is restricted.
template <class Base>
class ExporterListing : public Base {
 public:
  /// The tool.
  std::string const& GetPackage() const { return m_package; }
  void SetPackage(std::string const& package) { m_package = package; }
  /// The material model of the tool.
  std::string const& GetModel() const { return m_model; }
  void SetModel(std::string const& model) { m_model = model; }
  /// Which versions of an exporter are listed; not sent by default.
  ExporterListingModes::eExporterListingMode GetListingMode() const { return m_listingMode; }
  void SetListingMode(ExporterListingModes::eExporterListingMode listingMode) {
    m_listingMode = listingMode;
  }
  /// Only exporters with this tag are listed; not sent when empty.
  std::string const& GetApplicabilityTag() const { return m_applicabilityTag; }
  void SetApplicabilityTag(std::string const& applicabilityTag) {
    m_applicabilityTag = applicabilityTag;
  }

 protected:
  /// Writes package and model, as far as they are set.
  void WriteTool(NodeWriter& out) const {
    out.ChildIfSet("eng:package", m_package);
    out.ChildIfSet("eng:model", m_model);
  }
  /// Writes listing mode and tag, as far as they are set.
  void WriteSelection(NodeWriter& out) const {
    out.ChildIfSet("eng:versionPolicy", m_listingMode,
                   ExporterListingModes::ExporterListingMode_ToString);
    out.ChildIfSet("eng:applicabilityTag", m_applicabilityTag);
  }

 private:
  std::string m_package;
  std::string m_model;
  ExporterListingModes::eExporterListingMode m_listingMode = ExporterListingModes::NotSet;
  std::string m_applicabilityTag;
};

}  // namespace lumo
