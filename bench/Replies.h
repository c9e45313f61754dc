#pragma once

#include <string>

/// Replies as a server writes them.

/// The tables of a database, each with ten attributes by name.
std::string TableListReply(int tables);
/// Ten values of mixed types for each record: short and long text, points, ranges, an integer, a
/// logical, a discrete and a date.
std::string RecordValuesReply(int records);
/// A tree of that many records: folders of ten, three levels deep, under one root.
std::string TreeReply(int records);
/// That many records that a search found.
std::string SearchReply(int records);
