#include "tests/support/TinyService.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

constexpr int kRoot = 1'000'000;
constexpr int kFirstFolder = kRoot + 1;
constexpr int kInFolder = 100;

std::string Element(std::string const& name, std::string const& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

std::string Response(std::string const& operation, std::string const& content) {
  return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><)" +
         operation + R"(Response xmlns:b="base">)" + content + "</" + operation +
         "Response></s:Body></s:Envelope>";
}

std::string Reference(int identity) {
  return Element("b:dbKey", "DB") +
         Element("b:identity", Element("b:recordHistoryIdentity", std::to_string(identity)));
}

struct Kind {
  char const* name;
  char const* type;
  char const* unit;
};
constexpr Kind kAttributes[] = {{"Name", "STXT", ""},
                                {"Density", "POIN", "kg/m^3"},
                                {"Strength", "RNGE", "MPa"},
                                {"Count", "INPT", ""},
                                {"Good", "LOGI", ""}};

std::string AttributeReferences() {
  std::string text;
  int identity = 0;
  for (Kind const& kind : kAttributes) {
    text += Element("b:attribute", Element("b:dbKey", "DB") +
                                       Element("b:attributeIdentity", std::to_string(++identity)) +
                                       Element("b:name", Element("b:attributeName", kind.name)));
  }
  return text;
}

std::string AttributeDetails() {
  std::string text;
  int identity = 0;
  for (Kind const& kind : kAttributes) {
    text +=
        Element("attributeDetail",
                Element("b:name", kind.name) + Element("b:identity", std::to_string(++identity)) +
                    Element("b:type", kind.type) + Element("b:databaseUnit", kind.unit));
  }
  return text;
}

std::string TreeEntryOf(int identity, std::string const& name, bool isFolder, int parent) {
  return std::string("<b:treeRecord type=\"") + (isFolder ? "Folder" : "Record") + "\">" +
         Element("b:shortName", name) + Element("b:fullName", "Record " + name) +
         Element("b:recordReference", Reference(identity)) +
         Element("b:parentRecordHistoryIdentity", std::to_string(parent)) + "</b:treeRecord>";
}

std::string FolderName(int identity) { return "F" + std::to_string(identity - kFirstFolder); }

std::string Value(Kind const& kind, std::string const& element, std::string const& content) {
  return Element("attributeValue",
                 Element("b:AttributeName", kind.name) + Element("b:" + element, content));
}

std::string Figures(char const* unit, std::string const& content) {
  return Element("b:UnitSymbol", unit) + Element("b:Estimated", "false") + content;
}

/// What the record holds, all of it made from its identity; every seventh lacks its density.
std::string DataOf(int identity, std::string const& request) {
  auto const isWanted = [&](Kind const& kind) {
    return request.find(std::string(">") + kind.name + "<") != std::string::npos;
  };
  std::string const number = std::to_string(identity);
  std::string values;
  if (isWanted(kAttributes[0])) {
    values += Value(kAttributes[0], "ShortTextDataValue", "Record " + number);
  }
  if (isWanted(kAttributes[1]) && identity % 7 != 0) {
    values += Value(kAttributes[1], "PointDataValue",
                    Figures("kg/m^3", Element("b:Point", Element("b:Value", number + ".125"))));
  }
  if (isWanted(kAttributes[2])) {
    values += Value(
        kAttributes[2], "RangeDataValue",
        Figures("MPa", Element("b:LowValue", number) + Element("b:HighValue", number + ".5")));
  }
  if (isWanted(kAttributes[3])) {
    values += Value(kAttributes[3], "IntegerDataValue", std::to_string(identity % 100));
  }
  if (isWanted(kAttributes[4])) {
    values += Value(kAttributes[4], "LogicalDataValue", identity % 2 == 0 ? "true" : "false");
  }
  return Element("recordData",
                 Element("record", Reference(identity)) + Element("attributeValues", values));
}

