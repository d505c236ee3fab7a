#include "programs/view/Options.h"

#include <map>

#include "programs/common/CommandLine.h"
#include "programs/common/Messages.h"
#include "programs/view/Cases.h"

namespace kestol {

ViewOptions ParseOptions(int argc, char** argv) {
  const std::map<std::string, Tables> tables = {
      {"none",     Tables::None    },
      {"supports", Tables::Supports},
      {"all",      Tables::All     }
  };
  ViewOptions options;

  CommandLine line("kestol-view", "The model and its results in one HTML file.", options);
  CLI::App& app = line.app;
  app.add_option("--cases", options.cases,
                 "a menu of the cases, combinations and envelopes of this file; not with --svg")
      ->type_name("COMBINATIONS.toml");
  app.add_option("--svg", options.svg,
                 "drawings PREFIX_model.svg, _deformed.svg, with beams also _N.svg, _V.svg, _M.svg")
      ->type_name("PREFIX");
  app.add_option("--max-triangles", options.maxTriangles,
                 "refuse pictures of more triangles (default 1000000)")
      ->check(CommandLine::AboveZero())
      ->type_name("N");
  line.AddChoice("--tables", options.tables, tables, "tables of the page: none, supports or all");
  line.AddSolver(options.solver);
  line.Parse(argc, argv);
  if (!options.cases.empty() && !CasesAreBuilt())
    line.Refuse("this program was built without the reader of combination files");
  if (!options.cases.empty() && !options.svg.empty())
    line.Refuse("--svg draws the loads of the deck: leave --cases out");
  if (options.WantsPage() && options.output.empty()) {
    if (IsTerminal(stdout)) line.Refuse("name the page: -o FILE.html");
    options.output = "-";
  }
  return options;
}

}  // namespace kestol
