#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kestol/Mechanisms.h"
#include "kestol/combine/Combination.h"
#include "kestol/findings/Finding.h"
#include "programs/view/DeckText.h"
#include "programs/view/PageCase.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// Which tables a page offers.
enum class Tables { None, Supports, All };

/// What a page shows: at least one case.
struct PageContents {
  std::string deck;  ///< the file's name without its folder
  DeckText text;
  Tables tables = Tables::All;
  const PageModel* model = nullptr;
  std::vector<std::string> caseNames = {};
  std::vector<PageCase> cases = {};
  std::vector<Combination> combinations = {};
  std::vector<Finding> findings = {};
  const Mechanisms* mechanisms = nullptr;  ///< null: none
};

/// The page as one file: script, style and numbers inside.
void WritePage(OutputBuffer& output, const PageContents& contents);

}  // namespace kestol
