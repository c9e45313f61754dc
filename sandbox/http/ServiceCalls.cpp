#include "sandbox/http/ServiceCalls.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>

#include "sandbox/Fault.h"
#include "sandbox/http/HttpServer.h"
#include "sandbox/wire/Soap.h"
#include "sandbox/wire/WellFormed.h"

namespace sandbox {
namespace {

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

/// Refuses a request by what its headers say.
void CheckHeaders(httplib::Request const& request, Operation const* operation) {
  std::string const type = request.get_header_value("Content-Type");
  if (type != "text/xml;charset=UTF-8") throw Fault("unexpected Content-Type \"" + type + "\"");
  if (operation != nullptr) return;
  throw Fault("The message with Action '" + request.get_header_value("SOAPAction") +
                  "' cannot be processed at the receiver, due to a ContractFilter mismatch at the"
                  " EndpointDispatcher. Sender and receiver do not share this action.",
              Blame::Action);
}

/// The element that the body of a request must hold; throws `Fault` for anything else.
pugi::xml_node CheckRequest(pugi::xml_document& document, std::string const& text,
                            Service const& service, Namespaces const& namespaces,
                            Operation const& operation) {
  CheckWellFormed(text);
  // Text outside the root element and blanks that are an element's only content are kept, so that
  // they can be refused; blanks between elements do not matter.
  unsigned const flags = pugi::parse_default | pugi::parse_declaration | pugi::parse_fragment |
                         pugi::parse_ws_pcdata_single;
  auto const parsed = document.load_buffer(text.data(), text.size(), flags, pugi::encoding_utf8);
  if (!parsed) throw Fault(std::string("the request is not XML: ") + parsed.description());
  pugi::xml_node const body = CheckEnvelope(document, service, namespaces);
  Checker in(body);
  if (operation.rootTag.empty()) {
    in.End();
    return body;
  }
  pugi::xml_node const content =
      in.Required(std::string(service.prefix) + ":" + std::string(operation.rootTag));
  in.End();
  return content;
}

void ResetInstead(httplib::Response& response) {
  Connection::Current().Reset();
  response.status = 0;  // none is sent
}

/// Answers with the planned fault where the call itself is not to be done.
bool ReplacesReply(PlannedFault const& fault, httplib::Response& response) {
  switch (fault.kind) {
    case PlannedFault::Kind::Fault:
      response.status = 500;
      response.set_content(FaultReply(Blame::Server, "this fault was asked for"), kXmlType);
      return true;
    case PlannedFault::Kind::Status:
      response.status = fault.number;
      if (fault.retryAfter) response.set_header("Retry-After", std::to_string(*fault.retryAfter));
      return true;
    case PlannedFault::Kind::Html:
      response.status = 200;
      response.set_content(
          "<!DOCTYPE html>\n<html><head><title>Proxy</title></head>"
          "<body>Please log on<br></body></html>\n",
          "text/html; charset=utf-8");
      return true;
    case PlannedFault::Kind::Reset: ResetInstead(response); return true;
    case PlannedFault::Kind::Stall:
      Connection::Current().Pause(std::chrono::seconds(fault.number));
      return false;
    case PlannedFault::Kind::Cut:
    case PlannedFault::Kind::Swallow:
    case PlannedFault::Kind::Malformed: return false;
  }
  return false;
}

/// Answers with the reply, or with what the planned fault leaves of it.
void SetReply(httplib::Response& response, std::string reply,
              std::optional<PlannedFault> const& fault) {
  if (fault && fault->kind == PlannedFault::Kind::Swallow) return ResetInstead(response);
  if (fault && fault->kind == PlannedFault::Kind::Malformed) {
    reply.insert(reply.find('<', reply.size() / 2), "<>");
  }
  if (!fault || fault->kind != PlannedFault::Kind::Cut) {
    response.body = std::move(reply);
    response.set_header("Content-Type", kXmlType);
    return;
  }
  std::size_t const size = reply.size();
  std::size_t const kept = std::min(static_cast<std::size_t>(fault->number), size);
  response.set_content_provider(
      size, kXmlType,
      [reply = std::move(reply), kept](std::size_t, std::size_t, httplib::DataSink& sink) {
        if (kept > 0) sink.write(reply.data(), kept);
        return false;  // closes the connection
      });
}

}  // namespace

void ServiceCalls::Answer(Service const& service, httplib::Request const& request,
                          httplib::Response& response, httplib::ContentReader const& read) {
  Operation const* const operation =
      FindByAction(service, m_namespaces, request.get_header_value("SOAPAction"));
  auto const planned = m_faults.Next(operation != nullptr ? operation->name : "");
  Traffic& traffic = Connection::Current().OfRequest();
  int status = 500;
  std::string reply;
  try {
    traffic.body = ReadBody(request, read);
    if (planned && ReplacesReply(*planned, response)) {
      traffic.outcome = "not done, " + planned->What();
      return;
    }
    CheckHeaders(request, operation);
    reply = Reply(service, *operation, traffic.body);
    status = 200;
    traffic.outcome = "done";
  } catch (Fault const& fault) {
    reply = FaultReply(fault.WhoIsToBlame(), fault.what());
    traffic.outcome = std::string("refused: ") + fault.what();
  } catch (std::exception const& error) {
    reply = FaultReply(Blame::Server, error.what());
    traffic.outcome = std::string("failed: ") + error.what();
  }
  if (planned) traffic.outcome += ", " + planned->What();
  response.status = status;  // the reader of the body may have set another one
  SetReply(response, std::move(reply), planned);
}

/// The reply to one request; throws `Fault` when the request makes no sense.
std::string ServiceCalls::Reply(Service const& service, Operation const& operation,
                                std::string const& text) {
  pugi::xml_document request;
  Checker in(CheckRequest(request, text, service, m_namespaces, operation));
  pugi::xml_document reply;
  std::lock_guard<std::mutex> const lock(m_storeMutex);
  operation.handler(m_store, in, StartReply(reply, service, m_namespaces, operation.ResponseTag()));
  return Print(reply);
}

}  // namespace sandbox
