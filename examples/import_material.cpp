// Makes a new record with a density range in a folder, and reads it back.
//
//     import-material DATABASE TABLE FOLDER NAME LOW HIGH UNIT http://server/service_layer

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

#include "Common.h"

namespace {

SmartPtr<AttributeReference> Density(SmartPtr<TableReference> const& table) {
  auto density = AttributeReference::CreateOne();
  density->SetDBKey(table->GetDBKey());
  density->SetName("Density");
  density->SetPartialTableReference(
      PartialTableReference::CreateOneFromTableName(table->GetTableName()));
  return density;
}

/// The folder of that name, looked for below a record; null when there is none.
SmartPtr<RecordReference> Find(std::vector<SmartPtr<TreeRecord>> const& records,
                               std::string const& name) {
  for (auto const& record : records) {
    if (record->GetShortName() == name) return record->GetRecordReference();
    if (auto found = Find(record->AccessChildren(), name)) return found;
  }
  return nullptr;
}

SmartPtr<RecordReference> FolderOf(BrowseService& browse, SmartPtr<TableReference> const& table,
                                   std::string const& name) {
  auto const top = GetRootNode::CreateOne();
  top->SetTable(table);
  GetRootNodeResponse root;
  browse.GetGetRootNodeImpl()->RequestRootNode(top, &root);
  if (!Succeeded(root) || !root.GetRootNode()) return nullptr;
  auto const below = GetChildNodes::CreateOne();
  below->SetParent(root.GetRootNode()->GetRecordReference());
  below->SetRecurse(true);
  GetChildNodesResponse children;
  browse.GetGetChildNodesImpl()->RequestChildNodes(below, &children);
  if (!Succeeded(children)) return nullptr;
  auto folder = Find(children.AccessTreeRecords(), name);
  if (!folder) std::cerr << "There is no folder " << name << ".\n";
  return folder;
}

/// The record that the server made; null when the import failed.
SmartPtr<RecordReference> Import(DataImportService& import, SmartPtr<ImportRecord> const& record) {
  auto const request = SetRecordAttributesRequest::CreateOne();
  request->AddImportRecord(record);
  request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
  SetRecordAttributesResponse response;
  import.SetRecordAttributesImplPtr()->SetRecordAttributes_Request(request, &response);
  if (!Succeeded(response) || response.AccessRecordsImported().empty()) return nullptr;
  return response.AccessRecordsImported()[0]->GetRecordReference();
}

bool ReadBack(DataExportService& exports, SmartPtr<RecordReference> const& record,
              SmartPtr<AttributeReference> const& attribute) {
  auto const request = GetRecordAttributesByRefRequest::CreateOne();
  request->AddRecordReference(record);
  request->AddAttributeReference(attribute);
  GetRecordAttributesByRefResponse response;
  exports.GetRecordAttributesByRefImplPtr()->RequestRecordAttributesByRef(request, &response);
  if (!Succeeded(response) || response.AccessRecordData().empty()) return false;
  for (auto const& value : response.AccessRecordData()[0]->AccessAttributeValues()) {
    auto const* const range = dynamic_cast<RangeDataType const*>(value->GetDataValue().get());
    if (range == nullptr) continue;
    std::cout << value->GetAttributeName() << ": " << range->GetLow() << " to " << range->GetHigh()
              << ' ' << range->GetUnitSymbol() << '\n';
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 9) {
    std::cerr << "usage: import-material DATABASE TABLE FOLDER NAME LOW HIGH UNIT URL\n";
    return 2;
  }
  return RunExample(argv[8], "", "", [&](LumoServiceLayerServices& services) {
    auto const table = TableNamed(argv[1], argv[2]);
    auto const folder = FolderOf(*services.GetBrowseService(), table, argv[3]);
    if (!folder) return false;
    auto const density = RangeDataType::CreateOne();
    density->SetLow(std::strtod(argv[5], nullptr));
    density->SetHigh(std::strtod(argv[6], nullptr));
    density->SetUnitSymbol(argv[7]);
    SmartPtr<ImportRecord> const record(
        new ImportRecord(folder, argv[4], ImportRecordModes::Create, false));
    record->AddImportAttributeValue({new ImportAttributeValue(density, Density(table))});
    auto const made = Import(*services.GetDataImportService(), record);
    if (!made) return false;
    std::cout << argv[4] << " has the identity " << made->GetIdentity() << '\n';
    return ReadBack(*services.GetDataExportService(), made, Density(table));
  });
}
