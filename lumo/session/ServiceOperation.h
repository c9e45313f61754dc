#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>

#include "lumo/session/Operation.h"

namespace lumo {

/// Where a service lies and how its elements are named.
struct Endpoint {
  std::wstring_view path;    ///< below the session's URL
  std::string_view segment;  ///< end of the service's namespace
  std::string_view prefix;   ///< bound to that namespace in requests

  /// The service's namespace below the build's base, for an interface version such as "16/01".
  LUMO_API std::string Namespace(std::string const& version) const;
  /// The service's namespace in a session; empty for null.
  LUMO_API std::string Namespace(LumoSession const* session) const;
};

/// The five services.
struct Endpoints {
  /// Where they lie, and how their elements are named:
  LUMO_API static constexpr Endpoint Browse = {L"/Browse.svc", "/Browse", "brow"};
  LUMO_API static constexpr Endpoint Search = {L"/Search.svc", "/Search", "sear"};
  LUMO_API static constexpr Endpoint DataExport = {L"/DataExport.svc", "/DataExport", "exp"};
  LUMO_API static constexpr Endpoint DataImport = {L"/DataImport.svc", "/DataImport", "dat"};
  LUMO_API static constexpr Endpoint EngineeringData = {L"/EngineeringData.svc", "/EngineeringData",
                                                        "eng"};
};

/// Whether `Response` promises to read with `NodeReader` alone; classes derived from it do not.
template <class Response, class = void>
constexpr bool kReadsWithNodeReader = false;
template <class Response>
constexpr bool kReadsWithNodeReader<Response, std::void_t<typename Response::ReadsWithNodeReader>> =
    std::is_same_v<Response, typename Response::ReadsWithNodeReader>;

/// Whether `Impl` inherits the `ProcessResponse` of that type.
template <class Impl, class Inherited, class = void>
constexpr bool kKeepsProcessResponse = false;
template <class Impl, class Inherited>
constexpr bool kKeepsProcessResponse<
    Impl, Inherited,
    std::enable_if_t<std::is_same_v<decltype(&Impl::ProcessResponse), Inherited>>> = true;

/// Base of an operation class, which adds its `Name` and its public method:
///
///     class GetTablesImpl : public BrowseOperation<GetTablesImpl, GetTables, GetTablesResponse> {
///      public:
///       static constexpr char Name[] = "GetTables";
///       using ServiceOperation::ServiceOperation;
///       void RequestTables(SmartPtr<GetTables> const& request, GetTablesResponse* response) {
///         Call(request, response);
///       }
///     };
///
/// The request travels in an element of that name and the reply in one with "Response" behind it;
/// `GetRootTagName` and `GetResponseTagName` say so where it is not so. An operation that changes
/// data on the server sets `Writes`. One without a request has `IRequest` for it and calls without.
template <Endpoint const& Service, class Impl, class RequestType, class ResponseType>
class ServiceOperation : public Operation<RequestType, ResponseType> {
 public:
  /// Operations read unless they say otherwise.
  static constexpr bool Writes = false;

  /// The session must outlive the operation. It may be null: calls then end without a reply.
  explicit ServiceOperation(LumoSession* session)
      : Operation<RequestType, ResponseType>(session, Service.Namespace(session),
                                             std::string(Service.prefix)) {
    this->SetIsWrite(Impl::Writes);
    this->ReserveOutcome();
  }

  std::string const& GetOperationName() const override { return m_name; }
  std::wstring const& GetService() const override { return m_path; }

 protected:
  /// A class derived from `Impl` may have a `ProcessResponse` of its own.
  bool IsReadWhileParsed() const override {
    using Inherited =
        SmartPtr<ResponseType> (Operation<RequestType, ResponseType>::*)(XmlDocument<char>*);
    return kReadsWithNodeReader<ResponseType> && kKeepsProcessResponse<Impl, Inherited> &&
           typeid(*this) == typeid(Impl);
  }

  /// Makes the call; a null request is logged and not sent.
  void Call(SmartPtr<RequestType> const& request, ResponseType* response) {
    if (!request) return this->LogError(this->SessionLogger(), "Request cannot be NULL.");
    this->ExecuteRequestInternal(request, response, this->SessionLogger());
  }
  /// Makes the call of an operation whose body is an empty element.
  void CallWithoutRequest(ResponseType* response) {
    this->ExecuteRequestInternal(nullptr, response, this->SessionLogger());
  }

 private:
  std::string m_name = Impl::Name;
  std::wstring m_path = std::wstring(Service.path);
};

template <class Impl, class RequestType, class ResponseType>
/// Base of the operations of the Browse service; the others have theirs.
using BrowseOperation = ServiceOperation<Endpoints::Browse, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
/// Base of the operations of the Search service.
using SearchOperation = ServiceOperation<Endpoints::Search, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
/// Base of the operations of the DataExport service.
using DataExportOperation =
    ServiceOperation<Endpoints::DataExport, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
/// Base of the operations of the DataImport service.
using DataImportOperation =
    ServiceOperation<Endpoints::DataImport, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
/// Base of the operations of the EngineeringData service.
using EngineeringOperation =
    ServiceOperation<Endpoints::EngineeringData, Impl, RequestType, ResponseType>;

}  // namespace lumo
