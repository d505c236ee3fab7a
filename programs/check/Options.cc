#include "programs/check/Options.h"

#include <map>

#include "programs/common/CommandLine.h"

namespace kestol {

namespace {

void CheckCodes(const CommandLine& line, const CheckRequest& request) {
  for (const std::string& code : request.check.disabled)
    if (!IsFindingCode(code)) line.Refuse("--disable: unknown code " + code);
  if (!request.explain.empty() && !IsFindingCode(request.explain))
    line.Refuse("--explain: unknown code " + request.explain);
}

}  // namespace

CheckRequest ParseOptions(int argc, char** argv) {
  const std::map<std::string, CheckFormat> formats = {
      {"text",  CheckFormat::Text },
      {"json",  CheckFormat::Json },
      {"sarif", CheckFormat::Sarif}
  };
  CheckRequest request;
  CommandLine line("kestol-check", "Says what is wrong with a model, where, and what to write.",
                   request);
  CLI::App& app = line.app;
  bool noSolve = false, noCondition = false;
  app.add_flag("--syntax", request.check.syntaxOnly, "read only: nothing is assembled");
  app.add_flag("--no-solve", noSolve, "everything before the solution");
  app.add_flag("--reactions", request.reactions, "true reactions K u - F of every supported node");
  app.add_flag("--equilibrium", request.equilibrium, "loads, reactions and their balance");
  app.add_option("--mechanism", request.check.mechanisms,
                 "most motions without resistance that are explained (6)")
      ->check(CLI::Range(0, 1000).description(""))
      ->type_name("N");
  app.add_option("--mode", request.modes, "these motions for ParaView")->type_name("FILE.vtu");
  app.add_flag("--no-condition", noCondition, "no estimate of the condition number");
  app.add_flag("--strict", request.strict, "warnings count as errors");
  app.add_option("--disable", request.check.disabled, "leave findings of these codes out")
      ->delimiter(',')
      ->allow_extra_args(false)
      ->type_name("CODE,...");
  CLI::Option* const list = app.add_flag("--list-codes", request.listCodes, "all codes, then stop");
  CLI::Option* const explain =
      app.add_option("--explain", request.explain, "what a code means, then stop")
          ->type_name("CODE");
  line.AddChoice("--format", request.format, formats, "text, json or sarif");
  // No deck is needed to look something up.
  app.get_option("DECK")->required(false);
  line.Parse(argc, argv);
  request.check.solve = !noSolve;
  request.check.condition = !noCondition;
  CheckCodes(line, request);
  if (request.deck.empty() && list->empty() && explain->empty()) line.Refuse("DECK is required");
  return request;
}

}  // namespace kestol
