#pragma once

#include <string>

#include "lumo/types/TableQualifiedReference.h"

/// An attribute of a table, by identity or by name; or a pseudo-attribute: a property of the record
/// itself that is addressed like an attribute. An attribute with an identity is sent without its
/// name, and a standard name without its table.
class LUMO_API AttributeReference
    : public lumo::FromXml<AttributeReference, TableQualifiedReference> {
 public:
  /// The properties of a record that can be asked for like attributes.
  class PseudoAttrs {
   public:
    enum eLumoPseudoAttributeReference : int {
      Name = 0,
      ShortName = 1,
      Subsets = 2,
      ReleasedDate = 3,
      ModifiedDate = 4,
      RecordType = 5,
      RecordHistoryIdentity = 6,
      RecordColor = 7,
      LinkedRecords = 8,
      VersionState = 9,
      RecordGUID = 10,
      RecordHistoryGUID = 11,
      RecordVersionNumber = 12,
      TableName = 13,
      ChildRecords = 14,
      TableFilters = 15,
      Writable = 16,
      ParentName = 17,
      ParentShortName = 18,
      ParentRecordHistoryIdentity = 19,
      ParentRecordHistoryGUID = 20,
    };
  };

  AttributeReference() = default;
  explicit AttributeReference(XmlNode<char> const* node);

  /// Whether `name` is a bracketed pseudo-attribute name such as "[recordGUID]"; if so its value is
  /// stored in `*index`, which may be null. "[parentRecordHistoryGUID]" is not recognised.
  static bool IsPseudoAttributeName(std::string const& name, int* index);
  /// Turns this reference into a pseudo-attribute; does nothing for a value above 20.
  void MakePseudoAttribute(PseudoAttrs::eLumoPseudoAttributeReference e);

  /// Identity of the attribute; 0 means not set.
  int GetAttributeID() const { return m_attributeID; }
  void SetAttributeID(int attributeID) { m_attributeID = attributeID; }
  /// Whether the name is a standard attribute name rather than the table's own.
  bool GetIsStandardName() const { return m_isStandardName; }
  void SetIsStandardName(bool isStandardName) { m_isStandardName = isStandardName; }
  /// Whether `MakePseudoAttribute` was called; never true for a reference read from a reply.
  bool GetIsPseudo() const { return m_isPseudo; }

  void CreateXMLNode(XmlNode<char>* node) const;

 private:
  int m_attributeID = 0;
  bool m_isStandardName = false;
  bool m_isPseudo = false;
};
