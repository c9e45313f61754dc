#include "sandbox/seed/Seed.h"

#include "sandbox/seed/Databases.h"
#include "sandbox/seed/Records.h"

namespace sandbox {

Store OpenStore(std::string const& file, Content content) {
  Store store(file);
  if (!store.IsNew()) return store;
  store.Run("BEGIN");
  store.MakeTables();
  AddUnits(store);
  AddDatabases(store);
  AddRecords(store, content);
  store.Run("COMMIT");
  return store;
}

}  // namespace sandbox
