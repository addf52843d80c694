#include "app/shipped_formats.h"

#include <filesystem>
#include <system_error>

std::string ShippedFormats() {
  std::error_code unreadable;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", unreadable);
  const std::filesystem::path installed = program.parent_path().parent_path() / "share/tarvex/formats";
  if (std::filesystem::is_directory(installed, unreadable)) return installed.string();
  return TARVEX_SOURCE_FORMATS;
}
