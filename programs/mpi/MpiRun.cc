#include "programs/mpi/MpiRun.h"

#include <cstdio>
#include <optional>
#include <utility>

#include "algebra/StiffnessMatrix.h"
#include "analysis/Assembly.h"
#include "analysis/Counts.h"
#include "analysis/RigidMotions.h"
#include "analysis/SolveDriver.h"
#include "direct/BlasRoom.h"
#include "kestol/Mechanisms.h"
#include "kestol/ReadDeck.h"
#include "main/ErrorChannel.h"
#include "programs/common/FindingMessages.h"
#include "programs/common/RunProgram.h"
#include "programs/mpi/DistributedResults.h"
#include "programs/mpi/DistributedSystem.h"
#include "programs/mpi/MechanismTest.h"
#include "programs/mpi/Outputs.h"
#include "programs/mpi/OwnPart.h"
#include "programs/mpi/Partition.h"
#include "programs/mpi/PetscObjects.h"
#include "programs/mpi/Pieces.h"
#include "programs/mpi/RigidSolids.h"
#include "programs/mpi/RigidVectors.h"
#include "programs/mpi/RunLog.h"
#include "programs/mpi/SystemSolver.h"

namespace kestol {

namespace {

class DiscardedBlocks : public BlockSink {
public:
  void AddBlock(int, int, const Matriu&) override {}
};

/// Meets what the solver would refuse first, in its order.
void MeetFirstRefusal(const Project& project) {
  DiscardedBlocks nowhere;
  AddStiffness(project, WholeMeshes(project), nowhere, BlockAxes::Support);
  LoadsOfDeck(project);
}

std::string CountOfIterations(int count) {
  return std::to_string(count) + (count == 1 ? " iteration" : " iterations");
}

/// One run. The members are what its stages leave to the next.
class MpiRun {
public:
  MpiRun(Team& team, const MpiOptions& options, const Receiver& receiver)
      : team_(team),
        options_(options),
        receiver_(receiver),
        petsc_(options.petsc),
        files_({options.deck}) {}

  int Run() {
    team_.Together([&] {
      RequireReadable(options_.deck);
      CheckOutputs(options_, team_.Rank());
    });
    team_.Together([&] { log_.emplace(options_, team_); });
    Read();
    log_->Begin("dividing the nodes");
    partition_ = DivideNodes(*project_, team_);
    log_->Begin("assembling");
    MakeSystem();
    SolveSystem();
    log_->Begin("strengths and reactions");
    ComputeResults();
    log_->Begin("writing");
    Write();
    log_->TellBalance(partition_.OwnCount());
    team_.FirstAlone([&] { log_->TellTotalTime(); });
    NameFiles();
    return kDone;
  }

private:
  void Read();
  void MakeSystem();
  void SolveSystem();
  void TestSmallModel();
  void TestForMechanism(SystemSolver& solver);
  void ComputeResults();
  void Write();
  void NameFiles();
  SolverSettings Settings() const;
  [[noreturn]] void RefuseMechanism();
  [[noreturn]] void RefuseResidual(const SolveOutcome& outcome);

