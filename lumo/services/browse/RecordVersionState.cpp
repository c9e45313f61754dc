#include "lumo/services/browse/RecordVersionState.h"

#include "lumo/xml/NodeReader.h"
#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<RecordVersionState::eVersionState> kWords[] = {
    {RecordVersionState::Released, "Released"},
    {RecordVersionState::Superseded, "Superseded"},
    {RecordVersionState::Withdrawn, "Withdrawn"},
    {RecordVersionState::Unreleased, "Unreleased"},
    {RecordVersionState::Unversioned, "Unversioned"},
};

}  // namespace

RecordVersionState::RecordVersionState(XmlNode<char> const* node) {
  lumo::NodeReader in(node);
  in.Child("record", m_record);
  in.Child("versionState", m_versionState, VersionState_FromString);
}

RecordVersionState::eVersionState RecordVersionState::VersionState_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, Unknown);
}
