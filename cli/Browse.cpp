#include "cli/Options.h"
#include "lumo/toolkit/Catalogue.h"
#include "lumo/toolkit/Text.h"

namespace cli {
namespace {

/// Words, columns or parameters: what there is to know of an attribute beside its type.
std::string Remarks(lumo::Attribute const& attribute) {
  std::vector<std::string> parts = attribute.words;
  for (auto const& column : attribute.columns) {
    parts.push_back(WithUnit(column.name, column.unit));
  }
  for (auto const& parameter : attribute.parameters) {
    parts.push_back(WithUnit(parameter.name, parameter.unit));
  }
  return lumo::Joined(parts);
}

/// The figure alone: its unit stands in a column of its own.
Json End(lumo::Value const& value) {
  Json const json = JsonOf(value);
  return json.is_object() ? json["value"] : json;
}

void PrintTree(Context& context, TableChoice const& from, std::string const& folder,
               std::string const& subset, int depth) {
  lumo::Table const table = context.Connect().OpenTable(from.database, from.table);
  bool const isText = context.output.format == Format::Text;
  PutOut(context.output, {"identity", "kind", "folder", "name", "fullName"}, [&](TableWriter& out) {
    lumo::WalkTree(table, folder, subset, depth, [&](lumo::TreeEntry const& entry) {
      lumo::RecordHead const& head = entry.record;
      if (!isText) {
        out.Add({head.id.identity, entry.isFolder ? "folder" : "record", head.folder, head.name,
                 head.fullName});
        return;
      }
      std::string line(static_cast<std::size_t>(entry.depth) * 2, ' ');
      line += OneLine(head.name) + (entry.isFolder ? "/" : "");
      if (!entry.isFolder && head.fullName != head.name) line += "  " + OneLine(head.fullName);
      out.AddLine(line);
    });
  });
}

void ListAttributes(Context& context, TableChoice const& from) {
  lumo::Table const table = context.Connect().OpenTable(from.database, from.table);
  std::vector<lumo::Extent> const extents = lumo::ExtentsOf(table);
  PutOut(context.output, {"name", "type", "unit", "least", "most", "remarks"},
         [&](TableWriter& out) {
           for (std::size_t i = 0; i < extents.size(); ++i) {
             lumo::Attribute const& attribute = table.Attributes()[i];
             out.Add({attribute.name, NameOf(attribute.type), attribute.unit, End(extents[i].least),
                      End(extents[i].most), Remarks(attribute)});
           }
         });
}

void AddTree(CommandLine& line) {
  struct Choice : TableChoice {
    std::string folder;
    std::string subset;
    int depth = 1'000'000;
  };
  auto const from = std::make_shared<Choice>();
  CLI::App& tree =
      line.Add("tree", "print the record tree of a table",
               "  $ lumo tree ENG_MATERIALS Materials --depth 2\n"
               "  $ lumo tree ENG_MATERIALS Materials --folder \"Polymers/Thermoplastics\"",
               [from](Context& context) {
                 PrintTree(context, *from, from->folder, from->subset, from->depth);
               });
  AddTable(tree, *from);
  tree.add_option("--folder", from->folder, "begin at this folder, with \"/\" between the names")
      ->type_name("PATH")
      ->check(NotEmpty());
  tree.add_option("--subset", from->subset, "records of a subset")
      ->type_name("NAME")
      ->check(NotEmpty());
  tree.add_option("--depth", from->depth, "levels to print")
      ->check(Between(1, 1'000'000))
      ->type_name("N");
  AddOutput(tree, line.Shared().output);
}

}  // namespace

void AddBrowsing(CommandLine& line) {
  OutputOptions& output = line.Shared().output;
  AddOutput(line.Add("databases", "list the databases", "  $ lumo databases --sandbox",
                     [](Context& context) {
                       auto const databases = context.Connect().Databases();
                       PutOut(context.output, {"key", "name"}, [&](TableWriter& out) {
                         for (auto const& one : databases) out.Add({one.key, one.name});
                       });
                     }),
            output);

  auto const database = std::make_shared<std::string>();
  CLI::App& tables =
      line.Add("tables", "list the tables of a database", "  $ lumo tables ENG_MATERIALS",
               [database](Context& context) {
                 auto const found = lumo::TablesIn(context.Connect(), *database);
                 PutOut(context.output, {"table", "attributes", "guid"}, [&](TableWriter& out) {
                   for (auto const& one : found) out.Add({one.name, one.attributes, one.guid});
                 });
               });
  AddDatabase(tables, *database);
  AddOutput(tables, output);
  AddTree(line);

  auto const table = std::make_shared<TableChoice>();
  CLI::App& attributes = line.Add("attributes", "list the attributes of a table",
                                  "  $ lumo attributes ENG_MATERIALS Materials",
                                  [table](Context& context) { ListAttributes(context, *table); });
  AddTable(attributes, *table);
  AddOutput(attributes, output);

  auto const whole = std::make_shared<TableChoice>();
  CLI::App& subsets =
      line.Add("subsets", "list the subsets of a table", "  $ lumo subsets ENG_MATERIALS Materials",
               [whole](Context& context) {
                 auto const from = context.Connect().OpenTable(whole->database, whole->table);
                 PutOut(context.output, {"subset"}, [&](TableWriter& out) {
                   for (std::string const& name : from.Subsets()) out.Add({name});
                 });
               });
  AddTable(subsets, *whole);
  AddOutput(subsets, output);
}

void AddUnitLists(CommandLine& line) {
  struct Choice {
    std::string database;
    std::string from;
    bool systems = false;
  };
  auto const choice = std::make_shared<Choice>();
  auto const list = [choice](Context& context) {
    lumo::Client const client = context.Connect();
    if (choice->systems) {
      auto const found = lumo::UnitSystemsIn(client, choice->database);
      return PutOut(context.output, {"kind", "name", "fullName"}, [&](TableWriter& out) {
        for (std::string const& system : found.systems) out.Add({"system", system, ""});
        for (auto const& one : found.currencies) out.Add({"currency", one.symbol, one.name});
      });
    }
    if (!choice->from.empty()) {
      auto const steps = lumo::ConversionsOf(client, choice->database, choice->from);
      return PutOut(context.output, {"from", "to", "factor", "offset"}, [&](TableWriter& out) {
        for (auto const& step : steps) {
          out.Add({choice->from, step.target, JsonOf(step.factor), JsonOf(step.offset)});
        }
      });
    }
    auto const units = lumo::UnitsIn(client, choice->database);
    PutOut(context.output, {"unit", "name"}, [&](TableWriter& out) {
      for (auto const& unit : units) out.Add({unit.symbol, unit.name});
    });
  };
  CLI::App& units = line.Add("units", "list units, their conversions, or unit systems",
                             "  $ lumo units ENG_MATERIALS\n"
                             "  $ lumo units ENG_MATERIALS --from MPa\n"
                             "  $ lumo units ENG_MATERIALS --systems",
                             list);
  AddDatabase(units, choice->database);
  units.add_option("--from", choice->from, "list the units into which this one can be converted")
      ->type_name("UNIT");
  units.add_flag("--systems", choice->systems, "unit systems and currencies")->excludes("--from");
  AddOutput(units, line.Shared().output);
}

}  // namespace cli
