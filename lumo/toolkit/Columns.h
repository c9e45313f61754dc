#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumo/toolkit/Attribute.h"
#include "lumo/toolkit/RecordHead.h"
#include "lumo/toolkit/Units.h"

struct ArrowArray;
struct ArrowArrayStream;
struct ArrowSchema;

/// Records as columns, in the layout of Apache Arrow: what CSV, spreadsheets and data frames are
/// made from. `lumo/toolkit/Arrow.h` hands them to other libraries without a copy.
namespace lumo {

/// What the cells of a column are, and where they lie.
enum class ColumnType {
  Text,     ///< UTF-8: `bytes` between two `offsets`
  Bytes,    ///< the same with any bytes
  Integer,  ///< `integers`
  Number,   ///< `numbers`
  Logical,  ///< a bit of `bits`
  Moment,   ///< `integers`, microseconds since 1970
  Words     ///< several texts: `bytes` between two `itemOffsets`, these between two `offsets`
};

/// What a column is.
struct Field {
  std::string name = {};               ///< "Density.low"
  std::string attribute = {};          ///< "Density"; empty for what belongs to the record itself
  std::string unit = {};               ///< in which its figures stand
  ColumnType type = ColumnType::Text;  ///< how its cells are kept
};

/// One column of a chunk. Bitmaps have the first row in the lowest bit of the first byte. Cells
/// without a value hold 0, or an empty text.
struct Column {
  Field field = {};                         ///< what it is
  std::size_t size = 0;                     ///< cells
  std::size_t nullCount = 0;                ///< cells without a value
  std::vector<std::uint8_t> validity = {};  ///< bitmap: the cell has a value; empty when all have
  std::vector<std::uint8_t> notApplicable = {};  ///< bitmap; empty when no cell is
  std::vector<std::uint8_t> estimated = {};      ///< bitmap; empty when no figure is
  std::vector<double> numbers = {};              ///< of cells that hold them, as `integers`
  std::vector<std::int64_t> integers = {};       ///< integers and moments
  std::vector<std::uint8_t> bits = {};           ///< bitmap of the logical cells
  std::vector<std::int32_t> offsets = {};        ///< one more than cells
  std::vector<std::int32_t> itemOffsets = {};    ///< one more than items
  std::string bytes = {};                        ///< texts one after the other

  /// Whether the cell has a value.
  LUMO_API bool IsValid(std::size_t row) const;
  /// As opposed to a value that is missing; such a cell is not valid either.
  LUMO_API bool IsNotApplicable(std::size_t row) const;
  /// Whether its figure is an estimate.
  LUMO_API bool IsEstimated(std::size_t row) const;
  /// The cell of a logical column.
  LUMO_API bool Logical(std::size_t row) const;
  /// The cell of a column of texts or bytes.
  LUMO_API std::string_view Text(std::size_t row) const;
  /// The cell of a column of words.
  LUMO_API std::vector<std::string_view> Words(std::size_t row) const;
};

/// A chunk of rows.
struct Columns {
  std::size_t rows = 0;              ///< in this chunk
  std::vector<Column> columns = {};  ///< each with a cell for every row

  /// Null when there is none of that name.
  LUMO_API Column const* Find(std::string const& name) const;
};

/// Makes columns of records. In the wide form a record is a row, and attributes are these columns:
///
///     text, integer, yes or no,
///     date, words                 "Recyclable"
///     number                      "Melting point", and "Melting point.points", how many there
///                                 are, where it may have several: then it is null unless there
///                                 is just one
///     range                       "Density.low", "Density.high"; null for an open end
///     curves, grids               "Yield strength.curves", "Composition.rows": how many
///     link                        "Data sheet", "Data sheet.description"
///     file, picture               "Photo.fileName" and "Photo.description" (files only),
///                                 "Photo.contentType", "Photo.url", "Photo.data"
///
/// before which "record.identity", "record.guid", "record.name", "record.fullName" and
/// "record.folder" stand. In the long form of one attribute each point, each point of each curve,
/// or each row of a grid is a row:
///
///     points   a column for each parameter, "Hardness", "Hardness.estimated"
///     curves   "Yield strength.series", a column for each parameter, the one of the x-axis too,
///              "Yield strength" (the middle of a range), "Yield strength.low",
///              "Yield strength.high", "Yield strength.estimated"
///     grids    "Composition.row", and the grid's columns as attributes have them in the wide form
///
/// before which "record.identity", "record.guid" and "record.name" stand.
class LUMO_API ColumnBuilder {
 public:
  /// The wide form of these attributes, with figures in the units of that system.
  static ColumnBuilder Wide(std::vector<Attribute> const& attributes, Units const& units,
                            UnitSystem const& system = {});
  /// The long form of one attribute. Throws `Error` (InvalidArgument) unless it holds numbers,
  /// curves or grids.
  static ColumnBuilder Long(Attribute const& attribute, Units const& units,
                            UnitSystem const& system = {});
  ColumnBuilder(ColumnBuilder&&) noexcept;
  ColumnBuilder& operator=(ColumnBuilder&&) noexcept;
  ~ColumnBuilder();

  /// What the columns are, in their order.
  std::vector<Field> const& Fields() const;
  /// Adds a record with the values of the attributes, in their order; the long form takes the value
  /// of its attribute alone. Throws `Error` (NotUnderstood) when a value is not what its attribute
  /// holds, or has a unit that cannot be converted; the record is not added then.
  void Add(RecordHead const& record, std::vector<Value> const& values);
  /// How many there are so far.
  std::size_t Rows() const;
  /// Bytes of the texts in the longest column, of which it takes 2 GiB at most.
  std::size_t LongestBytes() const;
  /// What was added; the builder begins anew.
  std::shared_ptr<Columns const> Take();

 private:
  struct Parts;
  explicit ColumnBuilder(std::unique_ptr<Parts> parts);
  std::unique_ptr<Parts> m_parts;
};

}  // namespace lumo
