#include "programs/combine/Options.h"

#include <map>

namespace kestol {

namespace {

const std::map<std::string, SolverName>& SolversByName() {
  static const std::map<std::string, SolverName> names = {
      {"skyline", SolverName::SkyLine},
      {"sparse",  SolverName::Sparse },
      {"direct",  SolverName::Direct },
      {"deck",    SolverName::Deck   },
  };
  return names;
}

}  // namespace

CombineOptions ParseOptions(int argc, char** argv) {
  CombineOptions options;
  if (DirectSolverIsBuilt()) options.solver = SolverName::Direct;
  CommandLine line("kestol-combine", "Load cases, their combinations and envelopes.", options,
                   "COMBINATIONS.toml");
  line.app.add_option("--csv", options.csv, "tables PREFIX_nodes.csv, PREFIX_stations.csv, ...")
      ->type_name("PREFIX");
  line.app.add_option("--json", options.json, "everything in one document")->type_name("FILE");
  line.app.add_option("--vtu", options.vtu, "PREFIX_NAME.vtu per case and combination, PREFIX.pvd")
      ->type_name("PREFIX");
  line.app.add_flag("--list", options.list, "the combinations with their factors, then stop");
  line.app.add_flag("--cases", options.cases, "write the cases");
  line.app.add_flag("--combinations", options.combinations, "write the combinations");
  line.app.add_flag("--envelopes", options.envelopes, "write the envelopes (default: all three)");
  line.app
      .add_option_function<std::string>(
          "--solver", [&](const std::string& name) { options.solver = SolversByName().at(name); },
          "skyline, sparse, direct or deck")
      ->type_name("NAME")
      ->check(CLI::IsMember(SolversByName()));
  line.Parse(argc, argv);
  if (!options.cases && !options.combinations && !options.envelopes)
    options.cases = options.combinations = options.envelopes = true;
  if (options.solver == SolverName::Direct && !DirectSolverIsBuilt())
    line.Refuse("this program was built without the direct solver");
  if (options.list && options.WritesFiles()) line.Refuse("--list writes no results");
  return options;
}

}  // namespace kestol
