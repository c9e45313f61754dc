#pragma once

#include <string>
#include <vector>

#include "lumo/types/RecordReference.h"
#include "lumo/xml/FromXml.h"

/// A step of an exporter.
class LUMO_API ExporterTransform : public lumo::FromXml<ExporterTransform> {
 public:
  ExporterTransform() = default;
  explicit ExporterTransform(XmlNode<char> const* node);

  /// Identity of the transform.
  std::string const& GetId() const { return m_id; }
  void SetId(std::string const& id) { m_id = id; }

 private:
  std::string m_id;
};

/// Turns records into the input of an engineering tool, on the server.
class LUMO_API Exporter : public lumo::FromXml<Exporter> {
 public:
  Exporter() = default;
  explicit Exporter(XmlNode<char> const* node);

  /// Names the exporter in requests.
  std::string const& GetKey() const { return m_key; }
  void SetKey(std::string const& key) { m_key = key; }
  /// The tool.
  std::string const& GetPackage() const { return m_package; }
  void SetPackage(std::string const& package) { m_package = package; }
  /// The material model of the tool.
  std::string const& GetModel() const { return m_model; }
  void SetModel(std::string const& model) { m_model = model; }
  /// In words for people.
  std::string const& GetDescription() const { return m_description; }
  void SetDescription(std::string const& description) { m_description = description; }
  std::vector<SmartPtr<ExporterTransform>>& AccessTransforms() { return m_transforms; }
  std::vector<SmartPtr<ExporterTransform>> const& AccessTransforms() const { return m_transforms; }
  void AddTransform(SmartPtr<ExporterTransform> const& transform) {
    m_transforms.push_back(transform);
  }
  /// Name that people see.
  std::string const& GetName() const { return m_name; }
  void SetName(std::string const& name) { m_name = name; }
  /// -1 when the reply does not say.
  int GetVersion() const { return m_version; }
  void SetVersion(int version) { m_version = version; }
  /// Whether the server found the exporter valid.
  bool GetValidatedOK() const { return m_validatedOK; }
  void SetValidatedOK(bool validatedOK) { m_validatedOK = validatedOK; }

 private:
  std::string m_key;
  std::string m_package;
  std::string m_model;
  std::string m_description;
  std::vector<SmartPtr<ExporterTransform>> m_transforms;
  std::string m_name;
  int m_version = -1;
  bool m_validatedOK = false;
};

/// An exporter, and how far a record has the data that it needs.
class LUMO_API ExporterPopulation : public lumo::FromXml<ExporterPopulation, Exporter> {
 public:
  enum ePopulationState : int { Unknown = 0, FullyPopulated = 1, PartiallyPopulated = 2 };

  ExporterPopulation() = default;
  explicit ExporterPopulation(XmlNode<char> const* node);

  /// One of `ePopulationState`.
  int GetPopulationState() const { return m_populationState; }
  void SetPopulationState(int populationState) { m_populationState = populationState; }

 private:
  int m_populationState = Unknown;
};

/// A record and the exporters that apply to it.
class LUMO_API ExportersForRecord : public lumo::FromXml<ExportersForRecord> {
 public:
  ExportersForRecord() = default;
  explicit ExportersForRecord(XmlNode<char> const* node);

  /// Null when the reply named none.
  SmartPtr<RecordReference> GetRecord() const { return m_record; }
  void SetRecord(SmartPtr<RecordReference> const& record) { m_record = record; }
  std::vector<SmartPtr<ExporterPopulation>>& AccessExporters() { return m_exporters; }
  std::vector<SmartPtr<ExporterPopulation>> const& AccessExporters() const { return m_exporters; }
  void AddExporter(SmartPtr<ExporterPopulation> const& exporter) {
    m_exporters.push_back(exporter);
  }

 private:
  SmartPtr<RecordReference> m_record;
  std::vector<SmartPtr<ExporterPopulation>> m_exporters;
};
