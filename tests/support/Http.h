#pragma once

#include <chrono>
#include <string>

#include "lumo/platform/http/HttpClient.h"
#include "tests/support/RawServer.h"

inline std::string const kFine = HttpReply("200 OK", "fine");

inline SmartPtr<HttpClient> ClientOf(std::string const& url) {
  auto client =
      HttpClient::CreateOneFromURL(nullptr, std::wstring(url.begin(), url.end()), L"", L"", false);
  client->SetTimeouts(5000, 5000, 5000, 5000);
  return client;
}

inline SmartPtr<HttpMessage> Post(HttpClient& client, std::string const& body = "<a/>",
                                  bool isWrite = false) {
  auto message = HttpMessage::CreateOne();
  message->GetRequestBuffer()->SetMessage(body.data(), body.size());
  message->SetIsWrite(isWrite);
  client.SendRequest(L"/p", eHttpVerb_Post, message);
  return message;
}

inline std::string HeaderOf(std::string const& request, std::string const& name) {
  std::size_t const start = request.find("\r\n" + name + ": ");
  if (start == std::string::npos) return {};
  std::size_t const value = start + name.size() + 4;
  return request.substr(value, request.find("\r\n", value) - value);
}

inline std::string Challenge(std::string const& methods) {
  return HttpReply("401 Unauthorized", "<html>who?</html>", methods);
}

/// An NTLM challenge: header, empty target name, flags, eight bytes to be hashed.
inline std::string const kNtlmQuestion =
    "WWW-Authenticate: NTLM TlRMTVNTUAACAAAAAAAAADAAAAAFggIAASNFZ4mrze8AAAAAAAAAAAAAAAAwAAAA\r\n";

inline std::string Repeated(std::string const& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// Milliseconds that `work` takes.
template <class Work>
long long Elapsed(Work work) {
  auto const start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               start)
      .count();
}

/// An address of loopback that nobody listens at any more.
inline std::string AbandonedUrl() {
  RawServer const server(Replies({""}));
  return server.Url();
}
