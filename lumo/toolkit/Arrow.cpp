#include "lumo/toolkit/Arrow.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "lumo/toolkit/Error.h"

namespace lumo {
namespace {

// ---- schemas

char const* FormatOf(ColumnType type) {
  switch (type) {
    case ColumnType::Text: return "u";
    case ColumnType::Bytes: return "z";
    case ColumnType::Integer: return "l";
    case ColumnType::Number: return "g";
    case ColumnType::Logical: return "b";
    case ColumnType::Moment: return "tsu:";
    case ColumnType::Words: break;
  }
  return "+l";
}

/// Keys with their values, each text behind its size, in the machine's order of bytes.
std::string MetadataOf(Field const& field) {
  std::string metadata;
  auto const putSize = [&metadata](std::size_t size) {
    auto const number = static_cast<std::int32_t>(size);
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    metadata.append(bytes, sizeof number);
  };
  std::vector<std::pair<char const*, std::string const*>> entries;
  if (!field.unit.empty()) entries.emplace_back("unit", &field.unit);
  if (!field.attribute.empty()) entries.emplace_back("attribute", &field.attribute);
  putSize(entries.size());
  for (auto const& [key, value] : entries) {
    for (std::string_view const text : {std::string_view(key), std::string_view(*value)}) {
      putSize(text.size());
      metadata += text;
    }
  }
  return metadata;
}

/// Structs that are released with their parent, unless they were moved away.
template <class Struct>
struct Children {
  Children() = default;
  Children(Children&&) noexcept = default;
  Children& operator=(Children&&) = delete;
  ~Children() {
    for (Struct& one : list) {
      if (one.release != nullptr) one.release(&one);
    }
  }

  void Resize(std::size_t size) {
    list.resize(size);
    for (Struct& one : list) pointers.push_back(&one);
  }

