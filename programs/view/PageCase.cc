#include "programs/view/PageCase.h"

#include "programs/common/ResultJson.h"
#include "programs/view/PageResult.h"
#include "results/Equilibrium.h"

namespace kestol {

namespace {

/// Reactions of more supports than this go into the page as numbers alone.
constexpr std::size_t kMostRecords = 2000;

}  // namespace

PageCase CaseOf(const PageModel& model, const Results* results, int number, const std::string& name,
                const std::string& category) {
  PageCase one;
  OutputString text;
  JsonWriter json(text);
  json.BeginObject().Member("name", name);
  if (!category.empty()) json.Member("category", category);
  if (results != nullptr) {
    const Project& project = model.project;
    one.blocks = ResultBlocks(model, *results, number);
    WriteEquilibriumMember(json, EquilibriumOf(project, *results));
    if (results->reactions.size() <= kMostRecords) WriteReactionsMember(json, project, *results);
  }
  model.WriteLoads(json);
  json.EndObject();
  one.json = std::move(text.Text());
  return one;
}

}  // namespace kestol
