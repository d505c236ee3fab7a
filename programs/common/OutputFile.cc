#include "programs/common/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <unordered_set>

#include "programs/common/RunProgram.h"

namespace kestol {

namespace {

constexpr mode_t kMode = 0666;  ///< less the umask

bool StatusOf(const std::string& name, struct stat& status) {
  return ::stat(name.c_str(), &status) == 0;
}

bool IsSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

void RefuseInputs(const std::string& name, const std::vector<std::string>& inputs) {
  struct stat target {
  }, input{};
  if (!StatusOf(name, target)) return;
  const auto found = std::find_if(inputs.begin(), inputs.end(), [&](const std::string& other) {
    return StatusOf(other, input) && IsSameFile(target, input);
  });
  if (found != inputs.end()) throw ProgramError("the output " + name + " is the input " + *found);
}

/// The file that a link names, so that the link survives the renaming; it need not be there yet.
std::string BehindLinks(const std::string& name) {
  constexpr int kMostLinks = 40;  // as the system follows
  std::filesystem::path target = name;
  for (int k = 0; k < kMostLinks; ++k) {
    std::error_code none;
    const auto next = std::filesystem::read_symlink(target, none);
    if (none) break;
    target = target.parent_path() / next;  // an absolute one replaces it
  }
  return target.string();
}

}  // namespace

OutputFile::OutputFile(const std::string& name, const std::vector<std::string>& inputs)
    : name_(name) {
  if (name == "-") {
    file_ = STDOUT_FILENO;
    return;
  }
  RefuseInputs(name, inputs);
  struct stat status {};
  if (StatusOf(name, status) && !S_ISREG(status.st_mode)) {
    file_ = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0) Fail("can't open file ");
    return;
  }
  target_ = BehindLinks(name);
  OpenBeside();
  // A file that is replaced keeps its permissions.
  if (StatusOf(target_, status) && ::fchmod(file_, status.st_mode & 07777) != 0)
    Fail("can't open file ");
}

OutputFile::~OutputFile() {
  Discard();
}

void OutputFile::Discard() {
  if (file_ > STDERR_FILENO) ::close(file_);
  file_ = -1;
  if (untilRenamed_) ::unlink(temporary_.c_str());
  untilRenamed_.reset();
}

void OutputFile::OpenBeside() {
  // A file that exists must allow it, although renaming would not ask.
  if (::access(target_.c_str(), F_OK) == 0 && ::access(target_.c_str(), W_OK) != 0)
    Fail("can't open file ");
  untilRenamed_.emplace();  // before the file is there: later nothing may fail
  for (int attempt = 0; attempt < 100; ++attempt) {
    temporary_ =
        target_ + '.' + std::to_string(::getpid()) + '-' + std::to_string(attempt) + ".tmp";
    const SignalsWait whileItIsNoted;
    file_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
    if (file_ >= 0) return untilRenamed_->Is(temporary_.c_str());
    if (errno != EEXIST) break;
  }
  untilRenamed_.reset();
  Fail("can't open file ");
}

void OutputFile::HandOver(const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(file_, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) Fail("failed writing to ");
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

// What is skipped at the very end needs the size to be set: nothing is written behind it.
bool OutputFile::SkipZeros(std::size_t size) {
  if (temporary_.empty()) return false;
  const off_t end = ::lseek(file_, static_cast<off_t>(size), SEEK_CUR);
  if (end < 0 || ::ftruncate(file_, end) != 0) Fail("failed writing to ");
  return true;
}

std::string OutputFile::Path() const {
  if (name_ == "-") return "/dev/stdout";
  return temporary_.empty() ? name_ : temporary_;
}

void OutputFile::Close() {
  Flush();
  FreeBuffer();
  if (file_ <= STDERR_FILENO) return;
  const int file = file_;
  file_ = -1;
  if (::close(file) != 0) Fail("failed writing to ");
}

void OutputFile::Commit() {
  Close();
  if (!untilRenamed_ || isNamed_) return;
  isSwapped_ = Swap();
  if (!isSwapped_) {
    if (std::rename(temporary_.c_str(), target_.c_str()) != 0) Fail("failed writing to ");
    untilRenamed_.reset();
  }
  isNamed_ = true;
}

// What is replaced waits under the temporary name until the run has ended well, where the file
// system can do that.
bool OutputFile::Swap() const {
  struct stat status {};
  return ::lstat(target_.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), RENAME_EXCHANGE) == 0;
}

void OutputFile::Withdraw() {
  if (!isNamed_) return;
  if (isSwapped_)
    std::rename(temporary_.c_str(), target_.c_str());
  else
    ::unlink(target_.c_str());
}

void OutputFile::Fail(const char* what) {
  const int reason = errno;
  Discard();
  throw ProgramError(what + ShownName() + ": " + std::strerror(reason));
}

bool HasPlace(const std::string& name) {
  struct stat target {
  }, standard{};
  if (name == "-") return false;
  if (!StatusOf(name, target)) return true;
  if (!S_ISREG(target.st_mode)) return false;
  return ::fstat(STDOUT_FILENO, &standard) != 0 || !IsSameFile(target, standard);
}

void RefuseSharedNames(const std::vector<std::string>& names) {
  std::unordered_set<std::string> places;
  for (const std::string& name : names) {
    struct stat status {};
    const bool direct = name != "-" && StatusOf(name, status) && !S_ISREG(status.st_mode);
    if (direct) continue;  // devices may take more than one
    std::error_code failed;
    const auto place =
        std::filesystem::weakly_canonical(std::filesystem::absolute(BehindLinks(name)), failed)
            .string();
    if (places.insert(place).second) continue;
    throw ProgramError(name == "-" ? "two outputs go to standard output"
                                   : "two outputs have the name " + name);
  }
}

}  // namespace kestol
