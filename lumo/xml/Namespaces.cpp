#include "lumo/xml/Namespaces.h"

namespace lumo {
namespace {

constexpr std::string_view kVendorNamespaceBase = LUMO_NAMESPACE_BASE;
static_assert(!kVendorNamespaceBase.empty() && kVendorNamespaceBase.back() == '/',
              "LUMO_NAMESPACE_BASE must end in a slash");

}  // namespace

std::string_view VendorNamespaceBase() { return kVendorNamespaceBase; }

}  // namespace lumo
