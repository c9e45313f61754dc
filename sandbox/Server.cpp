#include "Server.h"

#include <sys/socket.h>

#include <chrono>
#include <cstdint>
#include <mutex>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <utility>

#include "Data.h"
#include "HttpServer.h"
#include "Operations.h"
#include "Soap.h"
#include "WellFormed.h"

namespace sandbox {
namespace {

constexpr Service kServices[] = {{"Browse", "brow"},
                                 {"Search", "sear"},
                                 {"DataExport", "exp"},
                                 {"DataImport", "dat"},
                                 {"EngineeringData", "eng"}};

/// An operation of the service layer.
struct Operation {
  std::string_view service;
  std::string_view name;
  std::string_view rootTag;  ///< empty: the body must be empty
  Handler handler;
};

constexpr Operation kOperations[] = {
    {"Browse", "GetDatabases", "", GetDatabases},
    {"Browse", "GetTables", "GetTables", GetTables},
    {"Browse", "GetSubsets", "GetSubsets", GetSubsets},
    {"Browse", "GetUnits", "GetUnitsRequest", GetUnits},
    {"Browse", "GetUnitSystems", "GetUnitSystems", GetUnitSystems},
    {"Browse", "GetCurrencies", "", GetCurrencies},
    {"Browse", "GetUnitConversions", "GetUnitConversionsRequest", GetUnitConversions},
    {"Browse", "GetRootNode", "GetRootNode", GetRootNode},
    {"Browse", "GetChildNodes", "GetChildNodes", GetChildNodes},
    {"Browse", "GetTreeRecords", "GetTreeRecords", GetTreeRecords},
    {"Browse", "GetRecordVersions", "GetRecordVersions", GetRecordVersions},
    {"Browse", "GetAttributeDetails", "GetAttributeDetails", GetAttributeDetails},
    {"Browse", "GetAttributeParameters", "GetAttributeParameters", GetAttributeParameters},
    {"Browse", "GetParameterDetails", "GetParameterDetails", GetParameterDetails},
    {"Browse", "GetAttributeMinMax", "GetAttributeMinMax", GetAttributeMinMax},
    {"Browse", "GetMetaAttributes", "GetMetaAttributes", GetMetaAttributes},
    {"Browse", "GetRecordAttributes", "GetRecordAttributes", GetRecordAttributes},
    {"Browse", "GetRecordLinkGroups", "GetRecordLinkGroups", GetRecordLinkGroups},
    {"Browse", "GetLinkedRecords", "GetLinkedRecords", GetLinkedRecords},
    {"Search", "SimpleTextSearch", "SimpleTextSearch", SimpleTextSearch},
    {"Search", "CriteriaSearch", "CriteriaSearch", CriteriaSearch},
    {"Search", "RecordNameSearch", "RecordNameSearch", RecordNameSearch},
    {"DataExport", "GetRecordAttributesByRef", "GetRecordAttributesByRef",
     GetRecordAttributesByRef},
    {"DataImport", "SetRecordAttributes", "SetRecordAttributesRequest", SetRecordAttributes},
    {"DataImport", "GetUploadAddresses", "GetUploadAddressesRequest", GetUploadAddresses},
    {"DataImport", "ModifyRecordLinks", "ModifyRecordLinksRequest", ModifyRecordLinks},
    {"EngineeringData", "GetAvailableExporters", "GetAvailableExporters", GetAvailableExporters},
    {"EngineeringData", "ExportersForRecords", "ExportersForRecords", ExportersForRecords},
    {"EngineeringData", "GetExporterParameters", "GetExporterParameters", GetExporterParameters},
    {"EngineeringData", "ExportRecordData", "ExportRecordData", ExportRecordData},
};

constexpr std::size_t kMaxRequestBytes = 64UL * 1024 * 1024;
constexpr std::size_t kConnections = 16;
constexpr std::size_t kCallsPerConnection = 100'000'000;
constexpr int kIdleSeconds = 2;
constexpr char kDataPath[] = R"(/data/(\d{1,9})/(\d{1,9}))";
constexpr char kReplyType[] = "text/xml; charset=utf-8";

Operation const& FindOperation(Service const& service, std::string const& action) {
  for (Operation const& operation : kOperations) {
    if (operation.service != service.name) continue;
    if (action ==
        VersionedNamespace(service.name) + "/" + std::string(operation.name) + "Request") {
      return operation;
    }
  }
  throw Fault("the service " + std::string(service.name) + " does not know the SOAPAction \"" +
              action + "\"");
}

/// The request's body, which is read to its end even when it is refused, so that the connection can
/// go on.
std::string ReadBody(httplib::Request const& request, httplib::ContentReader const& read) {
  std::string body;
  bool isTooLong = false;
  bool isWhole = false;
  auto const take = [&](char const* bytes, std::size_t count) {
    isTooLong = isTooLong || count > kMaxRequestBytes - body.size();
    if (!isTooLong) body.append(bytes, count);
    return true;
  };
  if (request.is_multipart_form_data()) {  // has the wrong type and is refused for that
    isWhole = read([](httplib::MultipartFormData const&) { return true; }, take);
  } else {
    isWhole = read(take);
  }
  std::uint64_t const announced = request.get_header_value<std::uint64_t>("Content-Length");
  if (isTooLong || announced > kMaxRequestBytes) throw Fault("the request is longer than 64 MiB");
  if (!isWhole) throw Fault("the request's body is cut short or broken");
  return body;
}

/// All searches answer alike, and an export with nothing but its text.
std::string ResponseTag(Operation const& operation) {
  if (operation.service == "Search") return "SimpleTextSearchResponse";
  if (operation.name == "ExportRecordData") return "text";
  return std::string(operation.name) + "Response";
}

/// The reply to one request; throws `Fault` when the request makes no sense.
std::string Answer(Store& store, std::mutex& storeMutex, Service const& service,
                   httplib::Request const& request, std::string const& text) {
  std::string const type = request.get_header_value("Content-Type");
  if (type != "text/xml;charset=UTF-8") throw Fault("unexpected Content-Type \"" + type + "\"");
  Operation const& operation = FindOperation(service, request.get_header_value("SOAPAction"));

  CheckWellFormed(text);
  pugi::xml_document document;
  // Text outside the root element and blanks that are an element's only content are kept, so that
  // they can be refused; blanks between elements do not matter.
  unsigned const flags = pugi::parse_default | pugi::parse_declaration | pugi::parse_fragment |
                         pugi::parse_ws_pcdata_single;
  auto const parsed = document.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8);
  if (!parsed) throw Fault(std::string("the request is not XML: ") + parsed.description());
  pugi::xml_node const body = CheckEnvelope(document, service);

