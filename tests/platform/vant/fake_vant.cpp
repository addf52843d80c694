// A terminal library that does what the path of a read says.

#include <unistd.h>

#include <cstdint>
#include <cstring>

static bool registered = false;

extern "C" {
std::int16_t VantRegisterProcess(std::int16_t node) {
  usleep(node == 126 ? 100'000 : 0);
  if (registered) return -1;
  registered = true;
  return 0;
}
std::int16_t VantCloseProcess() {
  registered = false;
  return 0;
}
std::int16_t VantRead(const char* path, std::int16_t length, char* buffer, std::int16_t* count) {
  if (std::strcmp(path, "/refused") == 0) return 65;
  if (std::strcmp(path, "/slow") == 0) usleep(300'000);
  std::memset(buffer, 'w', static_cast<std::size_t>(length));
  *count = std::strncmp(path, "/count", 6) == 0 ? static_cast<std::int16_t>(length + 1) : length;
  return 0;
}
std::int16_t VantWrite(const char*, std::int16_t length, const char* buffer) {
  return buffer[length - 1] == 'e' ? 0 : 69;
}
std::int16_t VantSendKeystroke(std::int16_t terminal, std::int16_t mode, std::int16_t key) {
  return static_cast<std::int16_t>(100 * terminal + 10 * mode + key);
}
std::int16_t VantDisplayText() { return 0; }
#ifndef LACKS_AN_ENTRY
std::int16_t VantResetDisplay() { return 0; }
#endif
}
