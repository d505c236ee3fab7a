#include "programs/mpi/RunLog.h"

#include <sys/resource.h>

#include <cstdio>

#include "output/InfoFile.h"

namespace kestol {

namespace {

double PeakMegabytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

template <class Duration>
double SecondsOf(Duration duration) {
  return std::chrono::duration<double>(duration).count();
}

}  // namespace

RunLog::RunLog(const MpiOptions& options, const Team& team)
    : options_(options), team_(team), progress_(options.quiet || !team.IsFirst()) {
  if (team.IsFirst() && !options.info.empty()) info_.emplace(options.info);
}

void RunLog::EndStage() {
  const Clock::time_point now = Clock::now();
  if (!stage_.empty()) seconds_.emplace_back(stage_, SecondsOf(now - stageStart_));
  stageStart_ = now;
}

void RunLog::Begin(const std::string& stage) {
  EndStage();
  stage_ = stage;
  Progress(Info(), "%s\n", stage.c_str());
  progress_.Show(stage);
}

void RunLog::Tell(const std::string& text) {
  if (!team_.IsFirst()) return;
  Progress(Info(), "%s\n", text.c_str());
  if (options_.quiet) return;
  progress_.Clear();
  std::fprintf(stderr, "kestol-mpi: %s\n", text.c_str());
}

void RunLog::TellBalance(int ownNodes) {
  EndStage();
  stage_.clear();
  if (!options_.verbose) return;
  const double fewest = team_.Smallest(ownNodes), most = team_.Largest(ownNodes);
  const double memory = PeakMegabytes();
  const double largest = team_.Largest(memory), sum = team_.Sum(memory);
  for (const auto& [stage, mine] : seconds_) {
    const double least = team_.Smallest(mine), longest = team_.Largest(mine);
    if (team_.IsFirst())
      std::fprintf(stderr, "%-32s %9.3f s (%.3f on the fastest process)\n", stage.c_str(), longest,
                   least);
  }
  if (!team_.IsFirst()) return;
  if (team_.Size() == 1) {
    std::fprintf(stderr, "1 process, %d nodes; peak memory %.0f MB\n", ownNodes, memory);
  } else {
    std::fprintf(stderr,
                 "%d processes, %.0f to %.0f nodes each; peak memory %.0f MB, %.0f MB on the "
                 "largest\n",
                 team_.Size(), fewest, most, sum, largest);
  }
}

void RunLog::TellTotalTime() {
  Progress(Info(), "Total time = %.3g s\n", SecondsOf(Clock::now() - start_));
  if (info_) info_->Close();
}

}  // namespace kestol
