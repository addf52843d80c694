#include "tools/replay/overlay_files.h"

#include <utility>

std::vector<OverlayFiles::Line> OverlayFiles::TakeLines() { return std::exchange(lines_, {}); }

std::string OverlayFiles::NameSources(std::string text) const {
  for (const auto& [path, source] : sources_) {
    for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path, at + source.size())) {
      text.replace(at, path.size(), source);
    }
  }
  return text;
}

bool OverlayFiles::Exists(const std::string& path) {
  return written_.contains(path) || sources_.contains(path) || disk_.Exists(path);
}

std::string OverlayFiles::Read(const std::string& path) {
  if (const auto written = written_.find(path); written != written_.end()) return written->second;
  const auto source = sources_.find(path);
  return disk_.Read(source == sources_.end() ? path : source->second);
}
