#include "programs/export/Options.h"

#include <map>

#include "programs/common/CommandLine.h"

namespace kestol {

namespace {

constexpr std::string_view kVtuEnding = ".vtu", kJsonEnding = ".json";

/// -o by the ending of the name; standard output gets JSON.
void TakeOutput(const CommandLine& line, ExportOptions& options) {
  const std::string_view name = options.output;
  if (name.empty()) return;
  std::string& target = name.ends_with(kVtuEnding) ? options.vtu : options.json;
  if (name != "-" && !name.ends_with(kVtuEnding) && !name.ends_with(kJsonEnding))
    line.Refuse("-o takes a name that ends with .vtu or .json; use --vtu, --json, --csv");
  if (!target.empty()) line.Refuse("-o names a file that another option has named already");
  target = name;
}

void Check(const CommandLine& line, const ExportOptions& options) {
  if (options.vtu.empty() && options.csv.empty() && options.json.empty() &&
      options.report.empty() && options.res.empty())
    line.Refuse("one of --vtu, --csv, --json, --report and --res is needed");
  if (options.meshOnly && (!options.report.empty() || !options.res.empty()))
    line.Refuse("--report and --res need a solution: leave --mesh-only out");
}

}  // namespace

ExportOptions ParseOptions(int argc, char** argv) {
  const std::map<std::string, VtuEncoding> encodings = {
      {"raw",    VtuEncoding::Raw   },
      {"base64", VtuEncoding::Base64},
      {"ascii",  VtuEncoding::Ascii }
  };
  ExportOptions options;
  CommandLine line("kestol-export",
                   "Solves a model and writes its results for ParaView, tables and "
                   "scripts.",
                   options);
  CLI::App& app = line.app;
  app.add_option("--vtu", options.vtu,
                 "results for ParaView, and the diagrams of beams beside them in *_diagrams.vtu")
      ->type_name("FILE");
  line.AddChoice("--encoding", options.encoding, encodings, "of --vtu: raw, base64 or ascii");
  app.add_option("--csv", options.csv,
                 "tables PREFIX_nodes.csv, _beams, _stations, _shells, _solids, "
                 "_reactions, _loads")
      ->type_name("PREFIX");
  app.add_option("--json", options.json, "everything in one document, schema kestol-result/1")
      ->type_name("FILE");
  app.add_option("--stations", options.stations, "stations of a beam, at least 2")
      ->check(CLI::Range(2, 1'000'000).description(""))
      ->type_name("N");
  line.AddSolver(options.solver);
  app.add_flag("--mesh-only", options.meshOnly, "the model as it is read, without a solution");
  app.add_option("--report", options.report, "the solver's own report")->type_name("FILE");
  app.add_option("--res", options.res, "the solver's own result file")->type_name("FILE");
  line.Parse(argc, argv);
  TakeOutput(line, options);
  Check(line, options);
  return options;
}

}  // namespace kestol
