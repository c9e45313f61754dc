#pragma once

#include <string>

#include "cli/Names.h"

namespace cli {

/// A condition such as "density < 3000 kg/m^3" as the search service takes it:
///
///     ATTRIBUTE < | <= | > | >= NUMBER [UNIT]      of dates only <= and >=
///     ATTRIBUTE = NUMBER|WORD|yes|no       several words with "|" between them: any of these
///     ATTRIBUTE between A and B [UNIT]
///     ATTRIBUTE contains TEXT              of a table: ATTRIBUTE[COLUMN] contains TEXT
///     ATTRIBUTE lacks TEXT
///     ATTRIBUTE exists | is missing
///
/// Throws `UsageFailure` when it is none, or does not fit the type of the attribute. Units are
/// judged by the server.
SmartPtr<RecordSearchCriterion> CriterionOf(TableOf& table, std::string const& text);

}  // namespace cli
