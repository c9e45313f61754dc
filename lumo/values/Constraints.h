#pragma once

#include <string>
#include <vector>

#include "lumo/values/ParameterReferenceAndValue.h"

/// A parameter value at which a curve or a gridded value holds, with a label to show.
class LUMO_API Constraint : public lumo::FromXml<Constraint, ParameterReferenceAndValue> {
 public:
  Constraint() = default;
  explicit Constraint(XmlNode<char> const* node);

  /// What the constraint says.
  std::string const& GetLabel() const { return m_label; }
  void SetLabel(std::string const& label) { m_label = label; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::string m_label;
};

/// The parameter values at which a curve or a gridded value holds.
class LUMO_API Constraints : public lumo::FromXml<Constraints> {
 public:
  Constraints() = default;
  explicit Constraints(XmlNode<char> const* node);

  std::vector<SmartPtr<Constraint>>& AccessConstraints() { return m_constraints; }
  std::vector<SmartPtr<Constraint>> const& AccessConstraints() const { return m_constraints; }
  void AddConstraint(SmartPtr<Constraint> const& constraint) {
    m_constraints.push_back(constraint);
  }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  std::vector<SmartPtr<Constraint>> m_constraints;
};
