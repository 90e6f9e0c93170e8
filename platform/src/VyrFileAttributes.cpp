#include "VyrFileAttributes.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string_view>

namespace {

constexpr const char* kAccessControlList = "system.posix_acl_access";
/// The list of a file on a server of NFS, version 4.
constexpr const char* kServersAccessControlList = "system.nfs4_acl";
constexpr std::string_view kUserAttributes = "user.";
// Linux keeps neither a longer list of attributes nor a longer value.
constexpr std::size_t kMostBytesOfAttribute = 65536;

/// The process or the file system cannot do such a thing at all; it has not failed to. An unknown
/// owner ("invalid") is one whom a container does not know.
bool IsNotAllowed(int error) {
  return error == EPERM || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

/// Only root may give a file away; a group can be kept by its members. `now` receives the status
/// that the new file has then.
bool TakeOverOwner(int file, const struct stat& replaced, struct stat& now) {
  constexpr auto keep = static_cast<uid_t>(-1);
  if (::fchown(file, replaced.st_uid, replaced.st_gid) != 0) {
    if (!IsNotAllowed(errno)) return false;
    if (::fchown(file, keep, replaced.st_gid) != 0 && !IsNotAllowed(errno)) return false;
  }
  return ::fstat(file, &now) == 0;
}

mode_t Permissions(const struct stat& replaced, const struct stat& now) {
  mode_t permissions = replaced.st_mode & 07777;
  if (now.st_uid != replaced.st_uid) permissions &= ~static_cast<mode_t>(S_ISUID);
  if (now.st_gid != replaced.st_gid) {
    const mode_t others = permissions & S_IRWXO;
    permissions = (permissions & ~static_cast<mode_t>(S_ISGID | S_IRWXG)) | others << 3;
  }
  return permissions;
}

bool HasPermissions(const struct stat& status, mode_t permissions) {
  return (status.st_mode & 07777) == permissions;
}

/// A server may drop entries of an access control list when permissions are set, were they those
/// that the list has brought along.
bool HasPermissionsOfList(int file, mode_t permissions) {
  struct stat now {};
  return ::fstat(file, &now) == 0 && HasPermissions(now, permissions);
}

bool TakeOverPermissions(int file, const struct stat& replaced, const struct stat& now) {
  const mode_t permissions = Permissions(replaced, now);
  if (::fchmod(file, permissions) == 0) return true;
  // A file system without permissions of its own shows the same ones on every file.
  return IsNotAllowed(errno) && HasPermissions(now, permissions);
}

/// The names of a file's attributes, each closed by a zero; empty when it cannot have any, nothing
/// when they cannot be read.
std::optional<std::string> AttributeNames(const std::string& path) {
  std::string names(kMostBytesOfAttribute, '\0');
  const ssize_t length = ::listxattr(path.c_str(), names.data(), names.size());
  if (length < 0 && errno != EOPNOTSUPP && errno != ENOSYS) return std::nullopt;
  names.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return names;
}

bool IsAccessControlList(std::string_view name) {
  return name == kAccessControlList || name == kServersAccessControlList;
}

bool TakeOverAttribute(int file, const std::string& replaced, const char* name) {
  // Without its list a file would be open to its whole group.
  const bool mayBeLost = !IsAccessControlList(name);
  std::string value(kMostBytesOfAttribute, '\0');
  const ssize_t length = ::getxattr(replaced.c_str(), name, value.data(), value.size());
  if (length < 0) {
    const bool isGone = errno == ENODATA;  // since it was listed
    const bool isNotForUs = errno == EACCES || IsNotAllowed(errno);
    return isGone || (mayBeLost && isNotForUs);
  }
  if (::fsetxattr(file, name, value.data(), static_cast<std::size_t>(length), 0) == 0) return true;
  return mayBeLost && IsNotAllowed(errno);
}

/// `hasServersList` receives whether the replaced file has such a list.
bool TakeOverExtendedAttributes(int file, const std::string& replaced, bool& hasServersList) {
  // A folder may have given a list of its own to the new file.
  const bool hasNoList =
      ::fremovexattr(file, kAccessControlList) == 0 || errno == ENODATA || IsNotAllowed(errno);
  if (!hasNoList) return false;
  const std::optional<std::string> names = AttributeNames(replaced);
  if (!names) return false;
  for (std::size_t at = 0; at < names->size();) {
    const char* name = names->data() + at;
    const std::string_view view = name;
    at += view.size() + 1;
    hasServersList |= view == kServersAccessControlList;
    const bool isKept = IsAccessControlList(view) || view.starts_with(kUserAttributes);
    if (isKept && !TakeOverAttribute(file, replaced, name)) return false;
  }
  return true;
}

}  // namespace

bool VyrTakeOverAttributes(int file, const std::string& replaced, const struct stat& status) {
  struct stat now {};
  bool hasServersList = false;
  if (!TakeOverOwner(file, status, now)) return false;
  // Permissions come last: a change of the owner takes set-id bits away, and a list contains
  // permissions.
  if (!TakeOverExtendedAttributes(file, replaced, hasServersList)) return false;
  if (hasServersList && HasPermissionsOfList(file, Permissions(status, now))) return true;
  return TakeOverPermissions(file, status, now);
}
