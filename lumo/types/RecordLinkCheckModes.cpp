#include "lumo/types/RecordLinkCheckModes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<RecordLinkCheckModes::eRecordLinkCheckMode> kWords[] = {
    {RecordLinkCheckModes::CheckForwardAndReverseLinks, "CheckForwardAndReverseLinks"},
};

}  // namespace

std::string RecordLinkCheckModes::RecordLinkCheckMode_ToString(eRecordLinkCheckMode const& mode) {
  return lumo::WordOf(kWords, mode, "CheckOnlyForwardLinks");
}

RecordLinkCheckModes::eRecordLinkCheckMode RecordLinkCheckModes::RecordLinkCheckMode_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, CheckOnlyForwardLinks);
}
