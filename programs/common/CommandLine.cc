#include "programs/common/CommandLine.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "programs/common/OutputFile.h"
#include "programs/common/RunProgram.h"
#include "programs/common/Utf8.h"

namespace kestol {

namespace {

std::string FirstLine(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

/// The first word that looks like an option and is none; "--" ends the options.
std::string UnknownOption(const std::vector<std::string>& words) {
  const auto end = std::find(words.begin(), words.end(), "--");
  const auto found = std::find_if(words.begin(), end,
                                  [](const std::string& word) { return word.starts_with('-'); });
  return found == end ? "" : *found;
}

/// What nobody asked for, in its order; the "--" that ended the options is no argument.
std::string Unexpected(std::vector<std::string> words) {
  const auto end = std::find(words.begin(), words.end(), "--");
  if (end != words.end()) words.erase(end);
  std::string text = words.size() == 1 ? "The following argument was not expected:"
                                       : "The following arguments were not expected:";
  for (const std::string& word : words) text += ' ' + word;
  return text;
}

void Print(const std::string& text) {
  OutputFile output("-", {});
  output << text;
  output.Commit();
}

}  // namespace

CommandLine::CommandLine(const std::string& program, const std::string& description,
                         CommonOptions& options, const std::string& input)
    : app(description, program), program_(program) {
  app.set_help_flag("--help", "this text");
  app.set_version_flag("--version", program + " " KESTOL_VERSION, "the version");
  app.add_flag("-q,--quiet", options.quiet, "errors only, no progress");
  app.add_flag("-v,--verbose", options.verbose, "the solver's own information on standard error");
  app.add_option("-o", options.output, "where the output goes; \"-\" is standard output")
      ->type_name("FILE");
  app.add_option(input, options.deck, "the model")->required()->type_name("");
}

void CommandLine::AddSolver(SolverName& solver) {
  static const std::map<std::string, SolverName> names = {
      {"deck",    SolverName::Deck   },
      {"skyline", SolverName::SkyLine},
      {"sparse",  SolverName::Sparse },
      {"direct",  SolverName::Direct }
  };
  solver = DirectSolverIsBuilt() ? SolverName::Direct : SolverName::Deck;
  solver_ = &solver;
  AddChoice("--solver", solver, names, "skyline, sparse, direct or deck");
}

CLI::Validator CommandLine::AboveZero() {
  const auto check = [](const std::string& text) {
    double number = 0.0;
    const bool good = CLI::detail::lexical_cast(text, number) && number > 0.0;
    return good ? std::string() : text + " is not a number above 0";
  };
  return {check, ""};
}

void CommandLine::Parse(int argc, char** argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    Print(app.help());
    throw ProgramEnd{kDone};
  } catch (const CLI::CallForVersion& version) {
    Print(std::string(version.what()) + "\n");
    throw ProgramEnd{kDone};
  } catch (const CLI::ParseError& error) {
    // An option that nobody knows comes before an argument that is missing because of it.
    const std::string unknown = UnknownOption(app.remaining());
    if (!unknown.empty()) Refuse("unknown option " + unknown);
    const bool isExtra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
    Refuse(isExtra ? Unexpected(app.remaining()) : FirstLine(error.what()));
  }
  if (solver_ != nullptr && *solver_ == SolverName::Direct && !DirectSolverIsBuilt())
    Refuse("this program was built without the direct solver");
}

void CommandLine::Refuse(const std::string& text) const {
  const std::string line = program_ + ": " + Harmless(text) + "; try " + program_ + " --help\n";
  std::fputs(line.c_str(), stderr);
  throw ProgramEnd{kFailed};
}

}  // namespace kestol
