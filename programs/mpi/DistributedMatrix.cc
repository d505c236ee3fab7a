#include "programs/mpi/DistributedMatrix.h"

#include <algorithm>
#include <cassert>

#include "algebra/Matriu.h"

namespace kestol {

OwnRows::OwnRows(const Partition& partition, const NodeGraph& graph, int dofs)
    : partition_(partition), dofs_(dofs) {
  start_.assign(1, 0);
  columns_.reserve(graph.neighbours.size() + graph.Count());
  for (std::size_t own = 0; own < graph.Count(); ++own) {
    columns_.push_back(partition.First() + static_cast<int>(own));
    for (const int node : graph.Of(own))
      columns_.push_back(partition.placeOf[static_cast<std::size_t>(node)]);
    std::sort(columns_.begin() + start_.back(), columns_.end());
    start_.push_back(static_cast<int>(columns_.size()));
  }
  values_.assign(columns_.size() * static_cast<std::size_t>(dofs * dofs), 0.0);
}

OwnRows::Block OwnRows::Find(int place, int columnPlace) {
  const auto own = static_cast<std::size_t>(place - partition_.First());
  const auto begin = columns_.begin() + start_[own], end = columns_.begin() + start_[own + 1];
  const auto column = std::lower_bound(begin, end, columnPlace);
  assert(column != end && *column == columnPlace);
  const auto B = static_cast<std::size_t>(dofs_);
  const auto length = static_cast<std::size_t>(end - begin) * B;
  const auto slot = static_cast<std::size_t>(column - begin);
  return {values_.data() + static_cast<std::size_t>(start_[own]) * B * B + slot * B, length};
}

void OwnRows::AddBlock(int firstRow, int firstCol, const Matriu& block) {
  const int row = (firstRow - 1) / dofs_, column = (firstCol - 1) / dofs_;
  const int rowPlace = partition_.placeOf[static_cast<std::size_t>(row)];
  const int columnPlace = partition_.placeOf[static_cast<std::size_t>(column)];
  const double* const from = block.data.get();
  if (partition_.IsOwn(row)) {
    const Block to = Find(rowPlace, columnPlace);
    for (int r = 0; r < dofs_; ++r)
      for (int c = 0; c < dofs_; ++c)
        to.first[static_cast<std::size_t>(r) * to.stride + static_cast<std::size_t>(c)] +=
            from[r * dofs_ + c];
  }
  if (row != column && partition_.IsOwn(column)) {
    const Block to = Find(columnPlace, rowPlace);
    for (int r = 0; r < dofs_; ++r)
      for (int c = 0; c < dofs_; ++c)
        to.first[static_cast<std::size_t>(r) * to.stride + static_cast<std::size_t>(c)] +=
            from[c * dofs_ + r];
  }
}

void OwnRows::AddToDiagonal(int equation, double value) {
  const int node = (equation - 1) / dofs_, degree = (equation - 1) % dofs_;
  const int place = partition_.placeOf[static_cast<std::size_t>(node)];
  const Block block = Find(place, place);
  block.first[static_cast<std::size_t>(degree) * (block.stride + 1)] += value;
}

void OwnRows::Preallocate(Mat matrix) const {
  const auto count = static_cast<std::size_t>(partition_.OwnCount());
  std::vector<PetscInt> own(count, 0), foreign(count, 0);
  for (std::size_t node = 0; node < count; ++node)
    for (int slot = start_[node]; slot < start_[node + 1]; ++slot) {
      const int place = columns_[static_cast<std::size_t>(slot)];
      ++(partition_.First() <= place && place < partition_.End() ? own : foreign)[node];
    }
  Check(MatXAIJSetPreallocation(matrix, dofs_, own.data(), foreign.data(), nullptr, nullptr));
}

PetscMatrix OwnRows::Assemble() {
  PetscMatrix matrix;
  const PetscInt ownRows = partition_.OwnCount() * dofs_;
  Check(MatCreate(PETSC_COMM_WORLD, matrix.Place()));
  Check(MatSetSizes(matrix, ownRows, ownRows, PETSC_DETERMINE, PETSC_DETERMINE));
  Check(MatSetType(matrix, MATAIJ));
  Check(MatSetBlockSize(matrix, dofs_));
  Preallocate(matrix);
  Check(MatSetOption(matrix, MAT_NO_OFF_PROC_ENTRIES, PETSC_TRUE));
  const double* values = values_.data();
  for (PetscInt own = 0; own < partition_.OwnCount(); ++own) {
    const auto node = static_cast<std::size_t>(own);
    const PetscInt row = partition_.First() + own, count = start_[node + 1] - start_[node];
    Check(MatSetValuesBlocked(matrix, 1, &row, count, columns_.data() + start_[node], values,
                              INSERT_VALUES));
    values += static_cast<std::ptrdiff_t>(count) * dofs_ * dofs_;
  }
  values_ = {};
  columns_ = {};
  Check(MatAssemblyBegin(matrix, MAT_FINAL_ASSEMBLY));
  Check(MatAssemblyEnd(matrix, MAT_FINAL_ASSEMBLY));
  return matrix;
}

void ProductSink::AddBlock(int firstRow, int firstCol, const Matriu& block) {
  for (int r = 1; r <= block.nrows; ++r)
    for (int c = 1; c <= block.ncols; ++c) {
      product_(firstRow + r - 1) += block(r, c) * u_(firstCol + c - 1);
      if (firstRow != firstCol) product_(firstCol + c - 1) += block(r, c) * u_(firstRow + r - 1);
    }
}

}  // namespace kestol
