#include <cmath>
#include <sstream>

#include "algebra/ConjugateGradient.h"
#include "algebra/ILUPreconditioner.h"
#include "algebra/SparseMatrix.h"
#include "tests/support/FlushCounter.h"

namespace kestol {

namespace {

/// M = I.
class NoPreconditioner : public Preconditioner {
public:
  explicit NoPreconditioner(int n) : n_(n) {}
  void Solve(const double* r, double* z) const override { std::copy(r, r + n_, z); }
  void TransposedSolve(const double* r, double* z) const override { Solve(r, z); }
  void New_Matrix(const SparseMatrix& /*A*/) override {}

private:
  int n_;
};

SparseMatrix Diagonal(const std::vector<double>& diagonal) {
  const int n = static_cast<int>(diagonal.size());
  SparseMatrix A(n, std::vector<int>(n, 1));
  for (int i = 0; i < n; ++i) A.Add(i, i, diagonal[i]);
  return A;
}

/// 2 on the diagonal, -1 beside it.
SparseMatrix Chain(int n) {
  SparseMatrix A(n, std::vector<int>(n, 3));
  for (int i = 0; i < n; ++i) {
    A.Add(i, i, 2.0);
    if (i > 0) A.Add(i, i - 1, -1.0);
    if (i + 1 < n) A.Add(i, i + 1, -1.0);
  }
  return A;
}

struct Trial {
  int flag = -1;
  int limit;
  double tolerance;
  std::vector<double> x;
  std::string info;

