#include "platform/posix/file_fault.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <system_error>

#include "platform/run_time_error.h"

namespace {

struct FileFault {
  int error;
  int number;
  const char* reason;
};

constexpr FileFault kFileFaults[] = {
    {ENOENT, ErrorNumber::FileNotFound, "there is no such file or folder"},
    {ENOSPC, ErrorNumber::DiskFull, "the disk is full"},
    {EDQUOT, ErrorNumber::DiskFull, "this user's share of the disk is full"},
    {EFBIG, ErrorNumber::DiskFull, "the file would become larger than it may be"},
    {EACCES, ErrorNumber::PermissionDenied, "permission denied"},
    {EPERM, ErrorNumber::PermissionDenied, "permission denied"},
    {EROFS, ErrorNumber::PermissionDenied, "the disk is read-only"},
    {EISDIR, ErrorNumber::PathFileAccess, "it is a folder"},
    {ENOTDIR, ErrorNumber::PathFileAccess, "a part of this path is a file where a folder should be"},
    {ELOOP, ErrorNumber::PathFileAccess, "it is a link that leads in a circle"},
    {ENAMETOOLONG, ErrorNumber::PathFileAccess, "its name is too long"},
    {ENXIO, ErrorNumber::PathFileAccess, "it is not a file"},
};

}  // namespace

void RaiseFileFault(const std::string& path, const char* action, int error) {
  const auto* fault = std::find_if(std::begin(kFileFaults), std::end(kFileFaults),
                                   [&](const FileFault& row) { return row.error == error; });
  const bool known = fault != std::end(kFileFaults);
  throw RunTimeError(
      known ? fault->number : ErrorNumber::DeviceIo,
      path + " cannot be " + action + ": " + (known ? fault->reason : std::generic_category().message(error)) + ".");
}
