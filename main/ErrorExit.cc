#include <cstdlib>

#include "main/ErrorChannel.h"

namespace kestol {

void ErrorExit(const FatalError& refusal) {
  std::FILE* const file = refusal.ErrorFile();
  std::fprintf(file != nullptr ? file : stdout, "%s", refusal.what());
  std::exit(refusal.Status());
}

void HeapExit() {
  error.Clear();
  error.message << "Not space available on heap";
  ErrorExit(FatalError(error, kRefused));
}

}  // namespace kestol
