#pragma once

#include <chrono>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "programs/common/ProgressLine.h"
#include "programs/mpi/InfoStream.h"
#include "programs/mpi/Options.h"
#include "programs/mpi/Team.h"

namespace kestol {

/// What a run tells about itself: the information stream, the line on the terminal, the times of
/// its stages. Only the first process writes.
class RunLog {
public:
  /// Refuses an information file that cannot be opened, on the first process.
  RunLog(const MpiOptions& options, const Team& team);

  /// The information stream; null where nobody reads it.
  std::ostream* Info() { return info_ ? info_->Stream() : nullptr; }

  /// Begins the next stage; its name is shown on a terminal.
  void Begin(const std::string& stage);

  /// One line for the information stream and, unless the run is quiet, for standard error.
  void Tell(const std::string& text);

  /// With -v: the times of all stages and how evenly nodes and memory lie on the processes. All
  /// processes call it.
  void TellBalance(int ownNodes);

  /// The last line of the information stream; refuses one that did not take all lines.
  void TellTotalTime();

private:
  using Clock = std::chrono::steady_clock;
  void EndStage();

  const MpiOptions& options_;
  const Team& team_;
  std::optional<InfoStream> info_;
  ProgressLine progress_;
  Clock::time_point start_ = Clock::now(), stageStart_ = start_;
  std::string stage_;
  std::vector<std::pair<std::string, double>> seconds_;
};

}  // namespace kestol
