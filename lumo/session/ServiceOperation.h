#pragma once

#include <string>

#include "lumo/session/Operation.h"
#include "lumo/session/OperationNames.h"

namespace lumo {

/// Where a service lies and how its elements are named.
struct Endpoint {
  std::wstring path;    ///< below the session's URL
  std::string segment;  ///< end of the service's namespace
  std::string prefix;   ///< bound to that namespace in requests

  /// The service's namespace for an interface version such as "16/01".
  LUMO_API std::string Namespace(std::string const& version) const;
  /// The same for the version that the session speaks.
  LUMO_API std::string Namespace(LumoSession const* session) const;
};

/// The five services.
struct Endpoints {
  LUMO_API static Endpoint const Browse;
  LUMO_API static Endpoint const Search;
  LUMO_API static Endpoint const DataExport;
  LUMO_API static Endpoint const DataImport;
  LUMO_API static Endpoint const EngineeringData;
};

/// Base of an operation class, which adds its static `Name` and its public method:
///
///     class GetTablesImpl : public BrowseOperation<GetTablesImpl, GetTables, GetTablesResponse> {
///      public:
///       static inline std::string const Name = "GetTables";
///       using ServiceOperation::ServiceOperation;
///       void RequestTables(SmartPtr<GetTables> const& request, GetTablesResponse* response) {
///         Call(request, response);
///       }
///     };
///
/// Operations without a request have `IRequest` for it and call without one.
template <Endpoint const& Service, class Impl, class RequestType, class ResponseType>
class ServiceOperation : public Operation<RequestType, ResponseType> {
 public:
  /// The session must outlive the operation. It may be null: calls then end without a reply.
  explicit ServiceOperation(LumoSession* session)
      : Operation<RequestType, ResponseType>(session, Service.Namespace(session), Service.prefix),
        m_names(FindOperationNames(Impl::Name)) {
    this->SetIsWrite(m_names->isWrite);
  }

  std::string const& GetOperationName() const override { return Impl::Name; }
  std::wstring const& GetService() const override { return Service.path; }
  std::string GetRootTagName() const override { return std::string(m_names->rootTag); }
  std::string GetResponseTagName() const override { return std::string(m_names->responseTag); }

 protected:
  void Call(SmartPtr<RequestType> const& request, ResponseType* response) {
    if (!request) return this->LogError(this->SessionLogger(), "Request cannot be NULL.");
    this->ExecuteRequestInternal(request, response, this->SessionLogger());
  }
  void CallWithoutRequest(ResponseType* response) {
    this->ExecuteRequestInternal(nullptr, response, this->SessionLogger());
  }

 private:
  OperationNames const* m_names;
};

template <class Impl, class RequestType, class ResponseType>
using BrowseOperation = ServiceOperation<Endpoints::Browse, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
using SearchOperation = ServiceOperation<Endpoints::Search, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
using DataExportOperation =
    ServiceOperation<Endpoints::DataExport, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
using DataImportOperation =
    ServiceOperation<Endpoints::DataImport, Impl, RequestType, ResponseType>;
template <class Impl, class RequestType, class ResponseType>
using EngineeringOperation =
    ServiceOperation<Endpoints::EngineeringData, Impl, RequestType, ResponseType>;

}  // namespace lumo
