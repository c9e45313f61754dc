#include "sandbox/http/RequestLog.h"

#include <pugixml.hpp>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <ostream>
#include <sstream>
#include <utility>

namespace sandbox {
namespace {

/// UTC with milliseconds.
std::string Now() {
  auto const now = std::chrono::system_clock::now();
  std::time_t const seconds = std::chrono::system_clock::to_time_t(now);
  auto const sinceEpoch =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch());
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  char day[32];
  char text[48];
  std::strftime(day, sizeof day, "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text, sizeof text, "%s.%03dZ", day, static_cast<int>(sinceEpoch.count() % 1000));
  return text;
}

/// The text without what could steer a terminal.
std::string Printable(std::string text) {
  auto const steers = [](char c) {
    return (static_cast<unsigned char>(c) < ' ' && c != '\n' && c != '\t') || c == '\x7F';
  };
  std::replace_if(text.begin(), text.end(), steers, '?');
  return text;
}

/// The text without what could begin another line.
std::string OneLine(std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  return Printable(std::move(text));
}

/// XML with an element in each line, anything else as it is; every line indented.
std::string Indented(std::string const& body) {
  std::ostringstream lines;
  pugi::xml_document document;
  if (document.load_buffer(body.data(), body.size())) {
    for (pugi::xml_node const node : document) {
      node.print(lines, "  ", pugi::format_indent, pugi::encoding_utf8, 1);
    }
  } else {
    std::istringstream raw(body);
    for (std::string line; std::getline(raw, line);) lines << "  " << line << '\n';
  }
  return Printable(lines.str());
}

}  // namespace

void RequestLog::Write(RequestReport const& report) {
  std::ostringstream text;
  text << Now() << ' ' << OneLine(report.operation) << ' ' << report.status << " in "
       << report.bytesIn << " out " << report.bytesOut << " bytes, "
       << std::round(report.milliseconds * 10) / 10 << " ms" << (report.outcome.empty() ? "" : ", ")
       << OneLine(report.outcome) << '\n'
       << Indented(report.body);
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_out << text.str() << std::flush;
}

}  // namespace sandbox
