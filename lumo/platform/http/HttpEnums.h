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

enum eHttpMimeType : int {
  eHttpMimeType_Unknown = 0,
  eHttpMimeType_TextPlain = 1,
  eHttpMimeType_TextXml = 2,
};

/// Enumerator of a numeric status.
LUMO_API eHttpStatusCode eHttpStatusCode_FromNumber(int number);
/// "text/xml" and its like; empty for an unknown type.
LUMO_API std::string eHttpMimeType_ToString(eHttpMimeType type);
