#include <string>
#include <vector>

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Data.h"
#include "sandbox/model/Records.h"
#include "sandbox/operations/Handlers.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

void GetUploadAddresses(Store& store, Checker& request, pugi::xml_node response) {
  auto const records = ReadRecords(store, request.Required("dat:records"), "dat:record");
  Checker attributes(request.Required("dat:attributes"));
  std::vector<Attribute> wanted;
  while (attributes.HasMore()) {
    wanted.push_back(ReadAttribute(store, attributes.Required("dat:attribute")));
  }
  request.End();
  pugi::xml_node list = response.append_child("records");
  for (Record const& record : records) {
    pugi::xml_node element = list.append_child("record");
    WriteRecord(element.append_child("recordReference"), record);
    pugi::xml_node addresses = element.append_child("attributes");
    for (Attribute const& attribute : wanted) {
      if (attribute.type != "FILE" && attribute.type != "PICT") {
        throw Fault("\"" + attribute.name + "\" holds neither file nor picture");
      }
      pugi::xml_node address = addresses.append_child("attribute");
      AddText(address, "b:AttributeName", attribute.name);
      AddText(address, "b:AttributeIdentity", Id(attribute.id));
      AddText(address, "b:URL", store.Url() + DataPath(record.id, attribute.id));
    }
  }
}

}  // namespace sandbox
