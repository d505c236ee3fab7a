// A disk that fills up, as a library that is loaded before a program: of the calls that write below
// the folder KESTOL_DISK, or to standard output, the one whose number KESTOL_FULL_AT holds, counted
// from 1, finds no space, and all after it. Counted are opening for writing, writing, setting size
// or mode, closing and renaming. At the call KESTOL_SIGNAL_AT the process gets the signal
// KESTOL_SIGNAL. How many calls and allocations a run makes stands in the file KESTOL_FAULT_COUNTS
// when it ends.
#include <dlfcn.h>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "FailingHeap.h"

namespace {

long calls = 0;

template <class Function>
Function Real(const char* name, Function) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

const char* Disk() {
  static const char* const folder = std::getenv("KESTOL_DISK");
  return folder;
}

bool LiesOnDisk(std::string_view path) {
  const std::string_view folder = Disk();
  return path.starts_with(folder) || !path.starts_with('/');
}

/// Whether the open file is one whose calls count.
bool Counts(int file) {
  if (Disk() == nullptr || file == STDERR_FILENO) return false;
  if (file == STDOUT_FILENO) return true;
  const int flags = ::fcntl(file, F_GETFL);
  if (flags < 0 || (flags & O_ACCMODE) == O_RDONLY) return false;
  char link[64], path[4096];
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const ssize_t length = ::readlink(link, path, sizeof path);
  return length > 0 && path[0] == '/' &&
         LiesOnDisk(std::string_view(path, static_cast<std::size_t>(length)));
}

long NumberIn(const char* variable) {
  const char* const text = std::getenv(variable);
  return text != nullptr ? std::strtol(text, nullptr, 10) : 0;
}

bool IsFull() {
  static const long fullAt = NumberIn("KESTOL_FULL_AT"), signalAt = NumberIn("KESTOL_SIGNAL_AT"),
                    number = NumberIn("KESTOL_SIGNAL");
  if (++calls == signalAt) ::raise(static_cast<int>(number));
  if (fullAt == 0 || calls < fullAt) return false;
  errno = ENOSPC;
  return true;
}

using OpenFile = int (*)(const char*, int, ...);

int Open(const char* name, const char* path, int flags, mode_t mode) {
  const bool counts = Disk() != nullptr && (flags & O_ACCMODE) != O_RDONLY && LiesOnDisk(path);
  if (counts && IsFull()) return -1;
  return Real<OpenFile>(name, nullptr)(path, flags, mode);
}

mode_t ModeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

struct Faults {
  // What the program starts runs on a sound machine.
  Faults() { ::unsetenv("LD_PRELOAD"); }
  ~Faults() {
    const char* const name = std::getenv("KESTOL_FAULT_COUNTS");
    if (name == nullptr) return;
    char text[64];
    const int length = std::snprintf(text, sizeof text, "%ld %ld\n", kestol_allocations(), calls);
    const int file =
        Real<OpenFile>("open", nullptr)(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    Real("write", &::write)(file, text, static_cast<std::size_t>(length));
    Real("close", &::close)(file);
  }
} faults;

}  // namespace

extern "C" {

int MPI_Init(int* argc, char*** argv);

/// Libraries of a parallel program allocate before its first line: they are not the ones on trial.
int MPI_Init(int* argc, char*** argv) {
  const int result = Real("MPI_Init", &MPI_Init)(argc, argv);
  kestol_fail_as_told();
  return result;
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open("open64", path, flags, mode);
}

FILE* fopen(const char* path, const char* mode) {
  const bool counts = Disk() != nullptr && *mode != 'r' && LiesOnDisk(path);
  if (counts && IsFull()) return nullptr;
  return Real("fopen", &::fopen)(path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  const bool counts = Disk() != nullptr && *mode != 'r' && LiesOnDisk(path);
  if (counts && IsFull()) return nullptr;
  return Real("fopen64", &::fopen64)(path, mode);
}

ssize_t write(int file, const void* data, size_t size) {
  if (Counts(file) && IsFull()) return -1;
  return Real("write", &::write)(file, data, size);
}

ssize_t writev(int file, const iovec* pieces, int count) {
  if (Counts(file) && IsFull()) return -1;
  return Real("writev", &::writev)(file, pieces, count);
}

size_t fwrite(const void* data, size_t size, size_t count, FILE* stream) {
  if (Counts(::fileno(stream)) && IsFull()) return 0;
  return Real("fwrite", &::fwrite)(data, size, count, stream);
}

int fputs(const char* text, FILE* stream) {
  if (Counts(::fileno(stream)) && IsFull()) return EOF;
  return Real("fputs", &::fputs)(text, stream);
}

int puts(const char* text) {
  if (Counts(STDOUT_FILENO) && IsFull()) return EOF;
  return Real("puts", &::puts)(text);
}

int putchar(int c) {
  if (Counts(STDOUT_FILENO) && IsFull()) return EOF;
  return Real("putchar", &::putchar)(c);
}

int fflush(FILE* stream) {
  const bool writes = stream != nullptr && ::__fpending(stream) > 0;
  if (writes && Counts(::fileno(stream)) && IsFull()) return EOF;
  return Real("fflush", &::fflush)(stream);
}

int ftruncate(int file, off_t size) noexcept {
  if (Counts(file) && IsFull()) return -1;
  return Real("ftruncate", &::ftruncate)(file, size);
}

int fchmod(int file, mode_t mode) noexcept {
  if (Counts(file) && IsFull()) return -1;
  return Real("fchmod", &::fchmod)(file, mode);
}

int fsync(int file) {
  if (Counts(file) && IsFull()) return -1;
  return Real("fsync", &::fsync)(file);
}

/// The file is closed in any case, as on a disk that is full only then.
int close(int file) {
  const bool fails = Counts(file) && IsFull();
  const int result = Real("close", &::close)(file);
  if (!fails) return result;
  errno = ENOSPC;
  return -1;
}

int rename(const char* from, const char* to) noexcept {
  if (Disk() != nullptr && LiesOnDisk(to) && IsFull()) return -1;
  return Real("rename", &::rename)(from, to);
}

}  // extern "C"
