#include "lumo/platform/http/HttpEnums.h"

eHttpStatusCode eHttpStatusCode_FromNumber(int number) {
  switch (number) {
    case 100: return eHttpStatusCode_Continue;
    case 101: return eHttpStatusCode_SwitchingProtocols;
    case 102: return eHttpStatusCode_Processing;
    case 200: return eHttpStatusCode_OK;
    case 204: return eHttpStatusCode_NoContent;
    case 400: return eHttpStatusCode_BadRequest;
    case 401: return eHttpStatusCode_Unauthorized;
    case 403: return eHttpStatusCode_Forbidden;
    case 404: return eHttpStatusCode_NotFound;
    case 407: return eHttpStatusCode_ProxyAuthenticationRequired;
    case 500: return eHttpStatusCode_InternalServerError;
    case 502: return eHttpStatusCode_BadGateway;
    case 503: return eHttpStatusCode_ServiceUnavailable;
    case 504: return eHttpStatusCode_GatewayTimeout;
    default:
      return number >= 300 && number < 400 ? eHttpStatusCode_Redirection : eHttpStatusCode_Unknown;
  }
}

std::string eHttpMimeType_ToString(eHttpMimeType type) {
  switch (type) {
    case eHttpMimeType_TextPlain: return "text/plain";
    case eHttpMimeType_TextXml: return "text/xml";
    case eHttpMimeType_Unknown: break;
  }
  return {};
}
