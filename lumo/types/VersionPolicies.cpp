#include "lumo/types/VersionPolicies.h"

#include "lumo/xml/Words.h"

namespace {

constexpr lumo::Word<VersionPolicies::eVersionPolicy> kWords[] = {
    {VersionPolicies::LatestRead, "LatestRead"},
    {VersionPolicies::Latest, "Latest"},
    {VersionPolicies::AllReleased, "AllReleased"},
    {VersionPolicies::All, "All"},
};

}  // namespace

std::string VersionPolicies::VersionPolicy_ToString(eVersionPolicy policy) {
  return lumo::WordOf(kWords, policy, "Unknown");
}
