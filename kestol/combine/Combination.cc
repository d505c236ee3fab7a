#include "kestol/combine/Combination.h"

#include <charconv>
#include <cmath>
#include <utility>

namespace kestol {

namespace {

std::string NumberText(double value) {
  char text[32];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// The term without the sign of its first factor.
std::string TextOf(const FormulaTerm& term) {
  std::string product;
  bool first = true;
  for (const double factor : term.factors) {
    const double size = first ? std::abs(factor) : factor;
    first = false;
    if (size == 1.0) continue;
    if (!product.empty()) product += '*';
    product += NumberText(size);
  }
  if (!product.empty()) product += ' ';
  return product += term.caseName;
}

}  // namespace

std::string FormulaOf(const std::vector<FormulaTerm>& terms) {
  std::string formula;
  for (const FormulaTerm& term : terms) {
    const bool negative = !term.factors.empty() && term.factors.front() < 0.0;
    if (!formula.empty())
      formula += negative ? " - " : " + ";
    else if (negative)
      formula += '-';
    formula += TextOf(term);
  }
  return formula.empty() ? "0" : formula;
}

std::string FormulaOf(const std::vector<double>& factors, const std::vector<std::string>& cases) {
  std::vector<FormulaTerm> terms;
  for (std::size_t k = 0; k < factors.size(); ++k)
    if (factors[k] != 0.0) terms.push_back({{factors[k]}, cases[k]});
  return FormulaOf(terms);
}

std::string FactorKey(const std::vector<double>& factors) {
  return {reinterpret_cast<const char*>(factors.data()), factors.size() * sizeof(double)};
}

Combination NamedCombination(std::string name, std::vector<double> factors,
                             const std::vector<std::string>& cases) {
  std::string formula = FormulaOf(factors, cases);
  return {std::move(name), std::move(factors), std::move(formula)};
}

}  // namespace kestol
