#pragma once

#include <memory>
#include <string>

#include "lumo/LumoServiceLayer.h"

/// Answers every message with the same reply, without a network. The reply must outlive it.
class InstantTransport : public HttpTransport {
 public:
  static SmartPtr<HttpTransport> Of(std::string const& reply) {
    return {new InstantTransport(reply)};
  }
  int Send(std::shared_ptr<HttpOptions const> const& /*options*/, std::string const& /*path*/,
           eHttpVerb /*verb*/, HttpMessage& message) override {
    message.SetResponse(200, {}, std::string(m_reply));
    return 0;
  }

 private:
  explicit InstantTransport(std::string const& reply) : m_reply(reply) {}
  std::string const& m_reply;
};
