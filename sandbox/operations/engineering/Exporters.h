#pragma once

#include <string>
#include <vector>

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

enum class Format { Table, Card };

struct Exporter {
  char const* key;
  char const* name;
  int version;
  char const* package;
  char const* model;
  char const* description;
  char const* tag;
  Format format;
};

/// Steps of every exporter.
constexpr char const* kTransforms[] = {"collect", "format"};

std::vector<Exporter> const& Exporters();
/// Throws `Fault` when there is none.
Exporter const& FindExporter(std::string const& key);
void WriteExporter(pugi::xml_node node, Exporter const& exporter);

/// What a request says of the exporters that it wants.
struct Wanted {
  std::string package;
  std::string model;
  bool latestOnly = false;
  std::string tag;

  void ReadPackageAndModel(Checker& in);
  void ReadPolicyAndTag(Checker& in);
  bool Holds(Exporter const& exporter) const;
};

/// Whether the table holds what exporters are for.
bool IsMaterial(Store& store, int tableId);

}  // namespace sandbox
