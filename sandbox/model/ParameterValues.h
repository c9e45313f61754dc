#pragma once

#include "sandbox/store/Store.h"
#include "sandbox/wire/Checker.h"

namespace sandbox {

/// Each turns what an import says of parameters into what a reply says of them. They throw `Fault`
/// for what is wrong.
void ReadParameterValue(pugi::xml_node from, pugi::xml_node to);
/// A parameter and its value, the next two children.
void ReadParameterAndValue(Store& store, Checker& in, pugi::xml_node to);
/// Reference, name and unit of a parameter.
void ReadParameterInformation(Store& store, pugi::xml_node from, pugi::xml_node to);
void ReadParameters(Store& store, pugi::xml_node from, pugi::xml_node to);
/// What is constant along a curve.
void ReadConstraints(Store& store, pugi::xml_node from, pugi::xml_node to);

}  // namespace sandbox
