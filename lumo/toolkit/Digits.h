#pragma once

/// Significant digits of numbers. Not installed.
namespace lumo {

/// Of the text that `TextOf` writes, without zeros at the end.
int DigitsOf(double number);
/// To so many significant digits.
double Rounded(double number, int digits);

}  // namespace lumo
