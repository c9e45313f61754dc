#include "sandbox/operations/dataimport/ErrorMode.h"

#include <string>

#include "sandbox/Fault.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

bool IsStrict(pugi::xml_node node) {
  std::string const mode = TextOf(node);
  if (mode != "FaultAndRollbackOnAnyError" && mode != "LogAndContinueWherePossible") {
    throw Fault("<dat:importErrorMode> does not know the word \"" + mode + "\"");
  }
  return mode == "FaultAndRollbackOnAnyError";
}

}  // namespace sandbox
