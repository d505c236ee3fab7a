#include "kestol/combine/EurocodeSets.h"

#include <algorithm>
#include <charconv>

namespace kestol {

namespace {

/// Subsets of the first `count` actions, put behind those already chosen.
void AddSubsets(const std::vector<int>& actions, std::size_t count, const Exclusions& exclusions,
                std::vector<int>& chosen, const std::function<void(const std::vector<int>&)>& use) {
  if (count == 0) return use(chosen);
  const int action = actions[count - 1];
  AddSubsets(actions, count - 1, exclusions, chosen, use);
  if (!exclusions.Allows(action, chosen)) return;
  chosen.push_back(action);
  AddSubsets(actions, count - 1, exclusions, chosen, use);
  chosen.pop_back();
}

}  // namespace

std::vector<std::vector<int>> PermanentGroups(const std::vector<Action>& actions) {
  std::vector<std::vector<int>> groups(1);
  for (int k = 0; k < static_cast<int>(actions.size()); ++k) {
    if (!actions[k].permanent) continue;
    if (actions[k].separate)
      groups.push_back({k});
    else
      groups[0].push_back(k);
  }
  if (groups[0].empty()) groups.erase(groups.begin());
  return groups;
}

Exclusions::Exclusions(std::size_t actionCount, const std::vector<std::vector<int>>& groups)
    : count_(actionCount), excluded_(actionCount * actionCount) {
  for (const std::vector<int>& group : groups)
    for (const int a : group)
      for (const int b : group)
        if (a != b) excluded_[a * count_ + b] = true;
}

bool Exclusions::Allows(int action, const std::vector<int>& others) const {
  return std::none_of(others.begin(), others.end(),
                      [&](int other) { return Excludes(action, other); });
}

void ForEachSubset(const std::vector<int>& actions, const Exclusions& exclusions, int leading,
                   const std::function<void(const std::vector<int>&)>& use) {
  std::vector<int> possible;
  for (const int action : actions)
    if (leading < 0 || (action != leading && !exclusions.Excludes(action, leading)))
      possible.push_back(action);
  std::vector<int> chosen;
  AddSubsets(possible, possible.size(), exclusions, chosen, use);
}

double DecimalProduct(double a, double b) {
  constexpr int kDigits = 14;  // enough for every factor of a code; short of the rounding
  char text[40];
  const auto end =
      std::to_chars(text, text + sizeof text, a * b, std::chars_format::general, kDigits).ptr;
  double product = 0.0;
  std::from_chars(text, end, product);
  return product;
}

double SuperiorFactor(const EurocodeExpression& expression) {
  return DecimalProduct(expression.xi, expression.superior);
}

double LeadingFactor(const EurocodeExpression& expression, const Action& action) {
  if (expression.leading == nullptr) return expression.variable;
  return DecimalProduct(expression.variable, action.psi.*expression.leading);
}

double AccompanyingFactor(const EurocodeExpression& expression, const Action& action) {
  return DecimalProduct(expression.variable, action.psi.*expression.accompanying);
}

std::vector<int> Accompanying(const EurocodeExpression& expression,
                              const std::vector<Action>& actions) {
  std::vector<int> places;
  for (int k = 0; k < static_cast<int>(actions.size()); ++k)
    if (!actions[k].permanent && AccompanyingFactor(expression, actions[k]) != 0.0)
      places.push_back(k);
  return places;
}

}  // namespace kestol
