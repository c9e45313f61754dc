#pragma once

namespace sandbox {

/// The tables, from Schema.sql, made part of the program when it is built.
extern char const kSchema[];

}  // namespace sandbox
