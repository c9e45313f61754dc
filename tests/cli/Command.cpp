#include "tests/cli/Command.h"

#include <fcntl.h>
#include <httplib.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>
#include <utility>

namespace {

/// Runs in the child: becomes the command, with the streams that there are. Does not come back.
[[noreturn]] void Execute(std::vector<std::string> const& arguments,
                          std::vector<std::string> const& environment, std::string const& url) {
  setenv("LUMO_URL", url.c_str(), 1);
  for (std::string const& setting : environment) {
    std::size_t const sign = setting.find('=');
    setenv(setting.substr(0, sign).c_str(), setting.substr(sign + 1).c_str(), 1);
  }
  std::vector<char*> texts = {const_cast<char*>(LUMO_COMMAND)};
  for (std::string const& argument : arguments)
    texts.push_back(const_cast<char*>(argument.c_str()));
  texts.push_back(nullptr);
  execv(LUMO_COMMAND, texts.data());
  _exit(99);
}

/// The same with its streams in files.
[[noreturn]] void BecomeCommand(std::vector<std::string> const& arguments,
                                std::vector<std::string> const& environment, std::string const& url,
                                std::string const& folder) {
  auto const open = [](std::string const& file, int flags, int stream) {
    int const descriptor = ::open(file.c_str(), flags, 0600);
    dup2(descriptor, stream);
  };
  setsid();  // no terminal to ask for passwords
  open("/dev/null", O_RDONLY, STDIN_FILENO);
  open(folder + "/out", O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
  open(folder + "/error", O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
  Execute(arguments, environment, url);
}

int CodeOf(int status) { return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + status; }

}  // namespace

CommandTest::CommandTest() {
  std::string name = std::filesystem::temp_directory_path() / "lumo-test-XXXXXX";
  m_folder = mkdtemp(name.data());
}

CommandTest::~CommandTest() {
  if (m_server) m_server->Stop();
  std::filesystem::remove_all(m_folder);
}

void CommandTest::Start(sandbox::Content content, sandbox::ServerOptions const& options) {
  if (m_server) m_server->Stop();
  m_store = std::make_unique<sandbox::Store>(sandbox::OpenStore(":memory:", content));
  m_server = std::make_unique<sandbox::Server>(*m_store, options);
  m_url = "http://127.0.0.1:" + std::to_string(m_server->Start(0));
}

void CommandTest::StartWithLog() {
  sandbox::ServerOptions options;
  options.log = &m_log;
  Start(sandbox::Content::Minimal, options);
}

std::string CommandTest::Log() {
  m_server->Stop();
  return m_log.str();
}

Outcome CommandTest::Run(std::vector<std::string> const& arguments,
                         std::vector<std::string> const& environment) const {
  pid_t const child = fork();
  if (child == 0) BecomeCommand(arguments, environment, m_url, m_folder);
  int status = 0;
  waitpid(child, &status, 0);
  return {CodeOf(status), Read(File("out")), Read(File("error"))};
}

Outcome CommandTest::RunOnTerminal(unsigned short width, std::vector<std::string> const& arguments,
                                   std::vector<std::string> const& environment) const {
  winsize const size{50, width, 0, 0};
  int terminal = -1;
  pid_t const child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) Execute(arguments, environment, m_url);
  Outcome outcome;
  char bytes[4096];
  for (ssize_t got = 0; (got = read(terminal, bytes, sizeof bytes)) > 0;) {
    outcome.out.append(bytes, static_cast<std::size_t>(got));
  }
  int status = 0;
  waitpid(child, &status, 0);
  close(terminal);
  outcome.code = CodeOf(status);
  outcome.out.erase(std::remove(outcome.out.begin(), outcome.out.end(), '\r'), outcome.out.end());
  return outcome;
}

Outcome CommandTest::RunAndInterrupt(std::vector<std::string> const& arguments) const {
  Plan("* stall 60");
  pid_t const child = fork();
  if (child == 0) BecomeCommand(arguments, {}, m_url, m_folder);
  httplib::Client control(m_url);
  while (!control.Get("/control/faults")->body.empty()) usleep(1000);  // the call has arrived
  auto const begin = std::chrono::steady_clock::now();
  kill(child, SIGINT);
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
  return {CodeOf(status), Read(File("out")), Read(File("error"))};
}

Outcome CommandTest::RunAndKill(std::vector<std::string> const& arguments,
                                std::chrono::microseconds after) const {
  pid_t const child = fork();
  if (child == 0) BecomeCommand(arguments, {}, m_url, m_folder);
  int status = 0;
  auto const end = std::chrono::steady_clock::now() + after;
  pid_t ended = 0;
  while ((ended = waitpid(child, &status, WNOHANG)) == 0 &&
         std::chrono::steady_clock::now() < end) {
    usleep(500);
  }
  if (ended == 0) {
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
  }
  return {CodeOf(status), Read(File("out")), Read(File("error"))};
}

Outcome CommandTest::RunOnServerThatSays(std::string const& body,
                                         std::vector<std::string> const& arguments) {
  httplib::Server server;
  server.Post(".*", [&body](httplib::Request const&, httplib::Response& response) {
    response.set_content(body, "text/xml");
  });
  int const port = server.bind_to_any_port("127.0.0.1");
  std::thread thread([&server] { server.listen_after_bind(); });
  std::string const url = std::exchange(m_url, "http://127.0.0.1:" + std::to_string(port));
  Outcome outcome = Run(arguments);
  m_url = url;
  server.stop();
  thread.join();
  return outcome;
}

void CommandTest::Plan(std::string const& faults) const {
  auto const reply = httplib::Client(m_url).Put("/control/faults", faults, "text/plain");
  ASSERT_TRUE(reply);
  ASSERT_EQ(reply->status, 200) << reply->body;
}

std::string CommandTest::Read(std::string const& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string CommandTest::File(std::string const& name, std::string const& content) const {
  std::ofstream(File(name), std::ios::binary) << content;
  return File(name);
}
