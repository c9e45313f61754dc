#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/support/Fields.h"
#include "tests/support/Session.h"

/// What a call comes to: all that its response and the log then say.
struct CallResult {
  std::string fields;
  std::string error;  ///< text of the exception that the call threw
  std::vector<std::string> log;
  std::string outcome;
  std::string replyText;
  std::string requestText;

  bool operator==(CallResult const& other) const {
    return fields == other.fields && error == other.error && log == other.log &&
           outcome == other.outcome && replyText == other.replyText &&
           requestText == other.requestText;
  }
};

/// Answers every message of a session with status 200 and one reply.
class OneReply : public HttpTransport {
 public:
  explicit OneReply(std::string const& reply) : m_reply(reply) {}
  int Send(std::shared_ptr<HttpOptions const> const& /*options*/, std::string const& /*path*/,
           eHttpVerb /*verb*/, HttpMessage& message) override {
    message.SetResponse(200, {}, std::string(m_reply));
    return 0;
  }

 private:
  std::string m_reply;
};

/// A session whose server gives that reply.
inline SmartPtr<LumoSession> SessionWith(std::string const& reply, ILogger* logger = nullptr) {
  HttpClient::SetTransportFactory(
      [&reply] { return SmartPtr<HttpTransport>(new OneReply(reply)); });
  auto session = LumoSession::CreateOneWithLogger("http://x", nullptr, logger);
  HttpClient::SetTransportFactory(nullptr);
  return session;
}

template <class Request, class Response>
CallResult Call(Operation<Request, Response>& operation, KeepingLogger& logger) {
  CallResult result;
  Response response;
  try {
    operation.ExecuteRequestInternal(nullptr, &response, &logger);
  } catch (std::exception const& error) {
    result.error = error.what();
  }
  result.fields = Fields::Of(response);
  result.log = logger.Errors();
  ServiceLayerResponse const& outcome = *response.GetServiceLayerResponse();
  result.outcome = std::to_string(outcome.GetOutcome()) + outcome.ErrorText();
  result.replyText = outcome.GetResponseMessage();
  result.requestText = outcome.GetRequestMessage();
  return result;
}

/// The text of a reply as its whole tree has it; the reply itself when it is not XML.
inline std::string TextOfWholeTree(std::string const& reply) {
  auto const document = std::make_unique<XmlDocument<char>>();
  bool const isXml = XMLUtilites::Parse(reply.data(), reply.data() + reply.size(), *document);
  return isXml ? XMLUtilites::Print(*document) : reply;
}

/// What a call of the operation comes to when the reply may be read while it is parsed.
template <class Impl>
CallResult ReadAsEver(std::string const& reply) {
  KeepingLogger logger;
  auto const session = SessionWith(reply, &logger);
  Impl operation(session.get());
  return Call(operation, logger);
}

/// An operation that may have a `ProcessResponse` of its own, as any derived class.
template <class Impl>
class Derived : public Impl {
 public:
  explicit Derived(LumoSession* session) : Impl(session) {}
};

/// The same when the whole tree is made.
template <class Impl>
CallResult ReadFromWholeTree(std::string const& reply) {
  return ReadAsEver<Derived<Impl>>(reply);
}

template <class... Impl>
struct OperationList {};
using EveryOperation =
    OperationList<GetDatabaseImpl, GetTablesImpl, GetSubsetsImpl, GetUnitsImpl, GetUnitSystemsImpl,
                  GetCurrenciesImpl, GetUnitConversionsImpl, GetRootNodeImpl, GetChildNodesImpl,
                  GetTreeRecordsImpl, GetRecordVersionsImpl, GetAttributeDetailsImpl,
                  GetAttributeParametersImpl, GetParameterDetailsImpl, GetAttributeMinMaxImpl,
                  GetMetaAttributesImpl, GetRecordAttributesImpl, GetRecordLinkGroupsImpl,
                  GetLinkedRecordsImpl, SimpleTextSearchImpl, CriteriaSearchImpl,
                  RecordNameSearchImpl, GetRecordAttributesByRefImpl, SetRecordAttributesImpl,
                  GetUploadAddressesImpl, ModifyRecordLinksImpl, GetAvailableExportersImpl,
                  ExportersForRecordsImpl, GetExporterParametersImpl, ExportRecordDataImpl>;