std::string OperationOf(std::string const& request) {
  std::size_t const begin = request.find("SOAPAction: ");
  std::size_t const end = request.find("Request\r\n", begin);
  if (begin == std::string::npos || end == std::string::npos) return {};
  std::size_t const slash = request.rfind('/', end);
  return request.substr(slash + 1, end - slash - 1);
}

}  // namespace

std::vector<int> RecordsIn(std::string const& request) {
  static std::string const kElement = "<zbt:recordHistoryIdentity>";
  std::vector<int> identities;
  for (std::size_t at = request.find(kElement); at != std::string::npos;
       at = request.find(kElement, at + 1)) {
    identities.push_back(std::atoi(request.c_str() + at + kElement.size()));
  }
  return identities;
}

TinyService::TinyService(int records, Fault fault)
    : m_records(records),
      m_fault(std::move(fault)),
      m_server([this](RawConnection& connection, int /*number*/) { Serve(connection); }) {}

void TinyService::Serve(RawConnection& connection) {
  for (;;) {
    std::string const request = connection.ReadRequest();
    if (request.empty()) return;
    int const now = ++m_now;
    for (int most = m_mostAtOnce; now > most && !m_mostAtOnce.compare_exchange_weak(most, now);) {
    }
    std::string const operation = OperationOf(request);
    if (operation == "GetRecordAttributesByRef") ++m_reads;
    bool const isDealtWith = m_fault && m_fault(connection, ++m_calls, operation, request);
    std::string const reply = isDealtWith ? "" : HttpReply("200 OK", Reply(operation, request));
    --m_now;  // before the client can know
    if (isDealtWith || !connection.Send(reply)) return;
  }
}

std::string TinyService::Children(int parent) const {
  std::string text;
  int const folders = (m_records + kInFolder - 1) / kInFolder;
  if (parent == kRoot) {
    for (int i = 0; i < folders; ++i) {
      text += TreeEntryOf(kFirstFolder + i, FolderName(kFirstFolder + i), true, kRoot);
    }
    return text;
  }
  int const first = (parent - kFirstFolder) * kInFolder + 1;
  for (int i = first; i < first + kInFolder && i <= m_records; ++i) {
    text += TreeEntryOf(i, "R" + std::to_string(i), false, parent);
  }
  return text;
}

std::string TinyService::Reply(std::string const& operation, std::string const& request) const {
  if (operation == "GetDatabases") {
    return Response(operation, Element("databaseDetails",
                                       Element("database", Element("b:dbKey", "DB") +
                                                               Element("b:volumeName", "Trials"))));
  }
  if (operation == "GetTables") {
    return Response(
        operation,
        Element("tableDetails",
                Element("table", Element("b:table", Element("b:tableIdentity", "1") +
                                                        Element("b:tableName", "Records") +
                                                        Element("b:dbKey", "DB")) +
                                     Element("b:attributeReferences", AttributeReferences()))));
  }
  if (operation == "GetAttributeDetails") {
    return Response(operation, Element("attributeDetails", AttributeDetails()));
  }
  if (operation == "GetRootNode") {
    return Response(operation,
                    Element("rootNode", Element("b:shortName", "Records") +
                                            Element("b:recordReference", Reference(kRoot))));
  }
  if (operation == "GetChildNodes") {
    return Response(operation, Element("treeRecords", Children(RecordsIn(request).at(0))));
  }
  if (operation == "GetTreeRecords") {
    std::string records;
    for (int const identity : RecordsIn(request)) {
      if (identity == kRoot) {
        records += TreeEntryOf(kRoot, "Records", true, 0);
      } else if (identity >= kFirstFolder) {
        records += TreeEntryOf(identity, FolderName(identity), true, kRoot);
      } else {
        int const folder = kFirstFolder + (identity - 1) / kInFolder;
        records += TreeEntryOf(identity, "R" + std::to_string(identity), false, folder);
      }
    }
    return Response(operation, Element("treeRecords", records));
  }
  if (operation == "GetRecordAttributesByRef") {
    std::string records;
    for (int const identity : RecordsIn(request)) records += DataOf(identity, request);
    return Response(operation, Element("results", records));
  }
  return Response(operation, "");
}
