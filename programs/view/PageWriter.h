#pragma once

#include <optional>
#include <string>
#include <vector>

#include "kestol/combine/Combination.h"
#include "programs/view/DeckText.h"
#include "programs/view/PageCase.h"
#include "programs/view/PageModel.h"

namespace kestol {

/// Which tables a page offers.
enum class Tables { None, Supports, All };

/// One remark about a deck.
struct PageFinding {
  std::string code, severity, file, text;
  long line = 0, column = 0, endColumn = 0;
  std::vector<int> nodes, elements;
};

/// What a page shows: at least one case.
struct PageContents {
  std::string deck;  ///< the file's name without its folder
  DeckText text;
  Tables tables = Tables::All;
  const PageModel* model = nullptr;
  std::vector<std::string> caseNames = {};
  std::vector<PageCase> cases = {};
  std::vector<Combination> combinations = {};
  std::vector<PageFinding> findings;
};

/// The page as one file: script, style and numbers inside.
void WritePage(OutputBuffer& output, const PageContents& contents);

}  // namespace kestol
