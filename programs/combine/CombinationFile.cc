#include "programs/combine/CombinationFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <utility>

#include "programs/combine/EurocodeReader.h"
#include "programs/combine/TomlText.h"
#include "programs/common/KeptText.h"
#include "programs/common/Messages.h"
#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

constexpr std::string_view kFileKeys[] = {"model", "cases", "combinations", "eurocode"};
constexpr std::string_view kCaseKeys[] = {"category", "loads", "separate"};

/// Reads one document into a CombinationFile.
class FileReader {
public:
  FileReader(const std::string& text, std::string folder, std::vector<FileMistake>& mistakes)
      : text_(text, mistakes), mistakes_(mistakes), folder_(std::move(folder)) {}

  CombinationFile Read() {
    document_ = text_.Parse();
    if (document_.empty()) {
      if (mistakes_.empty())
        mistakes_.push_back(
            {"the file says nothing: it needs a model and cases", "missing-key", 1, 1});
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
  void RefuseGeneratedNames(std::string_view section, const std::string& what);

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
  const std::string reason = WhyUnreadable(path);
  if (!reason.empty()) text_.Note(place, reason, "file");
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
                        NamesOfRows(ActionCategories()), "unknown-category");
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
    const int k = file_.CaseIndex(key->str());
    const std::optional<double> factor =
        text_.Number(*node, "the factor of \"" + std::string(key->str()) + '"');
    if (k < 0)
      text_.NoteUnknown(key->source(), "case", key->str(), NamesOfRows(file_.cases),
                        "unknown-case");
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
    // Tables and files tell results apart by name, whatever they are of.
    if (file_.CaseIndex(name) >= 0)
      text_.Note(key->source(), "combination \"" + name + "\" has the name of a case",
                 "name-twice");
    file_.combinations.push_back(
        NamedCombination(name, ReadFactors(name, *table), file_.CaseNames()));
  }
}

// --- eurocode ---------------------------------------------------------------------------------

void FileReader::ReadEurocode() {
  const toml::table* const eurocode = text_.Table(document_, "eurocode");
  if (eurocode == nullptr) return;
  EurocodeReader reader(text_, caseTables_, file_);
  reader.Read(*eurocode);
  if (!mistakes_.empty()) return;
  reader.Generate(*eurocode);
  RefuseGeneratedNames("cases", "case");
  RefuseGeneratedNames("combinations", "combination");
}

void FileReader::RefuseGeneratedNames(std::string_view section, const std::string& what) {
  const toml::table* const table = document_[section].as_table();
  if (table == nullptr) return;
  std::set<std::string_view> generated;
  for (const Combination& combination : file_.generated) generated.insert(combination.name);
  for (const auto& [key, node] : InOrder(*table))
    if (generated.contains(key->str()))
      text_.Note(
          key->source(),
          what + " \"" + std::string(key->str()) + "\" has the name of a generated combination",
          "name-twice");
}

}  // namespace

std::vector<std::string> CombinationFile::CaseNames() const {
  std::vector<std::string> names;
  for (const CaseEntry& entry : cases) names.push_back(entry.name);
  return names;
}

std::vector<Combination> CombinationFile::AllCombinations() const {
  std::vector<Combination> all = combinations;
  all.insert(all.end(), generated.begin(), generated.end());
  return all;
}

int CombinationFile::CaseIndex(std::string_view name) const {
  const auto found = std::find_if(cases.begin(), cases.end(),
                                  [&](const CaseEntry& entry) { return entry.name == name; });
  return found == cases.end() ? -1 : static_cast<int>(found - cases.begin());
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
  return ReadCombinationText(KeptOrWhole(path), std::filesystem::path(path).parent_path().string(),
                             mistakes);
}

void PrintMistakes(const std::string& path, const std::vector<FileMistake>& mistakes) {
  const bool colour = WantsColour(stderr);
  const std::string all = KeptOrWhole(path);
  std::string_view rest = all;
  long here = 1;
  for (const auto& [text, code, line, column, endColumn] : mistakes) {  // in their order
    for (; here < line; ++here) rest.remove_prefix(std::min(rest.find('\n'), rest.size() - 1) + 1);
    std::string source(rest.substr(0, std::min(rest.find('\n'), kLongestExcerpt)));
    if (source.ends_with('\r')) source.pop_back();
    const Message message{"error", text, code, path, line, column, endColumn};
    std::fputs(MessageText(message, line > 0 ? &source : nullptr, colour).c_str(), stderr);
  }
}

}  // namespace kestol
