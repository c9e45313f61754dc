#include "lumo/platform/http/HandlePool.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <utility>

namespace lumo {
namespace {

constexpr int kCallsOfAStretch = 20;

}  // namespace

HandlePool::Lease::Lease(HandlePool& pool, std::shared_ptr<HttpOptions const> const& options)
    : m_use(pool), m_handle(pool.Take(options)) {}

void HandlePool::Lease::Keep() {
  try {
    m_use.Pool().Put(std::move(m_handle));  // what that leaves over is closed here
  } catch (std::bad_alloc const&) {         // a connection is lost, not the reply
  }
}

HandlePool::Lease::Use::Use(HandlePool& pool) : m_pool(pool) {
  std::lock_guard<std::mutex> const lock(pool.m_mutex);
  pool.m_mostInUse = std::max(pool.m_mostInUse, ++pool.m_inUse);
}

HandlePool::Lease::Use::~Use() {
  std::lock_guard<std::mutex> const lock(m_pool.m_mutex);
  --m_pool.m_inUse;
}

void HandlePool::Clear() {
  Handles closed;
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_idle.swap(closed);
}

std::unique_ptr<CurlHandle> HandlePool::Take(std::shared_ptr<HttpOptions const> const& options) {
  std::unique_ptr<CurlHandle> handle;
  {
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (!m_idle.empty()) {
      handle = std::move(m_idle.back());
      m_idle.pop_back();
    }
  }
  return handle && handle->Options() == options ? std::move(handle)
                                                : std::make_unique<CurlHandle>(options);
}

/// Returns the handles that are not needed any more.
HandlePool::Handles HandlePool::Put(std::unique_ptr<CurlHandle> handle) {
  Handles surplus;
  std::lock_guard<std::mutex> const lock(m_mutex);
  m_idle.push_back(std::move(handle));
  if (++m_calls < kCallsOfAStretch) return surplus;
  std::size_t const all = m_idle.size() + m_inUse - 1;  // this exchange is counted in both
  auto const end = m_idle.begin() + static_cast<std::ptrdiff_t>(all - std::min(all, m_mostInUse));
  surplus.assign(std::make_move_iterator(m_idle.begin()), std::make_move_iterator(end));
  m_idle.erase(m_idle.begin(), end);
  m_calls = 0;
  m_mostInUse = m_inUse;
  return surplus;
}

}  // namespace lumo
