#include "programs/mpi/InfoStream.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "programs/common/RunProgram.h"

namespace kestol {

InfoStream::InfoStream(const std::string& name) : name_(name), stream_(this) {
  constexpr mode_t kMode = 0666;  // less the umask
  file_ = name == "-" ? STDOUT_FILENO
                      : ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kMode);
  if (file_ < 0) throw ProgramError("can't open file " + name + ": " + std::strerror(errno));
}

InfoStream::~InfoStream() {
  if (file_ > STDERR_FILENO) ::close(file_);
}

InfoStream::int_type InfoStream::overflow(int_type c) {
  const char text = traits_type::to_char_type(c);
  const bool isTaken = traits_type::eq_int_type(c, traits_type::eof()) || xsputn(&text, 1) == 1;
  return isTaken ? traits_type::not_eof(c) : traits_type::eof();
}

std::streamsize InfoStream::xsputn(const char* text, std::streamsize size) {
  std::streamsize taken = 0;
  while (taken < size && reason_ == 0) {
    const ssize_t written = ::write(file_, text + taken, static_cast<std::size_t>(size - taken));
    if (written >= 0)
      taken += written;
    else if (errno != EINTR)
      reason_ = errno;
  }
  return taken;
}

void InfoStream::Close() {
  // Some systems tell of a full disk only here.
  if (file_ > STDERR_FILENO && ::close(std::exchange(file_, -1)) != 0 && reason_ == 0)
    reason_ = errno;
  if (reason_ == 0) return;
  throw ProgramError("failed writing to " + (name_ == "-" ? "standard output" : name_) + ": " +
                     std::strerror(reason_));
}

}  // namespace kestol
