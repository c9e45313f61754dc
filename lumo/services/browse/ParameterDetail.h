#pragma once

#include <string>

#include "lumo/platform/core/Counted.h"

/// Definition of a parameter: the words by which its scale, its interpolation and its kind travel.
class LUMO_API ParameterDetail : public lumo::Counted<ParameterDetail> {
 public:
  /// Scale of the parameter's axis.
  class LUMO_API ScaleType {
   public:
    enum eScaleType : int { NotSet = 0, Linear = 1, Log = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `NotSet` for an unknown word, and for every word while the library is not initialised.
    static eScaleType FromString(std::string const& text);
  };
  /// How values between the given ones are found.
  class LUMO_API Interpolation {
   public:
    enum eInterpolation : int { None = 0, Linear = 1, CubicSpline = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `None` for an unknown word, and for every word while the library is not initialised.
    static eInterpolation FromString(std::string const& text);
  };
  /// Which values the parameter takes.
  class LUMO_API ParameterType {
   public:
    enum eParameterType : int { NumericUnrestricted = 0, NumericRestricted = 1, Discrete = 2 };
    static void StaticInit();
    static void StaticShutdown();
    /// `NumericUnrestricted` for an unknown word, and for every word while the library is not
    /// initialised.
    static eParameterType FromString(std::string const& text);
  };

  /// Fills the three tables of words, and empties them again; library start-up and shut-down call
  /// them.
  static void StaticInit();
  static void StaticShutdown();
};
