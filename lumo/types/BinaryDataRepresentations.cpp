#include "lumo/types/BinaryDataRepresentations.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<BinaryDataRepresentations::eBinaryDataRepresentation> kWords[] = {
    {BinaryDataRepresentations::Inline, "Inline"},
};

}  // namespace

std::string BinaryDataRepresentations::BinaryDataRepresentation_ToString(
    eBinaryDataRepresentation representation) {
  return lumo::WordOf(kWords, representation, "URL");
}

BinaryDataRepresentations::eBinaryDataRepresentation
BinaryDataRepresentations::BinaryDataRepresentation_FromString(std::string const& text) {
  return lumo::ValueOf(kWords, text, URL);
}
