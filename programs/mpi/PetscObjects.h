#pragma once

#include <petscksp.h>

#include <stdexcept>
#include <string>
#include <utility>

namespace kestol {

/// What PETSc could not do, in its own words.
class PetscFailure : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Throws for the code of a call that failed; memory that is not there is std::bad_alloc.
void Check(PetscErrorCode code);

/// One object of PETSc: a matrix, vector, solver. All processes make and release it together.
template <class Object, PetscErrorCode (*Release)(Object*)>
class PetscHandle {
public:
  PetscHandle() = default;
  PetscHandle(PetscHandle&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  PetscHandle& operator=(PetscHandle&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  PetscHandle(const PetscHandle&) = delete;
  PetscHandle& operator=(const PetscHandle&) = delete;
  ~PetscHandle() { Reset(); }

  void Reset() {
    if (object_ != nullptr) static_cast<void>(Release(&object_));
    object_ = nullptr;
  }
  operator Object() const { return object_; }
  /// For the calls that make it.
  Object* Place() {
    Reset();
    return &object_;
  }

private:
  Object object_ = nullptr;
};

using PetscMatrix = PetscHandle<Mat, MatDestroy>;
using PetscVector = PetscHandle<Vec, VecDestroy>;
using PetscSolver = PetscHandle<KSP, KSPDestroy>;

/// PETSc from here to the end of the scope, with the options of PETSC_OPTIONS and `options`. It
/// neither prints errors nor catches signals.
class PetscSession {
public:
  explicit PetscSession(const std::string& options);
  ~PetscSession();
  PetscSession(const PetscSession&) = delete;
  PetscSession& operator=(const PetscSession&) = delete;

  /// The words of `options` that begin with '-' and that nothing has asked for so far.
  std::string UnusedOptions() const;

private:
  std::string options_;
};

/// Sets an option of PETSc unless it is set already.
void SetDefaultOption(const char* name, const char* value);

}  // namespace kestol
