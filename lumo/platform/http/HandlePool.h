#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

#include "lumo/platform/http/CurlHandle.h"

namespace lumo {

/// The handles that no exchange uses, with their connections. The one that was used last is used
/// next; those that a stretch of calls did not need at any moment are closed, so that a burst of
/// calls leaves no connections behind.
class HandlePool {
 public:
  /// A handle for one exchange, made when none is idle.
  class Lease {
   public:
    Lease(HandlePool& pool, std::shared_ptr<HttpOptions const> const& options);
    CurlHandle& operator*() const { return *m_handle; }
    CurlHandle* operator->() const { return m_handle.get(); }
    /// Gives the handle back to the pool; it is closed otherwise.
    void Keep();

   private:
    /// Counts one exchange as long as it lives.
    class Use {
     public:
      explicit Use(HandlePool& pool);
      ~Use();
      Use(Use const&) = delete;
      Use& operator=(Use const&) = delete;
      HandlePool& Pool() const { return m_pool; }

     private:
      HandlePool& m_pool;
    };

    Use m_use;
    std::unique_ptr<CurlHandle> m_handle;
  };

  /// Closes all that are idle.
  void Clear();

 private:
  using Handles = std::vector<std::unique_ptr<CurlHandle>>;

  std::unique_ptr<CurlHandle> Take(std::shared_ptr<HttpOptions const> const& options);
  Handles Put(std::unique_ptr<CurlHandle> handle);

  std::mutex m_mutex;  // held while handles change hands, never while one is used or closed
  Handles m_idle;
  std::size_t m_inUse = 0;
  std::size_t m_mostInUse = 0;  // at once, in the stretch of calls that is going on
  int m_calls = 0;              // in that stretch
};

}  // namespace lumo
