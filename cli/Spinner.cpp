#include "cli/Spinner.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace cli {
namespace {

constexpr std::chrono::seconds kFirst{1};
constexpr std::chrono::milliseconds kEvery{200};
constexpr char kSigns[] = "|/-\\";

class Turning {
 public:
  Turning() : m_thread([this] { Turn(); }) {}
  ~Turning() {
    {
      std::lock_guard<std::mutex> const lock(m_mutex);
      m_isOver = true;
    }
    m_over.notify_one();
    m_thread.join();
  }
  Turning(Turning const&) = delete;
  Turning& operator=(Turning const&) = delete;

 private:
  static void Print(std::string const& text) {
    if (write(STDERR_FILENO, text.data(), text.size()) < 0) return;  // nobody would see it
  }

  void Turn() {
    std::unique_lock<std::mutex> lock(m_mutex);
    auto const isOver = [this] { return m_isOver; };
    if (m_over.wait_for(lock, kFirst, isOver)) return;
    for (std::size_t turn = 0; !m_isOver; ++turn) {
      Print(std::string("\r") + kSigns[turn % 4] + " waiting for the server");
      m_over.wait_for(lock, kEvery, isOver);
    }
    Print("\r\033[K");
  }

  std::mutex m_mutex;
  std::condition_variable m_over;
  bool m_isOver = false;
  std::thread m_thread;
};

std::unique_ptr<Turning> turning;

}  // namespace

void Spinner::Start() {
  if (isatty(STDERR_FILENO) == 1) turning = std::make_unique<Turning>();
}

void Spinner::Stop() { turning.reset(); }

}  // namespace cli
