#pragma once

#include <string>
#include <utility>
#include <vector>

#include "algebra/Matriu.h"
#include "algebra/ReaVecT.h"
#include "algebra/StiffnessMatrix.h"

namespace kestol {

/// A solver that keeps a diary of what is asked of it and answers as told.
class ScriptedSolver : public StiffnessMatrix {
public:
  explicit ScriptedSolver(int degrees, int answer = 0) : n(degrees), result(answer) {}

  int NumDegrees() const override { return n; }
  void AddNodePair(int node1, int node2, int dofs) override {
    diary.push_back("pair " + Text(node1) + Text(node2) + Text(dofs));
  }
  void Allocate(int dofs) override { diary.push_back("allocate " + Text(dofs)); }
  double& Entry(int i, int j) override {
    diary.push_back("entry " + Text(i) + Text(j));
    return entry;
  }
  void SetZero() override { diary.push_back("zero "); }
  void AddBlock(int row, int column, const Matriu& block) override {
    diary.push_back("block " + Text(row) + Text(column));
    blocks.push_back(block);
  }
  int Factorise(std::ostream*) override { return 0; }
  int Substitute(ReaVecT& rhs, std::ostream* info) override {
    diary.push_back("solve ");
    if (info != nullptr) *info << "<solve>\n";
    loads = rhs;
    if (solution.n > 0) rhs = solution;
    return result;
  }
  void Prescribe(int dof, double value, ReaVecT&) override {
    diary.push_back("prescribe " + Text(dof) + std::to_string(value));
  }
  /// 100 times the row, so that reactions tell where they come from.
  double RowTimesVector(int dof, const ReaVecT&) const override { return 100.0 * dof; }
  void Times(const ReaVecT& x, ReaVecT& y) const override {
    y = x;
    for (int i = 1; i <= n; ++i) y(i) = RowTimesVector(i, x);
  }
  void ScaleAndShift(const ReaVecT&, double shift) override {
    diary.push_back("shift " + std::to_string(shift));
  }
  void Print(std::ostream&) const override {}
  void CopyFromYouToMat(Matriu&) const override {}
  void WriteForVemo(std::ostream&) const override {}
  void PrintInfo(std::ostream& stream) const override { stream << "<report>\n"; }

  /// The entries of the diary that begin with `word`.
  std::vector<std::string> Diary(const std::string& word) const {
    std::vector<std::string> found;
    for (const std::string& line : diary)
      if (line.rfind(word + ' ', 0) == 0) found.push_back(line.substr(word.size() + 1));
    return found;
  }

  int n;
  int result;        ///< what Solve gives
  ReaVecT solution;  ///< what Solve leaves, when not empty
  ReaVecT loads;     ///< what Solve was handed
  double entry = 0.0;
  std::vector<Matriu> blocks;
  std::vector<std::string> diary;

private:
  static std::string Text(int number) { return std::to_string(number) + ' '; }
};

}  // namespace kestol
