#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "lumo/session/IRequest.h"
#include "lumo/session/LumoSession.h"
#include "lumo/session/ServiceLayerResponse.h"

/// What one operation needs to be called: session, namespace and names. Builds the request and
/// reports what became of it; `Operation` has the road of a call.
class LUMO_API OperationBase : public SmartPtrTarget_ts {
 public:
  /// Name of the operation, which begins every log line.
  virtual std::string const& GetOperationName() const = 0;
  /// Path of the service below the session's URL.
  virtual std::wstring const& GetService() const = 0;
  /// Name of the request's element, without its prefix.
  virtual std::string GetRootTagName() const;
  /// Name of the element in the reply's body from which the response is read.
  virtual std::string GetResponseTagName() const;

  /// A message with headers and envelope; the body stays empty for a null request.
  SmartPtr<HttpMessage> BuildRequestHandle(SmartPtr<IRequest> const& request) const;
  /// Fills the message; does nothing with a null one.
  void BuildRequest(SmartPtr<HttpMessage> const& message, SmartPtr<IRequest> const& request) const;
  /// Adds what the SOAP header of every call carries.
  void PopulateHeaderNode(XmlNode<char>* header, XmlDocument<char>* document) const;

 protected:
  /// For the operation classes; the prefix is bound to the namespace in the envelope.
  OperationBase(LumoSession* session, std::string const& serviceNamespace,
                std::string const& prefix);

  /// Says whether the operation changes data on the server, as few do: such a request goes out on a
  /// fresh connection and is never sent twice.
  void SetIsWrite(bool isWrite) { m_isWrite = isWrite; }

  /// Makes the outcome of a call for which memory runs out, while there is some. Without it, it is
  /// made when it is needed, and that may fail.
  void ReserveOutcome();
  /// That outcome; logs it when that is possible.
  SmartPtr<ServiceLayerResponse> OutOfMemory(ILogger* logger) const;

  /// The session's logger; null without one.
  ILogger* SessionLogger() const;
  /// Logs the operation's name followed by `text`; does nothing without a logger.
  void Log(ILogger* logger, int level, std::string const& text) const;
  /// Logs at the level of errors.
  void LogError(ILogger* logger, std::string const& text) const { Log(logger, 1, text); }
  /// Logs how long the call has taken since `start`, and the exchange in it.
  void LogTiming(ILogger* logger, std::uint64_t start, HttpMessage const& message) const;

  /// Sends the message and adds the time it took to the message.
  void Post(SmartPtr<HttpMessage> const& message) const;
  /// Status and texts of what came back; logs when no reply did.
  SmartPtr<ServiceLayerResponse> MakeOutcome(HttpMessage const& message, ILogger* logger) const;
  /// The reply's document. When the reply is not XML, an empty one, a log line and the outcome.
  std::unique_ptr<XmlDocument<char>> ParseReply(HttpMessage const& message,
                                                ServiceLayerResponse& outcome,
                                                ILogger* logger) const;
  /// Finds out and logs what a reply of another status than success says.
  void ReadFailure(HttpMessage const& message, ServiceLayerResponse& outcome,
                   ILogger* logger) const;
  /// Tells the outcome of a reply from which the response was read: a success, unless some values
  /// could not be built.
  void ConcludeRead(ServiceLayerResponse& outcome, std::size_t unbuiltValues,
                    ILogger* logger) const;
  /// Tells why a reply with the status of success holds no response: it is a fault, or something
  /// else.
  void ConcludeUnread(HttpMessage const& message, ServiceLayerResponse& outcome,
                      XmlDocument<char> const& document) const;
  /// The response's element in the reply; null when there is none.
  XmlNode<char> const* FindResponseNode(XmlDocument<char> const& document) const;

 private:
  SmartPtr<ServiceLayerResponse> MakeOutOfMemory() const;

  LumoSession* m_session;
  std::string m_namespace;
  std::string m_baseTypesNamespace;
  std::string m_headerNamespace;
  std::string m_prefix;
  HeaderVals::eOptionalBool m_actAsReadUser = HeaderVals::NotSet;
  std::string m_applicationName;
  bool m_isWrite = false;
  SmartPtr<ServiceLayerResponse> m_outOfMemory;  // shared by all calls, and not changed
};
