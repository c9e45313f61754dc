#include "lumo/services/dataimport/DataImportService.h"

DataImportService::DataImportService(LumoSession* session)
    : m_setRecordAttributes(new SetRecordAttributesImpl(session)),
      m_getUploadAddresses(new GetUploadAddressesImpl(session)),
      m_modifyRecordLinks(new ModifyRecordLinksImpl(session)) {}

std::string DataImportService::GetDataImportDefinition(std::string const& version) {
  return lumo::Endpoints::DataImport.Namespace(version);
}
