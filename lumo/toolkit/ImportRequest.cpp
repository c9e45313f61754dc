#include "lumo/toolkit/ImportRequest.h"

#include <utility>

#include "lumo/toolkit/DataValues.h"
#include "lumo/toolkit/Text.h"
#include "lumo/toolkit/TreeCalls.h"
#include "lumo/toolkit/ValueBytes.h"

namespace lumo {
namespace {

SmartPtr<SetRecordAttributesRequest> AllOrNothing() {
  auto request = SetRecordAttributesRequest::CreateOne();
  request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
  return request;
}

/// Puts the record into just these subsets.
void SetSubsets(ImportRecord& record, Value const& value, TableInfo const& table) {
  record.SetUpdateSubsetsMode(ImportRecord::Replace);
  auto const* const names = std::get_if<std::vector<std::string>>(&value);
  for (std::string const& name : names == nullptr ? std::vector<std::string>() : *names) {
    record.AddSubsetReference(table.SubsetNamed(name));
  }
}

SmartPtr<IDataValue> DataOf(Value const& value, Attribute const& attribute,
                            std::string const& dbKey, Units const& units) {
  SmartPtr<IDataValue> data = ToDataValue(value, attribute, dbKey, units);
  if (data) return data;
  return EmptyDataType::CreateOne();  // takes the value away
}

}  // namespace

SmartPtr<SetRecordAttributesRequest> RequestFor(std::vector<Step> const& steps,
                                                OpenedTable& table) {
  auto const connection = table.pool->Lend();
  Units const& units = table.info.KnownUnits(*connection);
  std::string const& dbKey = table.info.DatabaseKey();
  auto request = AllOrNothing();
  for (Step const& step : steps) {
    bool const isNew = step.kind == RowVerdict::Kind::Create;
    SmartPtr<ImportRecord> const record(
        isNew ? new ImportRecord(ReferenceTo(step.parent), step.name, ImportRecordModes::Create,
                                 false)
              : new ImportRecord(ReferenceTo(step.record), step.fullName, ImportRecordModes::Update,
                                 false));
    for (Step::Content const& value : step.values) {
      ImportFields::Kind const kind = ImportFields::KindOf(value.attribute);
      if (kind == ImportFields::Kind::Subsets) SetSubsets(*record, value.after, table.info);
      if (kind != ImportFields::Kind::Values) continue;
      Attribute const& attribute = table.info.FindAttribute(*connection, value.attribute);
      record->AddImportAttributeValue(new ImportAttributeValue(
          DataOf(value.after, attribute, dbKey, units), table.info.ReferenceTo(attribute)));
    }
    request->AddImportRecord(record);
  }
  return request;
}

SmartPtr<SetRecordAttributesRequest> RequestForFullNames(std::vector<Step> const& steps) {
  auto request = AllOrNothing();
  for (Step const& step : steps) {
    request->AddImportRecord(new ImportRecord(ReferenceTo(step.record), step.fullName,
                                              ImportRecordModes::Update, false));
  }
  return request;
}

SmartPtr<SetRecordAttributesRequest> RequestFor(FolderStep const& folder) {
  auto request = AllOrNothing();
  request->AddImportRecord(
      new ImportRecord(ReferenceTo(folder.parent), folder.name, ImportRecordModes::Create, true));
  return request;
}

std::vector<RecordId> WriteRecords(Connection& connection,
                                   SmartPtr<SetRecordAttributesRequest> const& request,
                                   std::string const& dbKey) {
  auto const done = connection.Write<SetRecordAttributesResponse>([&](auto* into) {
    connection.Import()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(request, into);
  });
  std::vector<RecordId> records;
  bool areOurs = done->AccessRecordsImported().size() == request->AccessImportRecords().size();
  for (std::size_t i = 0; areOurs && i < done->AccessRecordsImported().size(); ++i) {
    auto const& record = done->AccessRecordsImported()[i];
    ImportRecord const& sent = *request->AccessImportRecords()[i];
    bool const isNew = sent.GetImportRecordMode() == ImportRecordModes::Create;
    areOurs = record && record->GetRecordReference() &&
              (!isNew || record->GetShortName() == sent.GetRecordName());
    if (areOurs) records.push_back(IdOf(*record, dbKey));
  }
  if (!areOurs) {
    throw Error(ErrorCode::NotUnderstood, "the reply to an import names other records");
  }
  return records;
}

RowFault FaultOf(Error const& error, Step const& step) {
  RowFault fault = {"", error.what()};
  for (Step::Content const& value : step.values) {
    bool const isNamed = fault.why.find(Quoted(value.attribute)) != std::string::npos;
    if (isNamed || step.values.size() == 1)
      fault.attribute = ImportFields::ShownName(value.attribute);
  }
  if (!fault.attribute.empty()) return fault;
  // Servers quote what they do not like: a word, or a unit.
  for (Step::Content const& value : step.values) {
    auto const isQuoted = [&](std::string const& text) {
      return !text.empty() && fault.why.find(Quoted(text)) != std::string::npos;
    };
    bool isMeant = isQuoted(UnitIn(value.after));
    if (auto const* const words = std::get_if<std::vector<std::string>>(&value.after)) {
      for (std::string const& word : *words) isMeant = isMeant || isQuoted(word);
    }
    if (isMeant) fault.attribute = ImportFields::ShownName(value.attribute);
  }
  return fault;
}

}  // namespace lumo
