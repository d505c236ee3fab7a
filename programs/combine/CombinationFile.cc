#include "programs/combine/CombinationFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <utility>

#include "main/ErrorChannel.h"
#include "programs/combine/TomlText.h"

namespace kestol {

namespace {

constexpr std::string_view kFileKeys[] = {"model", "cases", "combinations", "eurocode"};
constexpr std::string_view kCaseKeys[] = {"category", "loads", "separate"};
constexpr std::string_view kEurocodeKeys[] = {"rules", "exclusive", "psi", "gamma", "xi"};
constexpr std::string_view kGammaKeys[] = {"G", "Q"};

template <class Row>
std::vector<std::string_view> NamesOf(const Row& rows) {
  std::vector<std::string_view> names;
  for (const auto& row : rows) names.push_back(row.name);
  return names;
}

/// Reads one document into a CombinationFile.
class FileReader {
public:
  FileReader(const std::string& text, std::string folder, std::vector<FileMistake>& mistakes)
      : text_(text, mistakes), mistakes_(mistakes), folder_(std::move(folder)) {}

  CombinationFile Read() {
    document_ = text_.Parse();
    if (document_.empty()) {
      if (mistakes_.empty())
        mistakes_.push_back({"the file says nothing: it needs a model and cases", "missing-key"});
      return {};
    }
    text_.RefuseUnknownKeys(document_, "the file", kFileKeys);
    ReadModel();
    ReadCases();
    ReadCombinations();
    ReadEurocode();
    return std::move(file_);
  }

private:
  void ReadModel();
  void ReadCases();
  void ReadCase(const toml::key& key, const toml::table& table);
  void ReadLoads(const toml::table& table, CaseEntry& entry);
  void ReadCombinations();
  std::vector<double> ReadFactors(const std::string& name, const toml::table& table);
  void ReadEurocode();
  void ReadActions();
  void ReadRules(const toml::table& eurocode);
  void ReadPsi(const toml::table& eurocode);
  void ReadGamma(const toml::table& eurocode);
  void ReadExclusive(const toml::table& eurocode);

  int CaseIndex(std::string_view name) const;
  std::string Resolve(const std::string& path) const {
    return (std::filesystem::path(folder_) / path).string();
  }

  void RefuseMissingFile(const toml::node& place, const std::string& path);

