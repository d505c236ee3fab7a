#include "programs/combine/Options.h"

#include "programs/common/CommandLine.h"

namespace kestol {

CombineOptions ParseOptions(int argc, char** argv) {
  CombineOptions options;
  CommandLine line("kestol-combine", "Load cases, their combinations and envelopes.", options,
                   "COMBINATIONS.toml");
  line.app.get_option("COMBINATIONS.toml")->description("the model, its cases and combinations");
  line.app.add_option("--csv", options.csv, "tables PREFIX_nodes.csv, PREFIX_stations.csv, ...")
      ->type_name("PREFIX");
  line.app.add_option("--json", options.json, "everything in one document")->type_name("FILE");
  line.app.add_option("--vtu", options.vtu, "PREFIX_NAME.vtu per case and combination, PREFIX.pvd")
      ->type_name("PREFIX");
  line.app.add_flag("--list", options.list, "the combinations with their factors, then stop");
  line.app.add_flag("--cases", options.cases, "write the cases");
  line.app.add_flag("--combinations", options.combinations, "write the combinations");
  line.app.add_flag("--envelopes", options.envelopes, "write the envelopes (default: all three)");
  line.AddSolver(options.solver);
  line.Parse(argc, argv);
  if (!options.cases && !options.combinations && !options.envelopes)
    options.cases = options.combinations = options.envelopes = true;
  if (options.list && options.WritesFiles()) line.Refuse("--list writes no results");
  if (!options.vtu.empty() && !options.cases && !options.combinations)
    line.Refuse("--vtu writes cases and combinations, no envelopes");
  return options;
}

}  // namespace kestol
