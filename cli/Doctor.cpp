#include "lumo/toolkit/Doctor.h"

#include "cli/Interrupt.h"
#include "cli/NextStep.h"
#include "cli/Options.h"
#include "lumo/toolkit/Pool.h"

namespace cli {
namespace {

using State = lumo::Finding::State;

constexpr std::size_t kStageWidth = 17;

char const* WordOf(State state) {
  switch (state) {
    case State::Fine: return "fine";
    case State::Doubtful: return "doubtful";
    case State::Fault: break;
  }
  return "fault";
}

/// Tells of each finding as soon as it is there.
class Report {
 public:
  Report(OutputOptions const& options, Sink& sink)
      : m_isText(options.format == Format::Text),
        m_sink(sink),
        m_out(options, sink, {"stage", "state", "text", "next"}) {}

  void Add(lumo::Finding const& finding) {
    std::string const next = NextStep(finding.hint);
    if (!m_isText) {
      m_out.Add({finding.stage, WordOf(finding.state), finding.text, next});
      return;
    }
    std::string const state =
        finding.state == State::Fine ? "" : std::string(WordOf(finding.state)) + ": ";
    m_out.AddLine(Padded(finding.stage, kStageWidth) + OneLine(state + finding.text));
    if (!next.empty()) m_out.AddLine(std::string(kStageWidth, ' ') + "-> " + OneLine(next));
    m_sink.Flush();  // the next stage may take long
  }
  void End() { m_out.End(); }

 private:
  bool m_isText;
  Sink& m_sink;
  TableWriter m_out;
};

Json JsonOf(lumo::Diagnosis const& diagnosis) {
  Json findings = Json::array();
  for (lumo::Finding const& finding : diagnosis.findings) {
    findings.push_back({{"stage", finding.stage},
                        {"state", WordOf(finding.state)},
                        {"text", finding.text},
                        {"next", NextStep(finding.hint)}});
  }
  Json all = {{"lumo", LUMO_CLI_VERSION}, {"url", diagnosis.url}, {"findings", findings}};
  if (!diagnosis.fault) return all;
  lumo::Error const& fault = *diagnosis.fault;
  all["fault"] = {{"code", lumo::NameOf(fault.Code())}, {"text", fault.what()},
                  {"httpStatus", fault.HttpStatus()},   {"faultCode", fault.FaultCode()},
                  {"transport", fault.TransportText()}, {"logOnsOffered", fault.OfferedLogOns()}};
  return all;
}

void PrintDiagnosis(Context& context, bool isOneObject) {
  lumo::Client const client = context.Connect();
  lumo::ServerSettings const& server = client.Pool()->Settings();
  Sink sink(context.output.file);
  lumo::Diagnosis diagnosis;
  if (isOneObject) {
    diagnosis = lumo::Diagnose(server.url, server.options);
    sink.Write(JsonOf(diagnosis).dump(2) + '\n');
  } else {
    Report report(context.output, sink);
    diagnosis = lumo::Diagnose(server.url, server.options,
                               [&](lumo::Finding const& finding) { report.Add(finding); });
    report.End();
  }
  sink.Finish();
  if (diagnosis.fault) throw lumo::Error(*diagnosis.fault);
}

}  // namespace

void AddDoctor(CommandLine& line) {
  auto const add = [&line](char const* name) -> CLI::App& {
    auto const isOneObject = std::make_shared<bool>(false);
    CLI::App& doctor = line.Add(
        name, "go the way to the server and say where it is broken",
        "  $ lumo doctor --url https://server/service_layer --ticket\n"
        "  $ lumo doctor --server plant --json > ticket.json\n\n"
        "Name, proxy, connection, certificate, clock, log-on, namespace and services, one after\n"
        "the other; at the first fault it says what to do next. Nothing is changed on the\n"
        "server, and no password, ticket or token is printed.",
        [isOneObject](Context& context) { PrintDiagnosis(context, *isOneObject); });
    AddOutput(doctor, line.Shared().output);
    doctor.add_flag("--json", *isOneObject, "print one JSON object, for a support ticket");
    return doctor;
  };
  add("doctor");
  add("probe").group("");  // its former name
}

}  // namespace cli
