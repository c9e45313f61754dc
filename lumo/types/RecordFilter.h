#pragma once

#include <string>
#include <vector>

#include "lumo/platform/core/Counted.h"
#include "lumo/types/SubsetReference.h"

/// Restricts records to those of some subsets, or to those that a profile selects. Give one of the
/// two: with neither or with both nothing is sent.
class LUMO_API RecordFilter : public lumo::Counted<RecordFilter> {
 public:
  std::vector<SmartPtr<SubsetReference>>& AccessSubsetReferences() { return m_subsetReferences; }
  std::vector<SmartPtr<SubsetReference>> const& AccessSubsetReferences() const {
    return m_subsetReferences;
  }
  void AddSubsetReference(SmartPtr<SubsetReference> const& subset) {
    m_subsetReferences.push_back(subset);
  }
  /// Key of the profile that selects the records.
  std::string const& GetProfileKey() const { return m_profileKey; }
  void SetProfileKey(std::string const& profileKey) { m_profileKey = profileKey; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<SubsetReference>> m_subsetReferences;
  std::string m_profileKey;
};
