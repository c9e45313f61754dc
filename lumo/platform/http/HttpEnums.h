#pragma once

#include <string>

#include "lumo/platform/core/Export.h"

/// Verbs of HTTP. The client sends `eHttpVerb_Get` and `eHttpVerb_Post`.
enum eHttpVerb : int {
  eHttpVerb_Unknown = 0,
  eHttpVerb_Options = 1,
  eHttpVerb_Trace = 2,
  eHttpVerb_Head = 3,
  eHttpVerb_Get = 4,
  eHttpVerb_Put = 5,
  eHttpVerb_Post = 6,
  eHttpVerb_Delete = 7,
};

/// Statuses that the library tells apart; `HttpMessage::GetStatusCode` has the number.
enum eHttpStatusCode : int {
  eHttpStatusCode_Unknown = 0,  ///< no reply, or any status not listed here
  eHttpStatusCode_Continue = 1,
  eHttpStatusCode_SwitchingProtocols = 2,
  eHttpStatusCode_Processing = 3,
  eHttpStatusCode_OK = 4,
  eHttpStatusCode_NoContent = 5,
  eHttpStatusCode_Redirection = 6,  ///< any 3xx
  eHttpStatusCode_BadRequest = 7,
  eHttpStatusCode_Unauthorized = 8,
  eHttpStatusCode_Forbidden = 9,
  eHttpStatusCode_NotFound = 10,
  eHttpStatusCode_ProxyAuthenticationRequired = 11,
  eHttpStatusCode_InternalServerError = 12,
  eHttpStatusCode_BadGateway = 13,
  eHttpStatusCode_ServiceUnavailable = 14,
  eHttpStatusCode_GatewayTimeout = 15,
};

/// Why no reply came.
enum eHttpFailure : int {
  eHttpFailure_None = 0,   ///< a reply came
  eHttpFailure_Setup = 1,  ///< a URL, setting or verb that cannot be used; nothing was tried
  eHttpFailure_NameResolution = 2,  ///< the server's name is not known
  eHttpFailure_Connection = 3,      ///< refused, or nobody there
  eHttpFailure_ConnectionLost = 4,  ///< closed, reset or cut short before the reply was complete
  eHttpFailure_TimeOut = 5,         ///< the phase says in what
  eHttpFailure_Tls = 6,             ///< certificates, and whatever else TLS does not allow
  eHttpFailure_Proxy = 7,           ///< the proxy is not there, or refuses
  eHttpFailure_Aborted = 8,         ///< the progress callback said so
  eHttpFailure_TooLarge = 9,        ///< a reply over the limit, or headers without end
  eHttpFailure_NotUnderstood = 10,  ///< what came is not HTTP, or breaks its rules
  eHttpFailure_OutOfMemory = 11,
  eHttpFailure_Other = 12,
};

/// Parts of an exchange, in their order.
enum eHttpPhase : int {
  eHttpPhase_None = 0,  ///< nothing was tried
  eHttpPhase_Resolving = 1,
  eHttpPhase_Connecting = 2,  ///< with TLS, and with the way through a proxy
  eHttpPhase_Sending = 3,
  eHttpPhase_Receiving = 4,
};

enum eHttpMimeType : int {
  eHttpMimeType_Unknown = 0,
  eHttpMimeType_TextPlain = 1,
  eHttpMimeType_TextXml = 2,
};

/// Enumerator of a numeric status.
LUMO_API eHttpStatusCode eHttpStatusCode_FromNumber(int number);
/// "text/xml" and its like; empty for an unknown type.
LUMO_API std::string eHttpMimeType_ToString(eHttpMimeType type);
