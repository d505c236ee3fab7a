// Takes the place of main/ErrorExit.cc in the test programs: a refusal becomes an exception, so
// that one process can look at many of them.
#include "main/ErrorChannel.h"
#include "tests/support/FatalExit.h"

namespace {

[[noreturn]] void Throw(ErrorChannel& channel, int status) {
  FatalExit exit{status, channel.Text()};
  channel.Clear();
  throw exit;
}

}  // namespace

void ErrorExit(ErrorChannel& channel) {
  Throw(channel, 2);
}

void KernelExit(ErrorChannel& channel) {
  Throw(channel, 1);
}
