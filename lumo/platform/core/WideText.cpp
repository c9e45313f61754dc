#include "lumo/platform/core/WideText.h"

#include <boost/locale/encoding_utf.hpp>

namespace lumo {

std::wstring ToWide(std::string const& utf8) {
  return boost::locale::conv::utf_to_utf<wchar_t>(utf8);
}

std::string ToUtf8(std::wstring const& wide) { return boost::locale::conv::utf_to_utf<char>(wide); }

}  // namespace lumo
