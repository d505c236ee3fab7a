#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kestol {

/// Shares of a variable action's characteristic value: beside a leading action (psi0), frequently
/// (psi1), nearly always (psi2).
struct Psi {
  double psi0 = 0.0, psi1 = 0.0, psi2 = 0.0;
};

/// A kind of action by its name in the input, with the recommended shares of EN 1990, table A1.1.
struct ActionCategory {
  std::string_view name;
  bool permanent;
  Psi psi;
};

/// All categories, in the order of the table.
std::span<const ActionCategory> ActionCategories();

/// The category of that name; null for an unknown one.
const ActionCategory* FindCategory(std::string_view name);

/// A load case in the eyes of the rules.
struct Action {
  std::string name;
  bool permanent = false;
  bool separate = false;  ///< a permanent action whose partial factor is its own
  Psi psi;                ///< of a variable action
};

}  // namespace kestol
