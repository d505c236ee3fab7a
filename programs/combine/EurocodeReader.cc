#include "programs/combine/EurocodeReader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "main/ErrorChannel.h"

namespace kestol {

namespace {

constexpr std::string_view kEurocodeKeys[] = {"rules", "exclusive", "psi", "gamma", "xi"};
constexpr std::string_view kGammaKeys[] = {"G", "Q"};

}  // namespace

void EurocodeReader::Read(const toml::table& eurocode) {
  text_.RefuseUnknownKeys(eurocode, "[eurocode]", kEurocodeKeys);
  ReadActions();
  ReadRules(eurocode);
  ReadPsi(eurocode);
  ReadGamma(eurocode);
  ReadExclusive(eurocode);
}

void EurocodeReader::Generate(const toml::table& eurocode) {
  try {
    file_.generated = GenerateCombinations(file_.actions, file_.rules);
  } catch (const FatalError& refusal) {
    text_.Note(*eurocode.get("rules"), std::string(PlainWords(refusal.what())), "too-many");
    error.Clear();
  }
}

void EurocodeReader::ReadActions() {
  for (std::size_t k = 0; k < file_.cases.size(); ++k) {
    const CaseEntry& entry = file_.cases[k];
    Action action{entry.name, false, entry.separate, {}};
    const ActionCategory* const category = FindCategory(entry.category);
    if (category != nullptr) {
      action.permanent = category->permanent;
      action.psi = category->psi;
    } else if (!caseTables_[k]->contains("category")) {
      text_.Note(*caseTables_[k],
                 "case \"" + entry.name + "\" has no category, which [eurocode] needs",
                 "missing-key");
    }
    file_.actions.push_back(std::move(action));
  }
}

void EurocodeReader::ReadRules(const toml::table& eurocode) {
  const toml::array* const rules = text_.Array(eurocode, "rules");
  if (rules == nullptr || rules->empty()) {
    if (rules != nullptr || !eurocode.contains("rules"))
      text_.Note(eurocode, "[eurocode] names no rules: rules = [\"6.10\"]", "missing-key");
    return;
  }
  for (const toml::node& node : *rules) {
    const std::string name = node.value<std::string>().value_or("");
    const auto* const found = std::find_if(kRuleNames.begin(), kRuleNames.end(),
                                           [&](const RuleName& row) { return row.name == name; });
    if (!node.is_string())
      text_.Note(node, "a rule must be a text in quotes", "wrong-type");
    else if (found == kRuleNames.end())
      text_.NoteUnknown(node.source(), "rule", name, NamesOfRows(kRuleNames), "unknown-rule");
    else
      file_.rules.rules.push_back(found->rule);
  }
}

void EurocodeReader::ReadPsi(const toml::table& eurocode) {
  const toml::table* const psi = text_.Table(eurocode, "psi");
  if (psi == nullptr) return;
  std::vector<std::string_view> variable;
  for (const ActionCategory& category : ActionCategories())
    if (!category.permanent) variable.push_back(category.name);
  for (const auto& [key, node] : InOrder(*psi)) {
    const std::string name(key->str());
    if (std::find(variable.begin(), variable.end(), name) == variable.end())
      text_.NoteUnknown(key->source(), "category", name, variable, "unknown-category");
    const auto values = text_.Numbers(*node, "psi of \"" + name + '"', 3);
    if (!values) continue;
    if (std::any_of(values->begin(), values->end(), [](double v) { return v < 0.0 || v > 1.0; }))
      text_.Note(*node, "psi of \"" + name + "\" must be between 0 and 1", "out-of-range");
    for (std::size_t k = 0; k < file_.cases.size(); ++k)
      if (file_.cases[k].category == name)
        file_.actions[k].psi = {(*values)[0], (*values)[1], (*values)[2]};
  }
}

void EurocodeReader::ReadPermanentFactors(const toml::node& G) {
  const auto values = text_.Numbers(G, "gamma of G", 2);
  if (!values) return;
  PartialFactors& factors = file_.rules.gamma;
  factors.superior = (*values)[0];
  factors.inferior = (*values)[1];
  if (factors.inferior < 0.0 || factors.superior < factors.inferior)
    text_.Note(G, "gamma of G must be [unfavourable, favourable], the larger one first",
               "out-of-range");
}

void EurocodeReader::ReadGamma(const toml::table& eurocode) {
  PartialFactors& factors = file_.rules.gamma;
  if (const toml::table* const gamma = text_.Table(eurocode, "gamma")) {
    text_.RefuseUnknownKeys(*gamma, "gamma", kGammaKeys);
    if (const toml::node* const G = gamma->get("G")) ReadPermanentFactors(*G);
    if (const toml::node* const Q = gamma->get("Q")) {
      factors.variable = text_.Number(*Q, "gamma of Q").value_or(factors.variable);
      if (factors.variable < 0.0) text_.Note(*Q, "gamma of Q is negative", "out-of-range");
    }
  }
  if (const toml::node* const xi = eurocode.get("xi")) {
    factors.xi = text_.Number(*xi, "xi").value_or(factors.xi);
    if (!(factors.xi > 0.0 && factors.xi <= 1.0))
      text_.Note(*xi, "xi must be above 0 and at most 1", "out-of-range");
  }
}

void EurocodeReader::ReadExclusive(const toml::table& eurocode) {
  const toml::array* const groups = text_.Array(eurocode, "exclusive");
  if (groups == nullptr) return;
  for (const toml::node& node : *groups) {
    const toml::array* const group = node.as_array();
    if (group == nullptr || group->size() < 2)
      text_.Note(node, "an exclusive group must be a list of at least two cases", "wrong-type");
    else
      file_.rules.exclusive.push_back(ReadGroup(*group));
  }
}

std::vector<int> EurocodeReader::ReadGroup(const toml::array& group) {
  std::vector<int> places;
  for (const toml::node& member : group) {
    const std::string name = member.value<std::string>().value_or("");
    const int k = file_.CaseIndex(name);
    if (!member.is_string())
      text_.Note(member, "a case of an exclusive group must be a text in quotes", "wrong-type");
    else if (k < 0)
      text_.NoteUnknown(member.source(), "case", name, NamesOfRows(file_.cases), "unknown-case");
    else if (file_.actions[k].permanent)
      text_.Note(member, "case \"" + name + "\" is permanent: it is in every combination",
                 "permanent-exclusive");
    else if (std::find(places.begin(), places.end(), k) != places.end())
      text_.Note(member, "case \"" + name + "\" is in this group already", "case-twice");
    else
      places.push_back(k);
  }
  return places;
}

}  // namespace kestol
