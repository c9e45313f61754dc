#include "lumo/types/ImportErrorModes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<ImportErrorModes::eImportErrorMode> kWords[] = {
    {ImportErrorModes::FaultAndRollbackOnAnyError, "FaultAndRollbackOnAnyError"},
};

}  // namespace

std::string ImportErrorModes::ImportErrorMode_ToString(eImportErrorMode mode) {
  return lumo::WordOf(kWords, mode, "LogAndContinueWherePossible");
}

ImportErrorModes::eImportErrorMode ImportErrorModes::ImportErrorMode_FromString(
    std::string const& text) {
  return lumo::ValueOf(kWords, text, LogAndContinueWherePossible);
}