  TomlText text_;
  std::vector<FileMistake>& mistakes_;
  std::string folder_;
  toml::table document_;
  CombinationFile file_;
  std::vector<const toml::table*> caseTables_;
};

int FileReader::CaseIndex(std::string_view name) const {
  const auto found = std::find_if(file_.cases.begin(), file_.cases.end(),
                                  [&](const CaseEntry& entry) { return entry.name == name; });
  return found == file_.cases.end() ? -1 : static_cast<int>(found - file_.cases.begin());
}

void FileReader::ReadModel() {
  const std::optional<std::string> model = text_.Text(document_, "model");
  if (model) {
    file_.model = Resolve(*model);
    RefuseMissingFile(*document_.get("model"), file_.model);
  } else if (!document_.contains("model")) {
    text_.Note(document_, "the file names no model: model = \"deck.dat\"", "missing-key");
  }
}

void FileReader::RefuseMissingFile(const toml::node& place, const std::string& path) {
  if (!std::ifstream(path) || std::filesystem::is_directory(path))
    text_.Note(place, "can't open file " + path, "file");
}

// --- cases ------------------------------------------------------------------------------------

void FileReader::ReadCases() {
  const toml::table* const cases = text_.Table(document_, "cases");
  if (cases == nullptr) {
    if (!document_.contains("cases"))
      text_.Note(document_, "the file has no load case: [cases.NAME]", "missing-key");
    return;
  }
  if (cases->empty()) text_.Note(*cases, "the file has no load case: [cases.NAME]", "missing-key");
  for (const auto& [key, node] : InOrder(*cases)) {
    const toml::table* const table = node->as_table();
    if (table != nullptr)
      ReadCase(*key, *table);
    else
      text_.Note(*node, "case \"" + std::string(key->str()) + "\" must be a table", "wrong-type");
  }
}

void FileReader::ReadCase(const toml::key& key, const toml::table& table) {
  CaseEntry entry;
  entry.name = key.str();
  text_.RefuseUnknownKeys(table, "case \"" + entry.name + '"', kCaseKeys);
  if (const auto category = text_.Text(table, "category")) {
    entry.category = *category;
    if (FindCategory(*category) == nullptr)
      text_.NoteUnknown(table.get("category")->source(), "category", *category,
                        NamesOf(ActionCategories()), "unknown-category");
  }
  entry.separate = text_.Flag(table, "separate").value_or(false);
  if (entry.separate && !entry.category.empty() && entry.category != "permanent")
    text_.Note(*table.get("separate"), "only a permanent case can be separate", "wrong-type");
  ReadLoads(table, entry);
  file_.cases.push_back(std::move(entry));
  caseTables_.push_back(&table);
}

void FileReader::ReadLoads(const toml::table& table, CaseEntry& entry) {
  const std::optional<std::string> loads = text_.Text(table, "loads");
  if (!loads) {
    if (!table.contains("loads"))
      text_.Note(table, "case \"" + entry.name + "\" has no loads: loads = \"model\" or a file",
                 "missing-key");
    return;
  }
  if (*loads == "model") {
    entry.ofModel = true;
    const auto other = std::find_if(file_.cases.begin(), file_.cases.end(),
                                    [](const CaseEntry& earlier) { return earlier.ofModel; });
    if (other != file_.cases.end())
      text_.Note(*table.get("loads"),
                 "the loads of the model belong to case \"" + other->name + "\" already",
                 "model-twice");
    return;
  }
  entry.loads = Resolve(*loads);
  RefuseMissingFile(*table.get("loads"), entry.loads);
}

// --- combinations -----------------------------------------------------------------------------

std::vector<double> FileReader::ReadFactors(const std::string& name, const toml::table& table) {
  std::vector<double> factors(file_.cases.size(), 0.0);
  if (table.empty()) text_.Note(table, "combination \"" + name + "\" has no case", "missing-key");
  for (const auto& [key, node] : InOrder(table)) {
    const int k = CaseIndex(key->str());
    const std::optional<double> factor =
        text_.Number(*node, "the factor of \"" + std::string(key->str()) + '"');
    if (k < 0)
      text_.NoteUnknown(key->source(), "case", key->str(), NamesOf(file_.cases), "unknown-case");
    else if (factor)
      factors[k] = *factor;
  }
  return factors;
}

void FileReader::ReadCombinations() {
  const toml::table* const combinations = text_.Table(document_, "combinations");
  if (combinations == nullptr) return;
  for (const auto& [key, node] : InOrder(*combinations)) {
    const std::string name(key->str());
    const toml::table* const table = node->as_table();
    if (table == nullptr) {
      text_.Note(*node, "combination \"" + name + "\" must be a table of factors", "wrong-type");
      continue;
    }
    file_.combinations.push_back(
        NamedCombination(name, ReadFactors(name, *table), file_.CaseNames()));
  }
}

// --- eurocode ---------------------------------------------------------------------------------

void FileReader::ReadEurocode() {
  const toml::table* const eurocode = text_.Table(document_, "eurocode");
  if (eurocode == nullptr) return;
  file_.hasEurocode = true;
  text_.RefuseUnknownKeys(*eurocode, "[eurocode]", kEurocodeKeys);
  ReadActions();
  ReadRules(*eurocode);
  ReadPsi(*eurocode);
  ReadGamma(*eurocode);
  ReadExclusive(*eurocode);
}

void FileReader::ReadActions() {
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

void FileReader::ReadRules(const toml::table& eurocode) {
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
      text_.NoteUnknown(node.source(), "rule", name, NamesOf(kRuleNames), "unknown-rule");
    else
      file_.rules.rules.push_back(found->rule);
  }
}

void FileReader::ReadPsi(const toml::table& eurocode) {
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

void FileReader::ReadGamma(const toml::table& eurocode) {
  PartialFactors& factors = file_.rules.gamma;
  if (const toml::table* const gamma = text_.Table(eurocode, "gamma")) {
    text_.RefuseUnknownKeys(*gamma, "gamma", kGammaKeys);
    if (const toml::node* const G = gamma->get("G"))
      if (const auto values = text_.Numbers(*G, "gamma of G", 2)) {
        factors.superior = (*values)[0];
        factors.inferior = (*values)[1];
        if (factors.inferior < 0.0 || factors.superior < factors.inferior)
          text_.Note(*G, "gamma of G must be [unfavourable, favourable], the larger one first",
                     "out-of-range");
      }
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

void FileReader::ReadExclusive(const toml::table& eurocode) {
  const toml::array* const groups = text_.Array(eurocode, "exclusive");
  if (groups == nullptr) return;
  for (const toml::node& node : *groups) {
    const toml::array* const group = node.as_array();
    if (group == nullptr || group->size() < 2) {
      text_.Note(node, "an exclusive group must be a list of at least two cases", "wrong-type");
      continue;
    }
    std::vector<int> places;
    for (const toml::node& member : *group) {
      const std::string name = member.value<std::string>().value_or("");
      const int k = CaseIndex(name);
      if (!member.is_string())
        text_.Note(member, "a case of an exclusive group must be a text in quotes", "wrong-type");
      else if (k < 0)
        text_.NoteUnknown(member.source(), "case", name, NamesOf(file_.cases), "unknown-case");
      else if (file_.actions[k].permanent)
        text_.Note(member, "case \"" + name + "\" is permanent: it is in every combination",
                   "permanent-exclusive");
      else
        places.push_back(k);
    }
    file_.rules.exclusive.push_back(std::move(places));
  }
}

}  // namespace

std::vector<std::string> CombinationFile::CaseNames() const {
  std::vector<std::string> names;
  for (const CaseEntry& entry : cases) names.push_back(entry.name);
  return names;
}

std::vector<Combination> CombinationFile::AllCombinations() const {
  std::vector<Combination> all = combinations;
  if (!hasEurocode) return all;
  std::set<std::string> names;
  for (const Combination& combination : combinations) names.insert(combination.name);
  for (Combination& generated : GenerateCombinations(actions, rules)) {
    if (names.contains(generated.name))
      Fatal("error: combination \"", generated.name, "\" has the name of a generated one\n");
    all.push_back(std::move(generated));
  }
  return all;
}

CombinationFile ReadCombinationText(const std::string& text, const std::string& folder,
                                    std::vector<FileMistake>& mistakes) {
  CombinationFile file = FileReader(text, folder, mistakes).Read();
  std::stable_sort(mistakes.begin(), mistakes.end(),
                   [](const FileMistake& a, const FileMistake& b) {
                     return std::pair(a.line, a.column) < std::pair(b.line, b.column);
                   });
  return file;
}

CombinationFile ReadCombinationFile(const std::string& path, std::vector<FileMistake>& mistakes) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream text;
  if (stream.peek() != std::ifstream::traits_type::eof()) text << stream.rdbuf();
  return ReadCombinationText(text.str(), std::filesystem::path(path).parent_path().string(),
                             mistakes);
}

}  // namespace kestol
