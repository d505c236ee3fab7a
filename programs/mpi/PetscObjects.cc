#include "programs/mpi/PetscObjects.h"

#include <cctype>
#include <new>
#include <sstream>

namespace kestol {

void Check(PetscErrorCode code) {
  if (code == 0) return;
  if (code == PETSC_ERR_MEM) throw std::bad_alloc();
  const char* text = nullptr;
  char* specific = nullptr;
  PetscErrorMessage(code, &text, &specific);
  std::string message = "PETSc: ";
  message += text != nullptr ? text : "error " + std::to_string(static_cast<int>(code));
  if (specific != nullptr && *specific != '\0') message += std::string(": ") + specific;
  throw PetscFailure(message);
}

PetscSession::PetscSession(const std::string& options) : options_(options) {
  // Without handlers of its own: they would take the place of those that this program has.
  Check(PetscOptionsSetValue(nullptr, "-no_signal_handler", "true"));
  Check(PetscInitialize(nullptr, nullptr, nullptr, nullptr));
  Check(PetscPushErrorHandler(PetscReturnErrorHandler, nullptr));
  if (!options.empty()) Check(PetscOptionsInsertString(nullptr, options.c_str()));
}

PetscSession::~PetscSession() {
  static_cast<void>(PetscOptionsSetValue(nullptr, "-options_left", "no"));
  static_cast<void>(PetscFinalize());
}

std::string PetscSession::UnusedOptions() const {
  std::string unused;
  std::istringstream words(options_);
  for (std::string word; words >> word;) {
    if (word.size() < 2 || word[0] != '-' || std::isdigit(static_cast<unsigned char>(word[1])) != 0)
      continue;
    PetscBool used = PETSC_FALSE;
    Check(PetscOptionsUsed(nullptr, word.c_str() + 1, &used));
    if (used == PETSC_FALSE) unused += (unused.empty() ? "" : " ") + word;
  }
  return unused;
}

void SetDefaultOption(const char* name, const char* value) {
  PetscBool set = PETSC_FALSE;
  Check(PetscOptionsHasName(nullptr, nullptr, name, &set));
  if (set == PETSC_FALSE) Check(PetscOptionsSetValue(nullptr, name, value));
}

}  // namespace kestol
