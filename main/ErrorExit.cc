#include <cstdlib>

#include "main/ErrorChannel.h"

namespace {

[[noreturn]] void WriteAndEnd(ErrorChannel& channel, int status) {
  std::fprintf(channel.file != nullptr ? channel.file : stdout, "%s", channel.Text());
  std::exit(status);
}

}  // namespace

void ErrorExit(ErrorChannel& channel) {
  WriteAndEnd(channel, 2);
}

void KernelExit(ErrorChannel& channel) {
  WriteAndEnd(channel, 1);
}