  Trial(const SparseMatrix& A, const std::vector<double>& b, int iterations, double target,
        std::vector<double> start = {})
      : limit(iterations), tolerance(target), x(std::move(start)) {
    if (x.empty()) x.assign(b.size(), 0.0);
    std::ostringstream stream;
    flag = ConjugateGradient(A, x.data(), b.data(), NoPreconditioner(A.rows), limit, tolerance,
                             &stream);
    info = stream.str();
  }
};

TEST(ConjugateGradient, NoLoadsEndAtIterationZero) {
  const Trial run(Diagonal({1.0, 2.0}), {0.0, 0.0}, 5, 1e-10);
  EXPECT_EQ(run.flag, 0);
  EXPECT_EQ(run.limit, 0);
  EXPECT_EQ(run.tolerance, 0.0);
  EXPECT_EQ(run.info, "iteration number 0 OK resid=0 tol=1e-10\n");
}

TEST(ConjugateGradient, WithoutLoadsTheResidualIsAbsolute) {
  const Trial run(Diagonal({4.0}), {0.0}, 0, 1e-10, {0.5});
  EXPECT_EQ(run.flag, 1);
  EXPECT_EQ(run.tolerance, 2.0);
}

TEST(ConjugateGradient, TheSolutionAsStartEndsAtIterationZero) {
  const Trial run(Diagonal({2.0, 4.0}), {2.0, 8.0}, 5, 1e-3, {1.0, 2.0});
  EXPECT_EQ(run.flag, 0);
  EXPECT_EQ(run.limit, 0);
  EXPECT_EQ(run.info, "iteration number 0 OK resid=0 tol=0.001\n");
}

TEST(ConjugateGradient, ConvergesInAsManyIterationsAsThereAreEigenvalues) {
  const Trial run(Diagonal({1.0, 2.0, 4.0, 2.0}), {1.0, 1.0, 1.0, 1.0}, 10, 1e-10);
  EXPECT_EQ(run.flag, 0);
  EXPECT_EQ(run.limit, 3);
  EXPECT_NEAR(run.x[2], 0.25, 1e-12);
  EXPECT_LE(run.tolerance, 1e-10);
  EXPECT_THAT(run.info, testing::StartsWith("Converged it number. 3 resid="));
  EXPECT_THAT(run.info, testing::EndsWith(" tol=1e-10\n"));
}

// One step on diag(1, 3) from zero with b = (1, 1): alpha = 2/4, r = (1/2, -1/2), resid = 1/2.
TEST(ConjugateGradient, StopsAtTheLimitWithTheResidualReached) {
  const Trial run(Diagonal({1.0, 3.0}), {1.0, 1.0}, 1, 1e-10);
  EXPECT_EQ(run.flag, 1);
  EXPECT_EQ(run.limit, 1);
  EXPECT_DOUBLE_EQ(run.tolerance, 0.5);
  EXPECT_DOUBLE_EQ(run.x[0], 0.5);
  EXPECT_EQ(run.info, "");
}

TEST(ConjugateGradient, AResidualEqualToTheToleranceIsConverged) {
  const Trial run(Diagonal({1.0, 3.0}), {1.0, 1.0}, 1, 0.5);
  EXPECT_EQ(run.flag, 0);
  EXPECT_EQ(run.info, "Converged it number. 1 resid=0.5 tol=0.5\n");
}

TEST(ConjugateGradient, ALimitBelowOneStopsBeforeTheFirstStep) {
  for (int limit : {0, -3}) {
    const Trial run(Diagonal({1.0, 3.0}), {1.0, 1.0}, limit, 1e-10);
    EXPECT_EQ(run.flag, 1);
    EXPECT_EQ(run.limit, limit);
    EXPECT_EQ(run.tolerance, 1.0);
    EXPECT_EQ(run.x[0], 0.0);
  }
}

TEST(ConjugateGradient, ReportsAndFlushesEveryTenthIteration) {
  const SparseMatrix A = Chain(60);
  std::vector<double> b(60, 0.0), x(60, 0.0);
  b.back() = 1.0;
  int limit = 25;
  double tolerance = 1e-10;
  FlushCounter info;
  EXPECT_EQ(ConjugateGradient(A, x.data(), b.data(), NoPreconditioner(60), limit, tolerance, &info),
            1);
  EXPECT_THAT(info.Text(), testing::MatchesRegex("iteration number 10 resid=[^ ]+ tol=1e-10\n"
                                                 "iteration number 20 resid=[^ ]+ tol=1e-10\n"));
  EXPECT_EQ(info.Flushes(), 2);
}

TEST(ConjugateGradient, TheReportShowsTheResidualBeforeTheIteration) {
  const SparseMatrix A = Chain(60);
  std::vector<double> b(60, 0.0);
  b.back() = 1.0;
  const Trial nine(A, b, 9, 1e-10);
  const Trial ten(A, b, 10, 1e-10);
  std::ostringstream line;
  line << "iteration number 10 resid=" << nine.tolerance << " tol=1e-10\n";
  EXPECT_EQ(ten.info, line.str());
}

TEST(ConjugateGradient, LeavesAtTheFirstResidualThatIsNotANumber) {
  const Trial zeroCurvature(Diagonal({1.0, -1.0}), {1.0, 1.0}, 1000, 1e-10);  // p.q = 0
  EXPECT_EQ(zeroCurvature.flag, 1);
  EXPECT_EQ(zeroCurvature.info, "");
  const Trial badLoad(Diagonal({1.0}), {std::nan("")}, 1000, 1e-10);
  EXPECT_EQ(badLoad.flag, 1);
  EXPECT_TRUE(std::isnan(badLoad.tolerance));
  EXPECT_EQ(badLoad.info, "");
}

TEST(ConjugateGradient, ChainOfSpringsIsLinear) {
  std::vector<double> b(20, 0.0);
  b.back() = 1.0;
  const SparseMatrix A = Chain(20);
  std::vector<double> x(20, 0.0);
  int limit = 100;
  double tolerance = 1e-12;
  const ILUPreconditioner M(A);  // exact: one iteration
  EXPECT_EQ(ConjugateGradient(A, x.data(), b.data(), M, limit, tolerance, nullptr), 0);
  EXPECT_EQ(limit, 1);
  for (int i = 0; i < 20; ++i) EXPECT_NEAR(x[i], (i + 1) / 21.0, 1e-12);
}

}  // namespace

}  // namespace kestol
