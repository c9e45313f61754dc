#include "lumo/types/SearchModes.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<SearchModes::eSearchMode> kWords[] = {
    {SearchModes::Normal, "Normal"},
    {SearchModes::ReadOnly, "ReadOnly"},
};

}  // namespace

std::string SearchModes::ToString(eSearchMode mode) { return lumo::WordOf(kWords, mode, ""); }
