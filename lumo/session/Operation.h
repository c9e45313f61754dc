#pragma once

#include <exception>
#include <new>
#include <utility>

#include "lumo/platform/core/Time.h"
#include "lumo/session/OperationBase.h"
#include "lumo/xml/GrowingTree.h"
#include "lumo/xml/UnbuiltValues.h"

/// The road of one call: request object, envelope, bytes, server, bytes, document, response object.
/// Failures of server and transport never throw; they are in the response:
///
///     GetTablesResponse response;
///     services->GetBrowseService()->GetGetTablesImpl()->RequestTables(request, &response);
///     if (!response.GetServiceLayerResponse()->Succeeded()) { ... }
///
/// Nor does memory that runs out. Values in the reply that do not convert throw the standard
/// exceptions. An operation object keeps nothing between calls and may be used by several threads
/// at once.
template <class RequestType, class ResponseType>
class Operation : public OperationBase {
 public:
  /// Makes the call. The body stays empty for a null `request`; with a null `response` the request
  /// is sent all the same. `logger` may be null. A call that fails leaves the old contents of
  /// `response` in place and sets only its `ServiceLayerResponse`.
  void ExecuteRequestInternal(SmartPtr<IRequest> const& request, ResponseType* response,
                              ILogger* logger) {
    GuardMemory(response, logger, [&] {
      std::uint64_t const start = Time::GetPerformanceTime();
      SmartPtr<HttpMessage> const message = BuildRequestHandle(request);
      Post(message);
      HandleReply(message, response, logger);
      LogTiming(logger, start, *message);
    });
  }

  /// The response that the document holds; null when it holds none.
  virtual SmartPtr<ResponseType> ProcessResponse(XmlDocument<char>* document) {
    return document == nullptr ? nullptr : ResponseType::CreateOne(FindResponseNode(*document));
  }

 protected:
  /// For the operation classes.
  using OperationBase::OperationBase;

  /// Whether replies may be read while they are parsed, see `lumo::ReadWhileParsed`:
  /// `ProcessResponse` is the one above, and the response looks at no nodes itself.
  virtual bool IsReadWhileParsed() const { return false; }

  /// Does the work of a call, which fails when memory runs out.
  template <class Work>
  void GuardMemory(ResponseType* response, ILogger* logger, Work work) {
    try {
      work();
    } catch (std::bad_alloc const&) {
      SmartPtr<ServiceLayerResponse> const outcome = OutOfMemory(logger);
      if (response != nullptr) response->SetServiceLayerResponse(outcome);
    }
  }

 private:
  void HandleReply(SmartPtr<HttpMessage> const& sent, ResponseType* response, ILogger* logger) {
    if (response == nullptr) return LogError(logger, "Response cannot be NULL.");
    HttpMessage const& message = *sent;
    SmartPtr<ServiceLayerResponse> const outcome = MakeOutcome(message, logger);
    outcome->SetExchange(GetOperationName(), sent);
    response->SetServiceLayerResponse(outcome);
    if (!message.GetResponseBuffer()) return;
    if (message.GetStatus() != eHttpStatusCode_OK) return ReadFailure(message, *outcome, logger);
    if (SmartPtr<ResponseType> const own = ReadWhileParsed(message, *outcome, logger)) {
      *response = std::move(*own);
    } else if (SmartPtr<ResponseType> const made = ReadWholeTree(message, *outcome, logger)) {
      ResponseType copy;
      copy = *made;  // which may fail, and moving may not
      *response = std::move(copy);
    } else {
      return;
    }
    response->SetServiceLayerResponse(outcome);
  }

  /// The tree is gone before the response is handed over.
  SmartPtr<ResponseType> ReadWholeTree(HttpMessage const& message, ServiceLayerResponse& outcome,
                                       ILogger* logger) {
    std::unique_ptr<XmlDocument<char>> const document = ParseReply(message, outcome, logger);
    lumo::UnbuiltValues const unbuilt;
    SmartPtr<ResponseType> parsed = Convert(*document, outcome);
    if (parsed) {
      ConcludeRead(outcome, unbuilt.Count(), logger);
    } else {
      ConcludeUnread(message, outcome, *document);
    }
    return parsed;
  }

  /// A response that nobody else has; null when the whole tree decides.
  SmartPtr<ResponseType> ReadWhileParsed(HttpMessage const& message, ServiceLayerResponse& outcome,
                                         ILogger* logger) const {
    if (!IsReadWhileParsed()) return nullptr;
    lumo::UnbuiltValues const unbuilt;
    SmartPtr<ResponseType> parsed;
    bool const isRead = lumo::ReadWhileParsed(
        message.GetResponseBuffer()->GetBytes(), GetResponseTagName(),
        [&parsed](XmlNode<char> const* node) { parsed = ResponseType::CreateOne(node); });
    if (!isRead) return nullptr;
    ConcludeRead(outcome, unbuilt.Count(), logger);
    return parsed;
  }

  SmartPtr<ResponseType> Convert(XmlDocument<char>& document, ServiceLayerResponse& outcome) {
    try {
      return ProcessResponse(&document);
    } catch (std::bad_alloc const&) {
      throw;
    } catch (std::exception const& error) {
      outcome.SetOutcome(CallOutcomes::NotUnderstood, GetOperationName(),
                         std::string("a value in the reply does not convert: ") + error.what());
      throw;
    }
  }
};
