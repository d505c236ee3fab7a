#include <filesystem>
#include <iostream>
#include <optional>

#include "analysis/Hinges.h"
#include "kestol/LinearSystem.h"
#include "kestol/ReadDeck.h"
#include "programs/common/OutputFile.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"
#include "programs/view/Cases.h"
#include "programs/view/Options.h"
#include "programs/view/SvgFiles.h"

namespace kestol {

namespace {

/// A deck with what could be found out about it.
struct Subject {
  Project project;
  std::optional<Results> results;  ///< of the deck's loads
  std::optional<SolvedCases> cases;
  std::vector<PageFinding> findings;
};

PageFinding FindingOf(const FatalError& refusal, const std::string& deck, const char* code) {
  PageFinding finding;
  finding.code = code;
  finding.severity = "error";
  finding.file = deck;
  finding.text = refusal.what();
  while (!finding.text.empty() && finding.text.back() == '\n') finding.text.pop_back();
  if (finding.text.starts_with("error: ")) finding.text.erase(0, 7);
  finding.line = refusal.Line();
  finding.column = finding.line > 0 ? 1 : 0;
  return finding;
}

/// What can be drawn of a deck that is refused: the records before and behind the mistakes.
Project ReadLeniently(const std::string& deck) {
  SourceMap map;
  return ReadDeck(deck, &map);
}

/// Reads and solves. A refusal becomes a finding, and what was read stays.
Subject Study(const ViewOptions& options, std::ostream* info) {
  const std::string name = std::filesystem::path(options.deck).filename().string();
  std::vector<PageFinding> findings;
  try {
    Subject subject{ReadDeck(options.deck), {}, {}, {}};
    const SolveOptions solve{.solver = options.solver, .info = info};
    try {
      if (options.cases.empty()) {
        subject.results = SolveOnce(subject.project, solve);
      } else {
        subject.cases = SolveCases(subject.project, options.deck, options.cases, solve);
      }
    } catch (const FatalError& refusal) {
      if (!options.cases.empty()) throw;
      PrintRefusal(options.deck, refusal, "model");
      subject.findings.push_back(FindingOf(refusal, name, "model"));
    }
    return subject;
  } catch (const FatalError& refusal) {
    PrintRefusal(options.deck, refusal);
    findings.push_back(FindingOf(refusal, name, "syntax"));
  }
  Subject subject{ReadLeniently(options.deck), {}, {}, std::move(findings)};
  PrepareHinges(subject.project);
  return subject;
}

void RefuseWhatCannotBeDrawn(const PageModel& model, std::int64_t most) {
  if (model.meshes.empty()) throw ProgramError("there is nothing to draw");
  const std::int64_t triangles = model.Triangles();
  if (triangles > most)
    throw ProgramError("the picture would have " + std::to_string(triangles) +
                       " triangles: raise --max-triangles to draw it");
}

void WriteThePage(OutputFile& page, const ViewOptions& options, const PageModel& model,
                  Subject& subject) {
  PageContents contents;
  contents.deck = std::filesystem::path(options.deck).filename().string();
  contents.text = TextOfDeck(options.deck);
  contents.tables = options.tables;
  contents.model = &model;
  contents.findings = subject.findings;
  if (subject.cases) {
    contents.caseNames = std::move(subject.cases->names);
    contents.cases = std::move(subject.cases->cases);
    contents.combinations = std::move(subject.cases->combinations);
  } else {
    contents.cases.push_back(
        CaseOf(model, subject.results ? &*subject.results : nullptr, 0, "loads of the deck"));
  }
  WritePage(page, contents);
  page.Commit();
}

int Run(const ViewOptions& options) {
  std::vector<std::string> inputs = {options.deck};
  if (!options.cases.empty()) inputs.push_back(options.cases);
  std::optional<OutputFile> page;
  if (options.WantsPage()) page.emplace(options.output, inputs);
  std::optional<SvgFiles> drawings;
  if (!options.svg.empty()) drawings.emplace(options.svg, options.deck);

  ProgressLine progress(options.quiet);
  Subject subject = Study(options, options.verbose ? &std::cerr : progress.Info());
  const PageModel model(subject.project);
  RefuseWhatCannotBeDrawn(model, options.maxTriangles);
  progress.Show("writing");
  if (page) WriteThePage(*page, options, model, subject);
  if (drawings) drawings->Write(model, subject.results ? &*subject.results : nullptr);
  return subject.findings.empty() ? kDone : kFindings;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  const kestol::ViewOptions options = kestol::ParseOptions(argc, argv);
  return kestol::RunProgram("kestol-view", options.deck, [&] { return kestol::Run(options); });
}
