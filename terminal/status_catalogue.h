#pragma once

#include <string>
#include <string_view>

/// What a status of the terminal library means. Codes of the library itself are small numbers; what it reports of the
/// network are the codes of Windows Sockets.
struct StatusMeaning {
  std::string_view name;
  std::string_view title;  ///< of the message box
  std::string body;
};

/// The meaning of a status that is not success; a code without one is an unknown error.
StatusMeaning MeaningOf(int status);
