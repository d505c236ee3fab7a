#pragma once

#include <string>
#include <vector>

#include "kestol/Results.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// One load case in a page: its numbers, and its member of "cases" as it is written.
struct PageCase {
  std::vector<PageBlock> blocks;
  std::string json;
};

/// The case `number` (from 0) as the model carries it now. `results` null: the model alone.
PageCase CaseOf(const PageModel& model, const Results* results, int number, const std::string& name,
                const std::string& category = {});

}  // namespace kestol
