#include "lumo/types/ImportRecordModes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<ImportRecordModes::eImportRecordMode> kWrittenWords[] = {
    {ImportRecordModes::Update, "update"},
    {ImportRecordModes::Create, "create"},
    {ImportRecordModes::Copy, "copy"},
};
constexpr lumo::Word<ImportRecordModes::eImportRecordMode> kReadWords[] = {
    {ImportRecordModes::Update, "Update"},
    {ImportRecordModes::Create, "Create"},
    {ImportRecordModes::Copy, "Copy"},
};

}  // namespace

std::string ImportRecordModes::ImportRecordMode_ToString(eImportRecordMode const& mode) {
  return lumo::WordOf(kWrittenWords, mode, "");
}

ImportRecordModes::eImportRecordMode ImportRecordModes::ImportRecordMode_FromString(
    std::string const& text) {
  return lumo::ValueOf(kReadWords, text, Unknown);
}
