#include "tests/tools/replay/recorded_capture.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "tools/replay/options.h"

namespace {

namespace fs = std::filesystem;
const fs::path kFolder = TEST_DATA_FOLDER;

std::string InFolder(const std::string& path) {
  return path.empty() ? path : (kFolder / path).lexically_normal().string();
}

/// What stands behind a mark in the comments of a capture.
std::string Tagged(const std::string& path, const std::string& mark) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(mark)) return line.substr(mark.size());
  }
  return {};
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

}  // namespace

RecordedCapture::RecordedCapture(std::string captureName) : name(std::move(captureName)) {
  setup = ReadReplayOptions(Words(Tagged(Path(), "# replay:"))).setup;
  for (std::string* path : {&setup.home, &setup.format, &setup.channel}) *path = InFolder(*path);
  std::istringstream hex(Tagged(Path(), "# good:"));
  good = std::get<ArrivingBytes>(CaptureReader(hex, name).Next().value_or(ArrivingBytes{})).bytes;
}

std::string RecordedCapture::Path() const { return InFolder(name + ".capture"); }
std::string RecordedCapture::ExpectedPath() const { return InFolder(name + ".expected.json"); }

std::vector<std::string> RecordedCapture::Arrivals() const {
  std::ifstream file(Path());
  CaptureReader capture(file, Path());
  std::vector<std::string> arrivals;
  while (const auto step = capture.Next()) {
    if (const auto* arriving = std::get_if<ArrivingBytes>(&*step)) arrivals.push_back(arriving->bytes);
  }
  return arrivals;
}

std::vector<std::string> CaptureNames() {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".capture") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}
