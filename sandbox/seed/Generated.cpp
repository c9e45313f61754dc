#include <map>
#include <string>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Tables.h"
#include "sandbox/model/Values.h"
#include "sandbox/seed/Seed.h"
#include "sandbox/seed/ValueBuilder.h"

namespace sandbox {
namespace {

constexpr char kKey[] = "ENG_MATERIALS";
constexpr int kGeneratedInFolder = 1000;

}  // namespace

void AddGeneratedRecords(Store& store, int count) {
  Transaction transaction(store);
  Table const table = FindTable(store, {0, "", "Materials", kKey});
  int const root =
      Records(store, "r.table_id = ? AND r.parent_id IS NULL", {std::to_string(table.id)}).at(0).id;
  int const top = AddRecord(store, {table.id, root, "Generated", "Generated records", true});
  int folder = top;
  for (int i = 1; i <= count; ++i) {
    std::string const number = std::to_string(i);
    if (i % kGeneratedInFolder == 1) {
      std::string const name = "From " + number;
      folder = AddRecord(store, {table.id, top, name, name, true});
    }
    int const record =
        AddRecord(store, {table.id, folder, "GEN-" + number, "Generated material " + number});
    auto const set = [&](std::string const& name, std::string const& text) {
      static std::map<std::string, Attribute> known;
      auto const [entry, isNew] = known.try_emplace(name);
      if (isNew) {
        entry->second =
            Attributes(store, "a.table_id = ? AND a.name = ?", {std::to_string(table.id), name})
                .at(0);
      }
      StoreValue(store, record, entry->second.id,
                 BuildValue(store, entry->second, table.dbKey, text));
    };
    set("Designation", "GEN " + number);
    set("Typical uses", "Made up for trials with many records, number " + number + ".");
    set("Density", std::to_string(1000 + i % 8000) + " " + std::to_string(1010 + i % 8000));
    set("Young's modulus", std::to_string(1 + i % 400));
    set("Tensile strength", std::to_string(100 + i % 900) + " " + std::to_string(120 + i % 900));
    set("Recyclable", i % 2 == 0 ? "yes" : "no");
    set("Durability: sea water", i % 3 == 0 ? "Excellent" : "Limited use");
    set("Number of suppliers", std::to_string(i % 40));
    set("Last reviewed", "2026-02-03T04:05:06");
    set("Hardness by condition", std::to_string(50 + i % 300));
  }
  transaction.Commit();
}

}  // namespace sandbox
