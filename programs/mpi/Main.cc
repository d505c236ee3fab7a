#include <fcntl.h>
#include <unistd.h>

#include "programs/common/RunProgram.h"
#include "programs/mpi/MpiRun.h"
#include "programs/mpi/Options.h"
#include "programs/mpi/Outputs.h"
#include "programs/mpi/PetscObjects.h"
#include "programs/mpi/Team.h"

namespace kestol {

namespace {

/// Standard output and error of this process lead nowhere as long as it lives: what all processes
/// say alike is said by one.
class Silence {
public:
  explicit Silence(bool wanted) {
    if (!wanted) return;
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (int k = 0; k < 2; ++k) {
      kept_[k] = ::fcntl(STDOUT_FILENO + k, F_DUPFD_CLOEXEC, 0);
      ::dup2(nowhere, STDOUT_FILENO + k);
    }
    ::close(nowhere);
  }
  ~Silence() {
    for (int k = 0; k < 2; ++k) {
      if (kept_[k] < 0) continue;
      ::dup2(kept_[k], STDOUT_FILENO + k);
      ::close(kept_[k]);
    }
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

private:
  int kept_[2] = {-1, -1};
};

MpiOptions ParseOnAll(const Team& team, int argc, char** argv) {
  const Silence silence(!team.IsFirst());
  return ParseOptions(argc, argv);
}

int Run(Team& team, const MpiOptions& options) {
  return RunOnAll(team, options,
                  [&](const Project& project, const Results& results, OutputFiles& files) {
                    WriteOutputs(options, project, results, files);
                  });
}

int ParseAndRun(Team& team, int argc, char** argv, MpiOptions& options) {
  try {
    team.Together([&] { options = ParseOnAll(team, argc, argv); });
    return Run(team, options);
  } catch (const ToldElsewhere&) {
    return kDone;
  } catch (const PetscFailure& failure) {
    if (!team.IsFirstToFail()) return kDone;
    throw ProgramError(failure.what());
  }
}

}  // namespace

}  // namespace kestol

int main(int argc, char** argv) {
  kestol::Team team(&argc, &argv);
  kestol::MpiOptions options;
  return team.Status(kestol::RunProgram(
      "kestol-mpi", options.deck, [&] { return kestol::ParseAndRun(team, argc, argv, options); }));
}
