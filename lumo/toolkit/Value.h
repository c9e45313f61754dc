#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "lumo/platform/core/Export.h"

/// What attributes hold, as plain types. `Value` is a variant of them all:
///
///     lumo::Value const& value = record["Density"];
///     if (auto const* range = std::get_if<lumo::Range>(&value)) std::cout << *range->low << '\n';
///
/// Figures always carry their unit, also those of axes, parameters and cells. A unit is the
/// server's symbol, such as "kg/m^3"; an empty one says that the figure has none.
namespace lumo {

/// A record, by what the server knows it by.
struct RecordId {
  std::string database = {};  ///< key
  int identity = 0;           ///< of the record's history; 0: not known
  std::string guid = {};      ///< of one version of the record; empty: not known
};

/// The record says that the attribute makes no sense for it, which is not the same as a value that
/// nobody has entered: that one is `std::monostate`.
struct NotApplicable {};

/// A date, or a date and time, as the text that the server sends, so that nothing of it is lost:
/// "2026-03-17T09:30:00", with a fraction of a second and a zone where it has them.
struct DateTime {
  std::string text = {};  ///< as the server sends it

  /// Since 1970-01-01T00:00:00; a text without a zone is taken as it stands. Nothing for a text
  /// that is not a date.
  LUMO_API std::optional<std::int64_t> Microseconds() const;
  /// Without a zone, and with a fraction of a second only where there is one.
  LUMO_API static DateTime FromMicroseconds(std::int64_t microseconds);
};

/// One figure.
struct Quantity {
  double value = 0;        ///< the figure
  std::string unit = {};   ///< in which it stands; empty for none
  bool estimated = false;  ///< it is an estimate
};

/// A range of figures; an end that is not set is open.
struct Range {
  std::optional<double> low = {};   ///< not set: open, or not known
  std::optional<double> high = {};  ///< likewise
  std::string unit = {};            ///< in which both stand
  bool estimated = false;           ///< the range is an estimate
};

/// Something on which a figure depends, and what it was: 150 degC, or "T6".
struct Parameter {
  std::string name = {};                          ///< as the server has it
  std::variant<double, std::string> value = 0.0;  ///< at which the figure holds
  std::string unit = {};                          ///< always empty for a word
};

/// One figure among several.
struct Point {
  double value = 0;                        ///< the figure
  std::vector<Parameter> parameters = {};  ///< at which it holds
};

/// Figures that hold for different values of their parameters. A single figure without parameters
/// is a `Quantity`.
struct Points {
  std::vector<Point> points = {};  ///< in the server's order
  std::string unit = {};           ///< in which all stand
  bool estimated = false;          ///< they are estimates
};

/// How values between the given ones are found.
enum class Interpolation { None, Linear, CubicSpline };

/// One curve: y over x.
struct Curve {
  std::string xName = {};      ///< of the axis
  std::string xUnit = {};      ///< in which x stands; empty for words
  std::string yUnit = {};      ///< in which y and `yHigh` stand
  std::vector<double> x = {};  ///< places on the axis
  std::vector<double> y = {};  ///< as many as x; where there are ranges the low end
  /// The high ends where y has ranges, NaN for a single figure among them; empty when there are
  /// none. An open end of a range is infinite.
  std::vector<double> yHigh = {};
  /// The words of an axis that has words, whose x are then NaN; empty for an axis of numbers.
  std::vector<std::string> xWords = {};
  std::vector<bool> estimated = {};                     ///< for each point; empty when none is
  std::vector<Parameter> parameters = {};               ///< what holds for the whole curve
  Interpolation interpolation = Interpolation::Linear;  ///< how values between the points are found
  bool xIsLogarithmic = false;  ///< values between are found on a logarithmic axis

  /// y at that place of the x-axis, the middle of a range, as the attribute's interpolation says.
  /// Nothing outside of the curve, and between points that are not to be joined. Splines are
  /// natural ones. A curve that turns back is joined by straight lines, and its first piece
  /// answers.
  LUMO_API std::optional<double> At(double place) const;
  /// The figure of one point, the middle of a range.
  LUMO_API double Middle(std::size_t point) const;
};

/// The curves of one attribute.
struct Curves {
  std::vector<Curve> curves = {};  ///< each with its own parameters
  bool isGridded = false;          ///< the server keeps single values, each with its parameters
  bool isHidden = false;           ///< the server does not show the graph
  bool isLogarithmic = false;      ///< the y-axis is
};

/// An address with a text for it.
struct Link {
  std::string url = {};          ///< the address
  std::string description = {};  ///< the text to show
};

/// A file or a picture.
struct File {
  std::string name = {};                ///< empty for a picture, as the description
  std::string contentType = {};         ///< such as "image/png"
  std::string description = {};         ///< in words for people
  std::string url = {};                 ///< where the bytes are, when they did not come along
  std::vector<std::uint8_t> data = {};  ///< the bytes; empty when they did not come along
};

/// The records that one record is linked to.
struct LinkedRecords {
  /// The records of one link group.
  struct Group {
    std::string name = {};               ///< of the group
    std::vector<RecordId> records = {};  ///< in the server's order
  };
  std::vector<Group> groups = {};  ///< in the server's order
};

struct Grid;
struct List;

/// `std::monostate` when the record has no value. Discrete attributes hold their words.
using Value = std::variant<std::monostate, NotApplicable, std::string, DateTime, std::int64_t, bool,
                           Quantity, Range, Points, std::vector<std::string>, Curves, Link, File,
                           std::shared_ptr<Grid const>, std::shared_ptr<List const>, LinkedRecords>;

/// A table of values.
struct Grid {
  /// What stands above cells.
  struct Column {
    std::string name = {};  ///< the heading
    std::string unit = {};  ///< in which its figures stand
  };
  /// One cell for each column, and the records that the row links to.
  struct Row {
    std::vector<Value> cells = {};     ///< one for each column
    std::string linkingValue = {};     ///< by which the row finds the records that it links to
    std::vector<RecordId> links = {};  ///< the records that it has found
  };
  std::vector<Column> columns = {};  ///< in the server's order
  std::vector<Row> rows = {};        ///< in the server's order
};

/// Several values in one cell of a grid.
struct List {
  std::vector<Value> items = {};  ///< in the server's order
};

/// Whether both say the same, to the last bit; grids and lists by what they hold.
LUMO_API bool Same(Value const& a, Value const& b);

/// The middle of a figure or of a range, the end of one that is open at the other, an integer as
/// it is. Nothing for all else, and for several points.
LUMO_API std::optional<double> NumberIn(Value const& value);
/// Unit of the value's figures; empty for those that have none.
LUMO_API std::string const& UnitIn(Value const& value);

}  // namespace lumo
