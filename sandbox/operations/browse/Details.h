#pragma once

#include <string>
#include <vector>

#include "sandbox/model/Attributes.h"
#include "sandbox/model/Parameters.h"
#include "sandbox/model/Records.h"

namespace sandbox {

/// Who made and changed a thing, and when: the same for all.
void WriteRevision(pugi::xml_node node);
void WriteHelp(pugi::xml_node node, std::string const& topic);

/// Appends the details of the parameters that a condition on parameter p selects; attribute and
/// record to which they apply may be null.
void WriteParameters(Store& store, pugi::xml_node details, std::string const& condition,
                     std::vector<std::string> const& values, Attribute const* attribute,
                     Record const* record);
/// Condition on the parameters of an attribute.
constexpr char kOfAttribute[] =
    "p.id IN (SELECT parameter_id FROM attribute_parameter WHERE attribute_id = ?)";

}  // namespace sandbox
