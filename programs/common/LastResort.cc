// What every companion does when it is ended in the midst of its work, from before its first object
// is made. Part of each program and of no library: a host of the library has ways of its own.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "programs/common/RunProgram.h"
#include "programs/common/TemporaryFiles.h"

namespace kestol {

namespace {

/// An exception that nothing catches: while the objects outside functions are made, and within
/// what must not throw.
[[noreturn]] void EndUncaught() {
  RemoveTemporaryFiles();
  try {
    if (std::current_exception()) std::rethrow_exception(std::current_exception());
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s: error: %s\n", program_invocation_short_name, kNoMemory);
    std::_Exit(kFailed);
  } catch (...) {
  }
  std::abort();
}

extern "C" void EndBySignal(int number) {
  RemoveTemporaryFiles();
  ::raise(number);  // back to what it does by itself, which is to end the process
}

[[gnu::constructor(101)]] void Prepare() {
  std::set_terminate(EndUncaught);
  for (const int number : kEndingSignals) {
    struct sigaction action {};
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action.sa_handler = EndBySignal;
    action.sa_flags = SA_RESETHAND | SA_NODEFER;
    ::sigaction(number, &action, nullptr);
  }
  // A file that may not grow is a write that fails, and is told.
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace

}  // namespace kestol
