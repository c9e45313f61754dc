#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "lumo/toolkit/Columns.h"

// The Arrow C data and stream interfaces: three structs that every library for data frames takes.
// They are declared as their authors ask for it, so that other headers may declare them as well.
extern "C" {

#ifndef ARROW_C_DATA_INTERFACE
#define ARROW_C_DATA_INTERFACE

#define ARROW_FLAG_DICTIONARY_ORDERED 1
#define ARROW_FLAG_NULLABLE 2
#define ARROW_FLAG_MAP_KEYS_SORTED 4

/// The type of an array, as the Arrow C data interface has it.
struct ArrowSchema {
  /// Fields of the Arrow C data interface:
  const char* format;
  const char* name;
  const char* metadata;
  int64_t flags;
  int64_t n_children;
  struct ArrowSchema** children;
  struct ArrowSchema* dictionary;
  void (*release)(struct ArrowSchema*);
  void* private_data;
};

/// The cells of an array, as the Arrow C data interface has them.
struct ArrowArray {
  /// Fields of the Arrow C data interface:
  int64_t length;
  int64_t null_count;
  int64_t offset;
  int64_t n_buffers;
  int64_t n_children;
  const void** buffers;
  struct ArrowArray** children;
  struct ArrowArray* dictionary;
  void (*release)(struct ArrowArray*);
  void* private_data;
};

#endif  // ARROW_C_DATA_INTERFACE

#ifndef ARROW_C_STREAM_INTERFACE
#define ARROW_C_STREAM_INTERFACE

/// Arrays one after the other, as the Arrow C stream interface has them.
struct ArrowArrayStream {
  /// Fields of the Arrow C stream interface:
  int (*get_schema)(struct ArrowArrayStream*, struct ArrowSchema* out);
  int (*get_next)(struct ArrowArrayStream*, struct ArrowArray* out);
  const char* (*get_last_error)(struct ArrowArrayStream*);
  void (*release)(struct ArrowArrayStream*);
  void* private_data;
};

#endif  // ARROW_C_STREAM_INTERFACE

}  // extern "C"

namespace lumo {

/// Chunks as Arrow record batches, without a copy: what is exported keeps the columns alive. The
/// schema is a struct of the fields, each with its unit and its attribute as metadata, under "unit"
/// and "attribute". Two fields more, "record.notApplicable" and "record.estimated", hold lists of
/// the names of those attributes of the row that are so.
LUMO_API void ExportSchema(std::vector<Field> const& fields, ArrowSchema* out);
/// The cells of the columns, which the array keeps alive.
LUMO_API void ExportArray(std::shared_ptr<Columns const> const& columns, ArrowArray* out);

/// The next chunk; null at the end. What it throws becomes an error of the stream.
using NextColumns = std::function<std::shared_ptr<Columns const>()>;
/// `next` is called on the thread that reads the stream, and destroyed with it.
LUMO_API void ExportStream(std::vector<Field> fields, NextColumns next, ArrowArrayStream* out);

}  // namespace lumo
