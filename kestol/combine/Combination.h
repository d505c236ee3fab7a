#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestol {

/// A weighted sum of load cases.
struct Combination {
  std::string name;
  std::vector<double> factors;  ///< one per load case
  std::string formula;          ///< how the factors come about, for people
};

/// One term of a formula: "1.35 G", "1.5*0.6 W", "G". Factors of 1 are not written beside others.
struct FormulaTerm {
  std::vector<double> factors;
  std::string_view caseName;
};

/// The sum of the terms; "0" without any. A negative first factor becomes the sign of its term.
std::string FormulaOf(const std::vector<FormulaTerm>& terms);

/// The sum of the cases that have a factor other than 0, in the order of the cases.
std::string FormulaOf(const std::vector<double>& factors, const std::vector<std::string>& cases);

/// A text that is the same for the same factors only.
std::string FactorKey(const std::vector<double>& factors);

/// A combination named by its author.
Combination NamedCombination(std::string name, std::vector<double> factors,
                             const std::vector<std::string>& cases);

}  // namespace kestol
