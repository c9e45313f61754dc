#include "sandbox/model/Data.h"

#include "sandbox/Fault.h"
#include "sandbox/model/Attributes.h"
#include "sandbox/model/Records.h"
#include "sandbox/model/Values.h"
#include "sandbox/wire/Base64.h"
#include "sandbox/wire/Soap.h"

namespace sandbox {

std::string DataPath(int recordId, int attributeId) {
  return "/data/" + std::to_string(recordId) + "/" + std::to_string(attributeId);
}

Data LoadData(Store& store, int recordId, int attributeId) {
  pugi::xml_document value;
  std::string const xml = CurrentValue(store, recordId, attributeId);
  if (xml.empty()) throw Fault("there are no data");
  value.load_string(("<v>" + xml + "</v>").c_str());
  pugi::xml_node const root = value.first_child();
  return {DecodeBase64(root.child("b:data").text().get()),
          root.child("b:contentType").text().get()};
}

void SaveData(Store& store, int recordId, int attributeId, Data const& data) {
  auto const attributes = Attributes(store, "a.id = ?", {std::to_string(attributeId)});
  auto const records = Records(store, "r.id = ?", {std::to_string(recordId)});
  bool const isThere = !attributes.empty() && !records.empty() &&
                       attributes[0].tableId == records[0].tableId &&
                       (attributes[0].type == "FILE" || attributes[0].type == "PICT");
  if (!isThere) throw Fault("there is no file and no picture to put data into");
  pugi::xml_document old;
  old.load_string(("<v>" + CurrentValue(store, recordId, attributeId) + "</v>").c_str());
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("v");
  bool const isFile = attributes[0].type == "FILE";
  pugi::xml_node element = root.append_child(isFile ? "zbt:FileDataValue" : "zbt:PictureDataValue");
  AddText(element, "zbt:data", EncodeBase64(data.bytes));
  AddText(element, "zbt:contentType", data.contentType);
  if (isFile) {
    std::string const name = old.first_child().child("b:fileName").text().get();
    AddText(element, "zbt:fileName", name.empty() ? "upload" : name);
    AddText(element, "zbt:description", old.first_child().child("b:description").text().get());
  }
  Checker in(root);
  StoreValue(store, recordId, attributeId, ReadImportValue(store, in, attributes[0], ""));
}

}  // namespace sandbox
