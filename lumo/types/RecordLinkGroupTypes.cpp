#include "lumo/types/RecordLinkGroupTypes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<RecordLinkGroupTypes::eRecordLinkGroupType> kWords[] = {
    {RecordLinkGroupTypes::Static, "static"},
    {RecordLinkGroupTypes::Dynamic, "dynamic"},
    {RecordLinkGroupTypes::CrossDatabase, "crossDatabase"},
};

}  // namespace

std::string RecordLinkGroupTypes::RecordLinkGroupType_ToString(eRecordLinkGroupType const& type) {
  return lumo::WordOf(kWords, type, "Unknown");
}

RecordLinkGroupTypes::eRecordLinkGroupType RecordLinkGroupTypes::RecordLinkGroupType_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}
