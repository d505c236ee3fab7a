#include <filesystem>
#include <iostream>
#include <optional>

#include "programs/common/OutputFiles.h"
#include "programs/common/ProgressLine.h"
#include "programs/common/RunProgram.h"
#include "programs/view/Options.h"
#include "programs/view/Study.h"
#include "programs/view/SvgFiles.h"

namespace kestol {

namespace {

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
  contents.findings = subject.found.list;
  contents.mechanisms = subject.found.mechanisms ? &*subject.found.mechanisms : nullptr;
  if (subject.cases) {
    contents.caseNames = std::move(subject.cases->names);
    contents.cases = std::move(subject.cases->cases);
    contents.combinations = std::move(subject.cases->combinations);
  } else {
    contents.cases.push_back(
        CaseOf(model, subject.results ? &*subject.results : nullptr, 0, "loads of the deck"));
  }
  WritePage(page, contents);
}

std::vector<std::string> InputsOf(const ViewOptions& options) {
  RequireReadable(options.deck);
  std::vector<std::string> inputs = {options.deck};
  if (options.cases.empty()) return inputs;
  const std::vector<std::string> ofCases = InputsOfCases(options.cases, options.deck);
  inputs.insert(inputs.end(), ofCases.begin(), ofCases.end());
  return inputs;
}

int Run(const ViewOptions& options) {
  OutputFiles files(InputsOf(options));
  OutputFile* const page = options.WantsPage() ? &files.Open(options.output) : nullptr;
  std::optional<SvgFiles> drawings;
  if (!options.svg.empty()) drawings.emplace(options.svg, options.deck, files);

  ProgressLine progress(options.quiet);
  Subject subject = Study(options, options.verbose ? &std::cerr : progress.Info());
  const PageModel model(*subject.project);
  RefuseWhatCannotBeDrawn(model, options.maxTriangles);
  progress.Show("writing");
  if (page != nullptr) WriteThePage(*page, options, model, subject);
  if (drawings) drawings->Write(model, subject.results ? &*subject.results : nullptr);
  files.Commit();
  return subject.found.Count(Severity::Error) > 0 ? kFindings : kDone;
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::ViewOptions options;
  return kestol::RunProgram("kestol-view", options.deck, [&] {
    options = kestol::ParseOptions(argc, argv);
    return kestol::Run(options);
  });
}
