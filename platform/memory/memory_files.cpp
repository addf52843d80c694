#include "platform/memory/memory_files.h"

#include "platform/run_time_error.h"

void MemoryFiles::Check(const std::string& path) const {
  const auto fault = broken.find(path);
  if (fault != broken.end()) throw RunTimeError(fault->second, "Cannot use " + path);
}

std::string MemoryFiles::OpenAndRead(const std::string& path) {
  Check(path);
  return content[path];
}

std::string MemoryFiles::Read(const std::string& path) {
  Check(path);
  const auto file = content.find(path);
  return file == content.end() ? std::string{} : file->second;
}

void MemoryFiles::Replace(const std::string& path, std::string_view text) {
  Check(path);
  content[path] = text;
}

void MemoryFiles::Append(const std::string& path, std::string_view line) {
  Check(path);
  content[path] += line;
}
