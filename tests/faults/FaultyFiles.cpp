#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

// Preloaded into a process, makes its file operations fail. The environment says how:
//   HOL_FAULT_FOLDER  only calls on what lies in this folder count
//   HOL_FAULT_LOG     file, outside of that folder, to which the name of every such call is written
//   HOL_FAULTS        list, by commas, of OPERATION:NUMBER:EFFECT: what the call of that number,
//                     counted from 1, of that operation suffers
// An effect is the number of an error; "late-" and a number: the error is told after the call was
// done; "short": half is written or read; "nothing": nothing is written or read, and no error told;
// "kill-before", "kill-halfway" and "kill-after": the process is killed.
//
// No file system of a test has access control lists of NFS version 4; here a file in the folder
// whose attribute is called "user.an.nfs4acl" shows that as such a list.

namespace {

enum Operation {
  kStat,
  kReadLink,
  kAccess,
  kOpen,
  kOpenToRead,
  kOpenToHold,
  kLock,
  kOpenFolder,
  kListFolder,
  kRead,
  kWrite,
  kChangeOwner,
  kStatOpen,
  kListAttributes,
  kGetAttribute,
  kGetList,
  kSetAttribute,
  kSetList,
  kRemoveAttribute,
  kChangePermissions,
  kSetTime,
  kSync,
  kClose,
  kRename,
  kRenameToNew,
  kLink,
  kUnlink,
  kOperations
};

constexpr std::array<std::string_view, kOperations> kNames = {
    "stat",         "readlink",    "access",   "open",          "open-read", "open-hold",
    "flock",        "open-folder", "opendir",  "read",          "write",     "fchown",
    "fstat",        "listxattr",   "getxattr", "getxattr-list", "fsetxattr", "fsetxattr-list",
    "fremovexattr", "fchmod",      "futimens", "fsync",         "close",     "rename",
    "renameat2",    "link",        "unlink"};

// Of the same length, so that one can take the place of the other.
constexpr std::string_view kServersList = "system.nfs4_acl";
constexpr std::string_view kStandIn = "user.an.nfs4acl";
static_assert(kServersList.size() == kStandIn.size());

std::array<int, kOperations> counts;

std::string_view Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

bool IsWatched(std::string_view path) {
  const std::string_view folder = Environment("HOL_FAULT_FOLDER");
  return !folder.empty() && path.substr(0, folder.size()) == folder;
}

bool IsWatched(const char* path) {
  return path != nullptr && IsWatched(std::string_view(path));
}

/// The path that a descriptor was opened by tells whether it counts.
bool IsWatched(int file) {
  std::array<char, 32> name{"/proc/self/fd/"};
  std::to_chars(name.data() + std::string_view(name.data()).size(), name.end() - 1, file);
  std::array<char, PATH_MAX> path;
  const long length = ::syscall(SYS_readlinkat, AT_FDCWD, name.data(), path.data(), path.size());
  return length > 0 && IsWatched(std::string_view(path.data(), static_cast<std::size_t>(length)));
}

void Log(std::string_view name) {
  const std::string_view log = Environment("HOL_FAULT_LOG");
  if (log.empty()) return;
  const long file =
      ::syscall(SYS_openat, AT_FDCWD, log.data(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
  ::syscall(SYS_write, file, name.data(), name.size());
  ::syscall(SYS_write, file, "\n", 1);
  ::syscall(SYS_close, file);
}

/// Cuts off what stands before the next `separator`.
std::string_view Take(std::string_view& text, char separator) {
  const std::string_view first = text.substr(0, text.find(separator));
  text.remove_prefix(first.size() < text.size() ? first.size() + 1 : text.size());
  return first;
}

int Number(std::string_view text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

/// Counts a call and returns what it suffers; empty for nothing.
std::string_view Strike(Operation operation) {
  const std::string_view name = kNames[operation];
  const int number = ++counts[operation];
  Log(name);
  std::string_view faults = Environment("HOL_FAULTS");
  while (!faults.empty()) {
    std::string_view effect = Take(faults, ',');
    const bool isOperation = Take(effect, ':') == name;
    const bool isNumber = Number(Take(effect, ':')) == number;
    if (isOperation && isNumber) return effect;
  }
  return {};
}

/// Does a call, or what is to happen instead.
template <class Call>
auto Suffer(std::string_view effect, Call call) -> decltype(call()) {
  if (effect == "kill-before") ::raise(SIGKILL);
  if (effect == "kill-after") {
    call();
    ::raise(SIGKILL);
  }
  constexpr std::string_view late = "late-";
  if (effect.starts_with(late)) {
    call();
    effect.remove_prefix(late.size());
  }
  if (effect.empty()) return call();
  errno = Number(effect);
  return -1;
}

template <class Subject, class Call>
auto Faulty(Operation operation, Subject subject, Call call) -> decltype(call()) {
  return IsWatched(subject) ? Suffer(Strike(operation), call) : call();
}

/// The function that this library stands before.
template <class Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

bool IsList(const char* attribute) {
  return std::string_view(attribute).substr(0, 7) == "system.";
}

const char* StoredAs(const char* attribute) {
  return attribute == kServersList ? kStandIn.data() : attribute;
}

Operation OpenOperation(int flags) {
  if ((flags & O_DIRECTORY) != 0) return kOpenFolder;
  if ((flags & O_ACCMODE) == O_RDWR) return kOpenToHold;
  return (flags & O_ACCMODE) == O_RDONLY ? kOpenToRead : kOpen;
}

int OpenAt(int folder, const char* path, int flags, mode_t permissions) {
  return Faulty(OpenOperation(flags), path, [=] {
    return static_cast<int>(::syscall(SYS_openat, folder, path, flags, permissions));
  });
}

mode_t PermissionsOf(int flags, va_list arguments) {
  return (flags & O_CREAT) == 0 ? 0 : va_arg(arguments, mode_t);
}

}  // namespace

// What the process calls instead of the functions of the C library.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t permissions = PermissionsOf(flags, arguments);
  va_end(arguments);
  return OpenAt(AT_FDCWD, path, flags, permissions);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t permissions = PermissionsOf(flags, arguments);
  va_end(arguments);
  return OpenAt(AT_FDCWD, path, flags, permissions);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t permissions = PermissionsOf(flags, arguments);
  va_end(arguments);
  return OpenAt(folder, path, flags, permissions);
}

int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t permissions = PermissionsOf(flags, arguments);
  va_end(arguments);
  return OpenAt(folder, path, flags, permissions);
}

int flock(int file, int operation) {
  static const auto next = Next<int(int, int)>("flock");
  return Faulty(kLock, file, [=] { return next(file, operation); });
}

DIR* opendir(const char* path) {
  static const auto next = Next<decltype(::opendir)>("opendir");
  DIR* opened = nullptr;
  const int result = Faulty(kListFolder, path, [&] {
    opened = next(path);
    return opened == nullptr ? -1 : 0;
  });
  return result == 0 ? opened : nullptr;
}

ssize_t read(int file, void* bytes, size_t size) {
  static const auto next = Next<decltype(::read)>("read");
  if (!IsWatched(file)) return next(file, bytes, size);
  const std::string_view effect = Strike(kRead);
  if (effect == "nothing") return 0;
  if (effect == "short") return next(file, bytes, size / 2);
  return Suffer(effect, [=] { return next(file, bytes, size); });
}

ssize_t write(int file, const void* bytes, size_t size) {
  static const auto next = Next<decltype(::write)>("write");
  if (!IsWatched(file)) return next(file, bytes, size);
  const std::string_view effect = Strike(kWrite);
  if (effect == "nothing") return 0;
  if (effect == "short") return next(file, bytes, size / 2);
  if (effect == "kill-halfway") {
    next(file, bytes, size / 2);
    ::raise(SIGKILL);
  }
  return Suffer(effect, [=] { return next(file, bytes, size); });
}

int stat(const char* path, struct stat* status) {
  static const auto next = Next<int(const char*, struct stat*)>("stat");
  return Faulty(kStat, path, [=] { return next(path, status); });
}

int lstat(const char* path, struct stat* status) {
  static const auto next = Next<int(const char*, struct stat*)>("lstat");
  return Faulty(kStat, path, [=] { return next(path, status); });
}

int fstat(int file, struct stat* status) {
  static const auto next = Next<int(int, struct stat*)>("fstat");
  return Faulty(kStatOpen, file, [=] { return next(file, status); });
}

ssize_t readlink(const char* path, char* link, size_t size) {
  static const auto next = Next<decltype(::readlink)>("readlink");
  return Faulty(kReadLink, path, [=] { return next(path, link, size); });
}

int access(const char* path, int mode) {
  static const auto next = Next<decltype(::access)>("access");
  return Faulty(kAccess, path, [=] { return next(path, mode); });
}

int fchown(int file, uid_t owner, gid_t group) {
  static const auto next = Next<decltype(::fchown)>("fchown");
  return Faulty(kChangeOwner, file, [=] { return next(file, owner, group); });
}

ssize_t listxattr(const char* path, char* names, size_t size) {
  static const auto next = Next<decltype(::listxattr)>("listxattr");
  return Faulty(kListAttributes, path, [=] {
    const ssize_t length = next(path, names, size);
    for (ssize_t at = 0; at < length; at += static_cast<ssize_t>(::strlen(names + at)) + 1) {
      if (names + at == kStandIn) ::memcpy(names + at, kServersList.data(), kServersList.size());
    }
    return length;
  });
}

ssize_t getxattr(const char* path, const char* name, void* value, size_t size) {
  static const auto next = Next<decltype(::getxattr)>("getxattr");
  if (!IsWatched(path)) return next(path, name, value, size);
  return Suffer(Strike(IsList(name) ? kGetList : kGetAttribute),
                [=] { return next(path, StoredAs(name), value, size); });
}

int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) {
  static const auto next = Next<decltype(::fsetxattr)>("fsetxattr");
  if (!IsWatched(file)) return next(file, name, value, size, flags);
  return Suffer(Strike(IsList(name) ? kSetList : kSetAttribute),
                [=] { return next(file, StoredAs(name), value, size, flags); });
}