  Team& team_;
  const MpiOptions& options_;
  const Receiver& receiver_;
  PetscSession petsc_;
  std::optional<RunLog> log_;
  std::optional<Project> project_;
  Partition partition_;
  std::optional<DistributedSystem> system_;
  Results results_;
  OutputFiles files_;
};

/// Every process reads the deck. Nodes keep the numbers of the input: the partition orders them.
void MpiRun::Read() {
  log_->Begin("reading");
  team_.Together([&] {
    project_.emplace(ReadDeck(options_.deck));
    if (project_->solverChoice == SolveDouble) ConvertForDouble(*project_);
    PrepareModel(*project_, {.renumber = false, .info = log_->Info()});
  });
  const double nodes = project_->numNodes;
  if (team_.Smallest(nodes) != team_.Largest(nodes))
    team_.FirstAlone(
        [&] { throw ProgramError("not every process reads the same " + options_.deck); });
}

void MpiRun::MakeSystem() {
  std::exception_ptr refused;
  try {
    system_.emplace(*project_, partition_);
  } catch (...) {
    refused = std::current_exception();
  }
  if (team_.Any(refused != nullptr)) {
    team_.FirstAlone([&] {
      error.Clear();
      MeetFirstRefusal(*project_);
    });
    team_.Together([&] {
      if (refused) std::rethrow_exception(refused);
    });
  }
  if (!SupportsStopRigidMotions(*project_)) RefuseMechanism();
  system_->Assemble();
}

SolverSettings MpiRun::Settings() const {
  SolverSettings settings;
  settings.family = FamilyOf(*project_);
  settings.solver = options_.solver == MpiSolver::Auto
                        ? FasterSolver(settings.family, EquationCount(*project_))
                        : options_.solver;
  settings.tolerance = options_.tolerance;
  settings.maxIterations = options_.maxIterations;
  return settings;
}

void MpiRun::SolveSystem() {
  team_.Together(TakeBlasRoom);
  const SolverSettings settings = Settings();
  SystemSolver solver(*system_, settings);
  if (!solver.IsDirect()) TestSmallModel();
  log_->Begin(solver.IsDirect() ? "factorising" : "coarsening");
  if (!solver.IsDirect()) AttachRigidMotions(*project_, partition_, system_->Matrix());
  if (!solver.SetUp()) RefuseMechanism();
  log_->Begin("solving");
  const SolveOutcome outcome = solver.Solve();
  if (options_.verbose) solver.View();
  if (outcome.suspect) RefuseMechanism();
  TestForMechanism(solver);
  if (!outcome.solved) RefuseResidual(outcome);

  char text[128];
  const std::string iterations =
      solver.IsDirect() ? "" : ", " + CountOfIterations(outcome.iterations);
  std::snprintf(text, sizeof text, "%s%s, residual |f - K u| / |f| = %.1e", NameOf(settings.solver),
                iterations.c_str(), outcome.residual);
  log_->Tell(text);
}

/// Iterations on a mechanism may not end at all: the incomplete factors of a singular block are
/// tried for ever. A small model costs little to be factorised first.
void MpiRun::TestSmallModel() {
  constexpr int kSmall = 20'000;  // equations
  if (EquationCount(*project_) > kSmall || SolidsHangTogether(*project_)) return;
  SystemSolver factor(*system_, {});
  if (!factor.SetUp() || MechanismTest(*system_).Finds(factor)) RefuseMechanism();
}

void MpiRun::TestForMechanism(SystemSolver& solver) {
  MechanismTest test(*system_);
  if (test.IsFree(system_->Solution())) RefuseMechanism();
  if (!solver.IsDirect() && SolidsHangTogether(*project_)) return;
  if (test.Finds(solver)) RefuseMechanism();
}

void MpiRun::RefuseMechanism() {
  team_.FirstAlone([&] {
    try {
      kestol::RefuseMechanism(*project_);
    } catch (const FatalError& refusal) {
      EndUnsolved(options_.deck, refusal);
    }
  });
  throw ToldElsewhere();  // not reached: all processes have left
}

void MpiRun::RefuseResidual(const SolveOutcome& outcome) {
  team_.FirstAlone([&] {
    char text[256];
    std::snprintf(text, sizeof text,
                  "the iterations ended after %d of at most %d with a residual |f - K u| / |f| of "
                  "%.1e, above the tolerance of %g: try --solver direct",
                  outcome.iterations, options_.maxIterations, outcome.residual, options_.tolerance);
    throw ProgramError(text, kFindings);
  });
  throw ToldElsewhere();  // not reached: all processes have left
}

void MpiRun::ComputeResults() {
  PetscInt count = 0;
  const double* own = nullptr;
  Check(VecGetLocalSize(system_->Solution(), &count));
  Check(VecGetArrayRead(system_->Solution(), &own));
  results_.displacements =
      GatherByEquation(*project_, partition_, team_, {own, static_cast<std::size_t>(count)});
  Check(VecRestoreArrayRead(system_->Solution(), &own));
  TurnToGlobalAxes(*project_, results_.displacements);
  results_.loads = GatherByEquation(*project_, partition_, team_,
                                    OwnEntries(*project_, partition_, system_->Loads()));
  system_.reset();
  const Holder holder = options_.vtu.empty() ? Holder::First : Holder::Everyone;
  ComputeDistributed(*project_, partition_, team_, holder, results_);
}

void MpiRun::Write() {
  const std::string unused = petsc_.UnusedOptions();
  if (!unused.empty()) log_->Tell("nothing asked for these options of PETSc: " + unused);
  team_.FirstAlone([&] { receiver_(*project_, results_, files_); });
  if (options_.vtu.empty()) return;
  KeepOwnPart(partition_, team_.Rank(), *project_, results_);
  WritePieces(*project_, results_, team_, options_.vtu, files_);
}

/// The files of all processes, or none.
void MpiRun::NameFiles() {
  try {
    team_.Together([&] { files_.Commit(); });
  } catch (...) {  // of this process, or of another one
    files_.Withdraw();
    throw;
  }
}

}  // namespace

int RunOnAll(Team& team, const MpiOptions& options, const Receiver& receiver) {
  return MpiRun(team, options, receiver).Run();
}

}  // namespace kestol