  std::vector<Struct> list;
  std::vector<Struct*> pointers;
};

template <class Content, class Struct>
void Release(Struct* one) {
  delete static_cast<Content*>(one->private_data);
  one->release = nullptr;
}

struct SchemaContent {
  std::string name;
  std::string metadata;
  Children<ArrowSchema> children;
};

void Fill(ArrowSchema* out, char const* format, SchemaContent made) {
  auto* const content = new SchemaContent(std::move(made));
  *out = {};
  out->format = format;
  out->name = content->name.c_str();
  out->metadata = content->metadata.empty() ? nullptr : content->metadata.data();
  out->flags = ARROW_FLAG_NULLABLE;
  out->n_children = static_cast<std::int64_t>(content->children.list.size());
  out->children = content->children.pointers.data();
  out->release = Release<SchemaContent, ArrowSchema>;
  out->private_data = content;
}

void FillField(ArrowSchema* out, Field const& field) {
  SchemaContent content;
  content.name = field.name;
  content.metadata = MetadataOf(field);
  if (field.type == ColumnType::Words) {
    SchemaContent item;
    item.name = "item";
    content.children.Resize(1);
    Fill(content.children.list.data(), FormatOf(ColumnType::Text), std::move(item));
  }
  Fill(out, FormatOf(field.type), std::move(content));
}

// ---- arrays

/// What an array owns. Every one keeps the columns alive, since a child may outlive its parent.
struct ArrayContent {
  std::shared_ptr<Columns const> columns;
  std::array<void const*, 3> buffers = {};
  Children<ArrowArray> children;
};

/// An empty vector has no address, and some readers want one for buffers of no size.
template <class List>
void const* BufferOf(List const& list) {
  static std::int64_t const nothing = 0;
  return list.empty() ? static_cast<void const*>(&nothing) : list.data();
}

void Fill(ArrowArray* out, std::size_t length, std::size_t nulls, std::int64_t buffers,
          ArrayContent made) {
  auto* const content = new ArrayContent(std::move(made));
  *out = {};
  out->length = static_cast<std::int64_t>(length);
  out->null_count = static_cast<std::int64_t>(nulls);
  out->n_buffers = buffers;
  out->buffers = content->buffers.data();
  out->n_children = static_cast<std::int64_t>(content->children.list.size());
  out->children = content->children.pointers.data();
  out->release = Release<ArrayContent, ArrowArray>;
  out->private_data = content;
}

void FillColumn(ArrowArray* out, Column const& column,
                std::shared_ptr<Columns const> const& columns) {
  ArrayContent content;
  content.columns = columns;
  content.buffers[0] = column.nullCount == 0 ? nullptr : column.validity.data();
  std::int64_t buffers = 2;
  switch (column.field.type) {
    case ColumnType::Number: content.buffers[1] = BufferOf(column.numbers); break;
    case ColumnType::Integer:
    case ColumnType::Moment: content.buffers[1] = BufferOf(column.integers); break;
    case ColumnType::Logical: content.buffers[1] = BufferOf(column.bits); break;
    case ColumnType::Text:
    case ColumnType::Bytes:
      content.buffers[1] = column.offsets.data();
      content.buffers[2] = BufferOf(column.bytes);
      buffers = 3;
      break;
    case ColumnType::Words: {
      content.buffers[1] = column.offsets.data();
      ArrayContent items;
      items.columns = columns;
      items.buffers = {nullptr, column.itemOffsets.data(), BufferOf(column.bytes)};
      content.children.Resize(1);
      Fill(content.children.list.data(), column.itemOffsets.size() - 1, 0, 3, std::move(items));
      break;
    }
  }
  Fill(out, column.size, column.nullCount, buffers, std::move(content));
}

Field MarkField(char const* name) {
  return {std::string("record.") + name, "", "", ColumnType::Words};
}

using MarkOf = bool (Column::*)(std::size_t) const;

/// The names of those attributes of each row for which the mark is set.
Column Marks(Columns const& columns, char const* name, MarkOf isMarked) {
  Column marks;
  marks.field = MarkField(name);
  marks.size = columns.rows;
  marks.offsets = {0};
  marks.itemOffsets = {0};
  for (std::size_t row = 0; row < columns.rows; ++row) {
    std::string const* last = nullptr;  // the columns of an attribute stand together
    for (Column const& column : columns.columns) {
      std::string const& attribute = column.field.attribute;
      if (!(column.*isMarked)(row) || (last != nullptr && *last == attribute)) continue;
      last = &attribute;
      marks.bytes += attribute;
      marks.itemOffsets.push_back(static_cast<std::int32_t>(marks.bytes.size()));
    }
    marks.offsets.push_back(static_cast<std::int32_t>(marks.itemOffsets.size()) - 1);
  }
  return marks;
}

// ---- streams

struct StreamContent {
  std::vector<Field> fields;
  NextColumns next;
  std::string error;
};

/// Runs what may throw, and gives the number of the error that the interface wants.
template <class Work>
int Guarded(ArrowArrayStream* stream, Work work) {
  auto& content = *static_cast<StreamContent*>(stream->private_data);
  try {
    work(content);
    return 0;
  } catch (Error const& error) {
    content.error = error.what();
    return error.Code() == ErrorCode::Cancelled ? ECANCELED : EIO;
  } catch (std::bad_alloc const&) {
    content.error = "out of memory";
    return ENOMEM;
  } catch (std::exception const& error) {
    content.error = error.what();
    return EIO;
  } catch (...) {
    content.error = "an exception of an unknown kind";
    return EIO;
  }
}

int GetSchema(ArrowArrayStream* stream, ArrowSchema* out) {
  return Guarded(stream, [out](StreamContent& content) { ExportSchema(content.fields, out); });
}

int GetNext(ArrowArrayStream* stream, ArrowArray* out) {
  return Guarded(stream, [out](StreamContent& content) {
    std::shared_ptr<Columns const> const columns = content.next ? content.next() : nullptr;
    *out = {};  // has no `release`, which says that the stream has ended
    if (columns) {
      ExportArray(columns, out);
    } else {
      content.next = nullptr;
    }
  });
}

char const* GetLastError(ArrowArrayStream* stream) {
  auto const& error = static_cast<StreamContent*>(stream->private_data)->error;
  return error.empty() ? nullptr : error.c_str();
}

void ReleaseStream(ArrowArrayStream* stream) {
  delete static_cast<StreamContent*>(stream->private_data);
  stream->release = nullptr;
}

}  // namespace

void ExportSchema(std::vector<Field> const& fields, ArrowSchema* out) {
  SchemaContent content;
  content.children.Resize(fields.size() + 2);
  for (std::size_t i = 0; i < fields.size(); ++i) FillField(&content.children.list[i], fields[i]);
  FillField(&content.children.list[fields.size()], MarkField("notApplicable"));
  FillField(&content.children.list[fields.size() + 1], MarkField("estimated"));
  Fill(out, "+s", std::move(content));
}

void ExportArray(std::shared_ptr<Columns const> const& columns, ArrowArray* out) {
  auto marks = std::make_shared<Columns>();
  marks->columns = {Marks(*columns, "notApplicable", &Column::IsNotApplicable),
                    Marks(*columns, "estimated", &Column::IsEstimated)};
  ArrayContent content;
  content.children.Resize(columns->columns.size() + 2);
  std::size_t place = 0;
  for (Column const& column : columns->columns) {
    FillColumn(&content.children.list[place++], column, columns);
  }
  for (Column const& column : marks->columns) {
    FillColumn(&content.children.list[place++], column, marks);
  }
  Fill(out, columns->rows, 0, 1, std::move(content));
}

void ExportStream(std::vector<Field> fields, NextColumns next, ArrowArrayStream* out) {
  *out = {};
  out->private_data = new StreamContent{std::move(fields), std::move(next), {}};
  out->get_schema = GetSchema;
  out->get_next = GetNext;
  out->get_last_error = GetLastError;
  out->release = ReleaseStream;
}

}  // namespace lumo