  pugi::xml_node content = body;
  if (!operation.rootTag.empty()) {
    std::string const name = std::string(service.prefix) + ":" + std::string(operation.rootTag);
    Checker in(body);
    content = in.Required(name);
    in.End();
  } else {
    Checker(body).End();
  }
  pugi::xml_document reply;
  Checker in(content);
  std::lock_guard<std::mutex> const lock(storeMutex);
  operation.handler(store, in, StartReply(reply, service, ResponseTag(operation)));
  return Print(reply);
}

}  // namespace

struct Server::Http {
  HttpServer server;
  std::mutex store;  // held by the operation that uses the store
  std::thread thread;
};

Server::Server(Store& store, ServerOptions options)
    : m_store(store), m_options(std::move(options)), m_http(std::make_unique<Http>()) {
  HttpServer& server = m_http->server;
  server.new_task_queue = [] { return new httplib::ThreadPool(kConnections); };
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(kCallsPerConnection);
  server.set_keep_alive_timeout(kIdleSeconds);
  server.set_payload_max_length(kMaxRequestBytes);
  // Without this the library shares a port that another server already listens on.
  server.set_socket_options([](int socket) {
    int const yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  server.Get("/", [](httplib::Request const&, httplib::Response& response) {
    response.set_content("lumo-sandbox\n", "text/plain");
  });
  // Files and pictures, under the addresses that replies name.
  auto const withData = [this](httplib::Response& response, auto const& work) {
    std::lock_guard<std::mutex> const lock(m_http->store);
    try {
      work();
    } catch (Fault const& fault) {
      response.status = 404;
      response.set_content(fault.what(), "text/plain");
    }
  };
  server.Get(kDataPath,
             [&store, withData](httplib::Request const& request, httplib::Response& response) {
               withData(response, [&] {
                 Data const data =
                     LoadData(store, std::stoi(request.matches[1]), std::stoi(request.matches[2]));
                 response.set_content(data.bytes, data.contentType);
               });
             });
  server.Put(kDataPath,
             [&store, withData](httplib::Request const& request, httplib::Response& response) {
               withData(response, [&] {
                 SaveData(store, std::stoi(request.matches[1]), std::stoi(request.matches[2]),
                          {request.body, request.get_header_value("Content-Type")});
               });
             });
  for (Service const& service : kServices) {
    server.Post(
        "/" + std::string(service.name) + ".svc",
        [this, &store, &service](httplib::Request const& request, httplib::Response& response,
                                 httplib::ContentReader const& read) {
          int status = 500;
          try {
            std::string const text = ReadBody(request, read);
            response.set_content(Answer(store, m_http->store, service, request, text), kReplyType);
            status = 200;
          } catch (Fault const& fault) {
            response.set_content(FaultReply(Blame::Client, fault.what()), kReplyType);
          } catch (std::exception const& error) {
            response.set_content(FaultReply(Blame::Server, error.what()), kReplyType);
          }
          response.status = status;  // the reader of the body may have set another one
        });
  }
}

Server::~Server() { Stop(); }

int Server::Start(int port) {
  HttpServer& server = m_http->server;
  int bound = port;
  if (port == 0) {
    bound = server.bind_to_any_port("127.0.0.1");
  } else if (!server.bind_to_port("127.0.0.1", port)) {
    bound = -1;
  }
  if (bound <= 0) throw std::runtime_error("cannot listen on 127.0.0.1:" + std::to_string(port));
  m_store.SetUrl("http://127.0.0.1:" + std::to_string(bound));
  m_http->thread = std::thread([&server] { server.Listen(); });
  // Stop() reaches only a server that runs; connections made before are not lost.
  while (!server.is_running()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return bound;
}

void Server::Stop() {
  if (!m_http->thread.joinable()) return;
  m_http->server.Stop();
  m_http->thread.join();
}

}  // namespace sandbox
