#pragma once

#include <string>
#include <vector>

#include "lumo/services/browse/TableDetail.h"
#include "lumo/session/IResponse.h"
#include "lumo/session/ServiceOperation.h"
#include "lumo/types/TableFilters.h"

/// Asks for the tables of one database.
class LUMO_API GetTables : public lumo::Request<GetTables> {
 public:
  /// Which attributes of the tables are wanted.
  enum eAttributeSelector : int {
    NonMetaAttributes = 1,
    MetaAttributes = 2,
    StandardAttributes = 3
  };
  /// Empty for a value without a word.
  static std::string AttributeSelector_ToString(eAttributeSelector selector);

  /// Key of the database; sent even when empty.
  std::string const& GetDBKey() const { return m_dbKey; }
  void SetDBKey(std::string const& dbKey) { m_dbKey = dbKey; }
  /// Keeps the answer to one class of tables; `NoFilter` (the default) is not sent.
  TableFilters::eTablesFilter GetTableFilter() const { return m_tableFilter; }
  void SetTableFilter(TableFilters::eTablesFilter filter) { m_tableFilter = filter; }
  /// Sent in this order, when there are any; without them the server decides.
  std::vector<eAttributeSelector>& AccessAttributeSelectors() { return m_attributeSelectors; }
  std::vector<eAttributeSelector> const& AccessAttributeSelectors() const {
    return m_attributeSelectors;
  }
  void SetAttributeSelectors(std::vector<eAttributeSelector> const& selectors) {
    m_attributeSelectors = selectors;
  }
  void AddAttributeSelector(eAttributeSelector selector) {
    m_attributeSelectors.push_back(selector);
  }

  void CreateXMLNode(XmlNode<char>* node) const override;

 private:
  std::string m_dbKey;
  TableFilters::eTablesFilter m_tableFilter = TableFilters::NoFilter;
  std::vector<eAttributeSelector> m_attributeSelectors;
};

/// The tables of the database.
class LUMO_API GetTablesResponse : public lumo::Response<GetTablesResponse> {
 public:
  GetTablesResponse() = default;
  explicit GetTablesResponse(XmlNode<char> const* node);

  std::vector<SmartPtr<TableDetail>>& AccessTableDetails() { return m_tableDetails; }
  std::vector<SmartPtr<TableDetail>> const& AccessTableDetails() const { return m_tableDetails; }
  void AddTableDetail(SmartPtr<TableDetail> const& table) { m_tableDetails.push_back(table); }

 private:
  std::vector<SmartPtr<TableDetail>> m_tableDetails;
};

/// Lists the tables of a database. Makes its calls as `Operation.h` says.
class LUMO_API GetTablesImpl
    : public lumo::BrowseOperation<GetTablesImpl, GetTables, GetTablesResponse> {
 public:
  static constexpr char Name[] = "GetTables";
  using ServiceOperation::ServiceOperation;
  /// Fills `response`; a null request is logged and not sent.
  void RequestTables(SmartPtr<GetTables> const& request, GetTablesResponse* response) {
    Call(request, response);
  }
};