int fremovexattr(int file, const char* name) {
  static const auto next = Next<decltype(::fremovexattr)>("fremovexattr");
  return Faulty(kRemoveAttribute, file, [=] { return next(file, name); });
}

int fchmod(int file, mode_t permissions) {
  static const auto next = Next<decltype(::fchmod)>("fchmod");
  return Faulty(kChangePermissions, file, [=] { return next(file, permissions); });
}

int futimens(int file, const struct timespec times[2]) {
  static const auto next = Next<int(int, const struct timespec*)>("futimens");
  return Faulty(kSetTime, file, [=] { return next(file, times); });
}

int fsync(int file) {
  static const auto next = Next<decltype(::fsync)>("fsync");
  return Faulty(kSync, file, [=] { return next(file); });
}

int fdatasync(int file) {
  static const auto next = Next<decltype(::fdatasync)>("fdatasync");
  return Faulty(kSync, file, [=] { return next(file); });
}

int close(int file) {
  static const auto next = Next<decltype(::close)>("close");
  return Faulty(kClose, file, [=] { return next(file); });
}

int rename(const char* from, const char* to) {
  static const auto next = Next<int(const char*, const char*)>("rename");
  return Faulty(kRename, to, [=] { return next(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
  static const auto next = Next<decltype(::renameat2)>("renameat2");
  return Faulty(kRenameToNew, to, [=] { return next(fromFolder, from, toFolder, to, flags); });
}

int link(const char* from, const char* to) {
  static const auto next = Next<decltype(::link)>("link");
  return Faulty(kLink, to, [=] { return next(from, to); });
}

int unlink(const char* path) {
  static const auto next = Next<decltype(::unlink)>("unlink");
  return Faulty(kUnlink, path, [=] { return next(path); });
}

}  // extern "C"
#pragma GCC visibility pop
