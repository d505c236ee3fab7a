#include "programs/view/Study.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "analysis/Hinges.h"
#include "main/ErrorChannel.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/MappedDeck.h"
#include "programs/common/Messages.h"

namespace kestol {

namespace {

Subject LookAt(const std::string& deck, const CheckOptions& options) {
  Subject subject;
  subject.map = std::make_unique<SourceMap>();
  subject.project = std::make_unique<Project>(ReadMappedDeck(deck, *subject.map));
  subject.found = Check(*subject.project, *subject.map, options);
  subject.found.system.reset();  // the factor is not asked for again
  subject.results = std::move(subject.found.results);
  return subject;
}

bool HasErrors(const Subject& subject) {
  return subject.found.Count(Severity::Error) > 0;
}

/// The deck as it was read, without anything solved.
Subject LookAgain(const std::string& deck) {
  CheckOptions search;
  search.solve = false;
  return LookAt(deck, search);
}

/// What is a warning where the loads of the deck stand alone is an error where cases are added up.
void SolveCasesOf(Subject& subject, const ViewOptions& options, const SolveOptions& solve) {
  SolvedCases solved = SolveCases(*subject.project, options.deck, options.cases, solve);
  if (solved.obstacles.empty()) {
    subject.cases = std::move(solved);
    return;
  }
  subject = LookAgain(options.deck);
  std::vector<Finding>& list = subject.found.list;
  for (Finding& obstacle : solved.obstacles) {
    const auto known = std::find_if(list.begin(), list.end(), [&](const Finding& finding) {
      return finding.code == obstacle.code && finding.offset == obstacle.offset;
    });
    if (known != list.end())
      known->severity = Severity::Error;
    else
      list.push_back(std::move(obstacle));
  }
}

void SolveLoadsOf(Subject& subject, const SolveOptions& solve) {
  LinearSystem system(*subject.project, solve);
  RequireSound(system);
  subject.results = system.SolveDeck();
  RequireResisted(system, subject.results->displacements);
}

/// The same deck with the reason why it cannot be solved.
Subject Unsolved(const std::string& deck, const FatalError& refusal) {
  // The refusal's text stands in the channel of errors, which the search clears.
  const std::string words(PlainWords(refusal.what()));
  const bool moves = IsOfMechanism(refusal);
  Subject subject = LookAgain(deck);
  if (HasErrors(subject)) return subject;
  Finding& finding = subject.found.list.emplace_back();
  finding.code = moves ? "mechanism" : "model";
  finding.text = words;
  return subject;
}

/// With the solver and the cases that were asked for.
void SolveAsAsked(Subject& subject, const ViewOptions& options, std::ostream* info) {
  const SolveOptions solve{.solver = options.solver, .info = info};
  try {
    if (options.cases.empty())
      SolveLoadsOf(subject, solve);
    else
      SolveCasesOf(subject, options, solve);
  } catch (const FatalError& refusal) {
    if (refusal.Line() > 0) throw;  // of a case's file: the deck has been read
    subject = Unsolved(options.deck, refusal);
  }
}

void TellErrors(const Subject& subject, const std::string& deck) {
  const bool colour = WantsColour(stderr);
  for (const Finding& finding : subject.found.list)
    if (finding.severity == Severity::Error)
      std::fputs(FindingText(deck, finding, colour).c_str(), stderr);
}

}  // namespace

Subject Study(const ViewOptions& options, std::ostream* info) {
  // The check solves by the direct solver; then its solution is the one that is shown.
  CheckOptions look;
  look.condition = options.cases.empty();
  look.assemble = options.cases.empty() && options.solver == SolverName::Direct;
  Subject subject = LookAt(options.deck, look);
  if (!HasErrors(subject) && !subject.results) SolveAsAsked(subject, options, info);
  TellErrors(subject, options.deck);
  if (HasErrors(subject)) PrepareHinges(*subject.project);
  return subject;
}

}  // namespace kestol
