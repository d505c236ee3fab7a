#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>

#include "kestol/LinearSystem.h"
#include "programs/common/CommonOptions.h"

namespace kestol {

/// The command line of one companion: CLI11 with the options and refusals that all of them share.
///
///     CommandLine line("kestol-export", "Results for ParaView, tables and scripts.", options);
///     line.app.add_option("--vtu", ...);
///     line.Parse(argc, argv);
class CommandLine {
public:
  /// `input` is how the help calls the first argument.
  CommandLine(const std::string& program, const std::string& description, CommonOptions& options,
              const std::string& input = "DECK");

  /// Throws ProgramEnd: with kDone after --help and --version (on standard output), with kFailed
  /// and one line on standard error for what it does not understand.
  void Parse(int argc, char** argv);

  /// An option that takes one of these names; another one is refused with all of them.
  template <typename T>
  void AddChoice(const std::string& option, T& value, const std::map<std::string, T>& names,
                 const std::string& text) {
    const auto choose = [&value, names, option](const std::string& word) {
      const auto found = names.find(word);
      if (found != names.end()) {
        value = found->second;
        return;
      }
      std::string known;
      for (const auto& [name, _] : names) known += (known.empty() ? "" : ", ") + name;
      throw CLI::ValidationError(option, word + " is none of " + known);
    };
    app.add_option_function<std::string>(option, choose, text)->type_name("NAME");
  }

  /// --solver NAME for those who solve: the direct solver where it is built, else that of the deck.
  void AddSolver(SolverName& solver);

  /// The text and a hint at --help, as for an unknown option, and ProgramEnd with kFailed.
  [[noreturn]] void Refuse(const std::string& text) const;

  /// For an option that takes a number above 0.
  static CLI::Validator AboveZero();

  CLI::App app;

private:
  std::string program_;
  const SolverName* solver_ = nullptr;  ///< where AddSolver puts the choice
};

}  // namespace kestol
