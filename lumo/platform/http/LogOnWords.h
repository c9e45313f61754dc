#pragma once

#include <string>
#include <string_view>

#include "lumo/platform/http/HttpReport.h"

namespace lumo {

/// Notes the log-on methods that a header of a reply offers, if it is one that does.
void NoteOffers(std::string_view header, HttpLogOn& logOn);

/// Notes what one of libcurl's remarks tells of log-on or proxy. Only remarks that are known are
/// kept: others may hold a password.
void NoteRemark(std::string_view remark, HttpReport& report);

/// Adds to the reasons why a log-on could not be made, unless it is there already.
void AddTrouble(std::string_view remark, std::string& trouble);

/// The address without user and password.
std::string WithoutUser(std::string_view address);

}  // namespace lumo
