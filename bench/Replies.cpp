#include "bench/Replies.h"

namespace {

std::string Envelope(std::string const& service, std::string const& response,
                     std::string const& content) {
  return R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><)" + response +
         R"( xmlns="http://www.example.com/lumo/16/01/)" + service +
         R"(" xmlns:b="http://www.example.com/lumo/16/01/ZorandBaseTypes")" +
         R"( xmlns:i="http://www.w3.org/2001/XMLSchema-instance">)" + content + "</" + response +
         "></s:Body></s:Envelope>";
}

/// One value of a record with its name; the attribute's identity is made from the name's length.
std::string Value(std::string const& name, std::string const& element, std::string const& content) {
  return "<attributeValue><b:AttributeName>" + name + "</b:AttributeName><b:AttributeIdentity>" +
         std::to_string(1000 + name.size()) + "</b:AttributeIdentity><b:" + element +
         " b:dataVersionNumber=\"1\">" + content + "</b:" + element + "></attributeValue>";
}

std::string Range(std::string const& unit, int low) {
  return "<b:UnitSymbol>" + unit + "</b:UnitSymbol><b:Estimated>false</b:Estimated><b:LowValue>" +
         std::to_string(low) + ".25</b:LowValue><b:HighValue>" + std::to_string(low + 20) +
         ".5</b:HighValue>";
}

std::string Point(std::string const& unit, int value) {
  return "<b:UnitSymbol>" + unit + "</b:UnitSymbol><b:Estimated>false</b:Estimated><b:Point>" +
         "<b:Value>" + std::to_string(value) + ".125</b:Value></b:Point>";
}

std::string Reference(int identity) {
  return "<b:dbKey>ENG_MATERIALS</b:dbKey><b:identity><b:recordHistoryIdentity>" +
         std::to_string(identity) + "</b:recordHistoryIdentity></b:identity>";
}

/// What trees and searches say of a record.
std::string NamedRecordOf(int identity) {
  std::string const number = std::to_string(identity);
  return "<b:shortName>AW-" + number + "</b:shortName><b:fullName>Aluminium alloy, wrought, AW-" +
         number + "</b:fullName><b:recordReference>" + Reference(identity) + "</b:recordReference>";
}

/// Records numbered from `next` on until `last`, ten in each folder.
std::string TreeRecords(int depth, int last, int& next) {
  std::string text;
  for (int i = 0; i < 10 && next <= last; ++i) {
    text += R"(<treeRecord color="Black" type="Record">)" + NamedRecordOf(next++);
    if (depth > 0) text += "<children>" + TreeRecords(depth - 1, last, next) + "</children>";
    text += "<parentRecordHistoryIdentity>7</parentRecordHistoryIdentity></treeRecord>";
  }
  return text;
}

}  // namespace

std::string TreeReply(int records) {
  std::string content = "<treeRecords>";
  for (int next = 1; next <= records;) content += TreeRecords(3, records, next);
  return Envelope("Browse", "GetChildNodesResponse", content + "</treeRecords>");
}

std::string SearchReply(int records) {
  std::string content;
  for (int i = 1; i <= records; ++i) {
    content += R"(<resultRecords color="Black" type="Record">)" + NamedRecordOf(i) +
               "<ranking>0.875</ranking></resultRecords>";
  }
  return Envelope("Search", "SimpleTextSearchResponse", content);
}

std::string RecordValuesReply(int records) {
  std::string content = "<results>";
  for (int record = 1; record <= records; ++record) {
    std::string const number = std::to_string(record);
    content += "<recordData><record>" + Reference(record) + "</record><attributeValues>" +
               Value("Designation", "ShortTextDataValue", "AW-" + number) +
               Value("Producer's name", "ShortTextDataValue", "Northern Alloys Limited") +
               Value("Typical uses", "LongTextDataValue",
                     "Airframe structures, pressure vessels, marine fittings &amp; brackets; "
                     "heat-treatable, weldable with care.") +
               Value("Density", "PointDataValue", Point("kg/m^3", 2700 + record % 50)) +
               Value("Young's modulus", "RangeDataValue", Range("GPa", 70)) +
               Value("Yield strength", "RangeDataValue", Range("MPa", 250 + record % 200)) +
               Value("Number of suppliers", "IntegerDataValue", std::to_string(record % 17)) +
               Value("Recyclable", "LogicalDataValue", "true") +
               Value("Durability: sea water", "DiscreteDataValue",
                     "<b:Discrete b:order=\"3\">Acceptable</b:Discrete>") +
               Value("Last reviewed", "DateDataValue", "2026-03-17T09:30:00") +
               "</attributeValues></recordData>";
  }
  return Envelope("DataExport", "GetRecordAttributesByRefResponse", content + "</results>");
}

std::string TableListReply(int tables) {
  std::string content = "<tableDetails>";
  for (int table = 1; table <= tables; ++table) {
    std::string const number = std::to_string(table);
    content += "<table><b:table><b:tableIdentity>" + number + "</b:tableIdentity><b:tableGUID>" +
               "7c9e6679-7425-40de-944b-e07fc1f90ae7</b:tableGUID><b:tableName>Materials " +
               number +
               "</b:tableName><b:dbKey>ENG_MATERIALS</b:dbKey></b:table><b:attributeReferences>";
    for (int attribute = 0; attribute < 10; ++attribute) {
      content += "<b:attribute><b:dbKey>ENG_MATERIALS</b:dbKey><b:attributeIdentity>" +
                 std::to_string(table * 10 + attribute) +
                 "</b:attributeIdentity><b:name b:isStandard=\"false\"><b:attributeName>Thermal "
                 "conductivity</b:attributeName></b:name></b:attribute>";
    }
    content +=
        "</b:attributeReferences><b:tableFilters><b:tableFilter>MaterialsTablesOnly"
        "</b:tableFilter></b:tableFilters></table>";
  }
  return Envelope("Browse", "GetTablesResponse", content + "</tableDetails>");
}
