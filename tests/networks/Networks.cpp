#include "tests/networks/Networks.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace {

/// Shows what users may come to see: no secret may be in it.
class PrintingLogger : public ILogger {
 public:
  void Log(int level, std::string const& message) override {
    if (level == 1) std::cout << "log: " << message << '\n';
  }
};

void Print(ServiceLayerResponse const& outcome) {
  std::cout << "outcome " << outcome.GetResponseCode() << ": " << outcome.GetTransportError()
            << outcome.GetErrorMessage() << '\n';
}

SmartPtr<RecordReference> RootOf(BrowseService& browse) {
  auto const table = TableReference::CreateOne();
  table->SetDBKey("ENG_MATERIALS");
  table->SetTableName("Materials");
  auto const request = GetRootNode::CreateOne();
  request->SetTable(table);
  GetRootNodeResponse response;
  browse.GetGetRootNodeImpl()->RequestRootNode(request, &response);
  return response.GetRootNode() ? response.GetRootNode()->GetRecordReference() : nullptr;
}

}  // namespace

std::string Told(std::string const& variable) {
  char const* const value = std::getenv(variable.c_str());
  if (value == nullptr) throw std::runtime_error(variable + " is not set: run me in a rig");
  return value;
}

std::vector<std::string> LinesWith(std::string const& text, std::string const& file,
                                   std::size_t atLeast) {
  auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  for (;;) {
    std::ifstream in(Told("RIG") + "/" + file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
      if (line.find(text) != std::string::npos) lines.push_back(line);
    }
    if (lines.size() >= atLeast || std::chrono::steady_clock::now() > end) return lines;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
}

std::string RigPassword() { return LinesWith("", "password").at(0); }

SmartPtr<LumoServiceLayerServices> Connect(std::string const& url,
                                           SmartPtr<ILumoSLAuthModule> const& logOn,
                                           HttpTransportSettings const& settings) {
  static PrintingLogger logger;
  auto session = LumoSession::CreateOneWithLogger(url, logOn, &logger);
  session->SetTimeouts(10'000, 10'000, 10'000, 10'000);
  session->HttpClientPtr()->SetTransportSettings(settings);
  return {new LumoServiceLayerServices(session)};
}

int Read(LumoServiceLayerServices& services) {
  GetDatabasesResponse response;
  services.GetBrowseService()->GetGetDatabaseImpl()->GetDatabases(&response);
  Print(*response.GetServiceLayerResponse());
  return response.GetServiceLayerResponse()->GetResponseCode();
}

int Import(LumoServiceLayerServices& services, std::size_t bytes) {
  auto const file = FileDataType::CreateOne();
  file->SetFileName("note.txt");
  file->SetContentType("text/plain");
  file->SetData(std::vector<unsigned char>(bytes, 'x'));
  auto const attribute = AttributeReference::CreateOne();
  attribute->SetDBKey("ENG_MATERIALS");
  attribute->SetName("Processing note");
  attribute->SetPartialTableReference(PartialTableReference::CreateOneFromTableName("Materials"));
  SmartPtr<ImportRecord> const record(new ImportRecord(RootOf(*services.GetBrowseService()), "New",
                                                       ImportRecordModes::Create, false));
  record->AddImportAttributeValue({new ImportAttributeValue(file, attribute)});
  auto const request = SetRecordAttributesRequest::CreateOne();
  request->AddImportRecord(record);
  request->SetImportErrorMode(ImportErrorModes::FaultAndRollbackOnAnyError);
  SetRecordAttributesResponse response;
  services.GetDataImportService()->SetRecordAttributesImplPtr()->SetRecordAttributes_Request(
      request, &response);
  Print(*response.GetServiceLayerResponse());
  return response.GetServiceLayerResponse()->GetResponseCode();
}

SmartPtr<HttpMessage> Asked(LumoServiceLayerServices& services) {
  auto message = HttpMessage::CreateOne();
  services.GetSession()->HttpClientPtr()->SendRequest(L"/", eHttpVerb_Get, message);
  HttpReport const& report = *message->GetReport();
  std::cout << "message " << message->GetStatusCode() << ": " << report.error
            << report.logOn.trouble << "; proxy " << report.proxy << ' ' << report.proxyVariable
            << '\n';
  for (auto const& way : report.logOn.offered) std::cout << "  offered: " << way << '\n';
  return message;
}
