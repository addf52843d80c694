#include "config/opc_servers_file.h"

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "config/cfg_lines.h"
#include "core/tables.h"
#include "platform/files.h"
#include "protocol/number.h"

namespace {

constexpr std::string_view kFileName = "/Tarvex-OPC.Cfg";
constexpr std::string_view kScheme = "opc.tcp://";

/// One of `words`, in any case.
std::string Word(CfgReader& reader, std::string_view name, std::initializer_list<const char*> words) {
  const std::string text = UpperCase(Trim(reader.Text(name)));
  std::string possible;
  for (const char* const word : words) {
    if (UpperCase(word) == text) return word;
    possible += (possible.empty() ? "" : ", ") + std::string(word);
  }
  reader.Refuse(ErrorNumber::TypeMismatch, name, "possible are " + possible);
}

std::string Password(const Tables& tables, Files& files, const std::string& name) {
  const std::string path = (std::filesystem::path(tables.ProgramFolder) / name).lexically_normal().string();
  std::string password = name.empty() ? "" : files.Read(path);
  password.resize(std::min(password.find_first_of("\r\n"), password.size()));
  if (password.empty()) throw RunTimeError(ErrorNumber::FileNotFound, "Password file missing or empty: " + path);
  return password;
}

OpcServer ServerOf(const Tables& tables, Files& files, CfgReader& reader) {
  OpcServer server;
  server.endpoint = Trim(reader.Text("endpoint"));
  if (!server.endpoint.starts_with(kScheme)) {
    reader.Refuse(ErrorNumber::TypeMismatch, "endpoint", "it begins with " + std::string(kScheme));
  }
  server.mode = Word(reader, "security mode", {"None", "Sign", "SignAndEncrypt"});
  server.policy = Word(reader, "security policy", {"None", "Basic256Sha256"});
  if ((server.mode == "None") != (server.policy == "None")) {
    reader.Refuse(ErrorNumber::TypeMismatch, "security policy", "mode and policy are both None, or neither is");
  }
  if (!reader.AtEnd()) server.user = reader.Text("user");
  const std::string passwordFile(reader.AtEnd() ? "" : Trim(reader.Text("password file")));
  if (!server.user.empty()) server.password = Password(tables, files, passwordFile);
  return server;
}

}  // namespace

OpcServer ReadOpcServer(const Tables& tables, Files& files, const std::string& serverName,
                        const std::string& nodeName) {
  const std::string name(Trim(serverName));
  const std::string path = tables.ProgramFolder + std::string(kFileName);
  std::optional<OpcServer> named;
  EachCfgLine(files.Read(path), path, [&](CfgReader& reader) {
    if (!named && Trim(reader.Text("name")) == name) named = ServerOf(tables, files, reader);
  });
  if (named) return *named;
  if (name.starts_with(kScheme)) return {.endpoint = name};
  if (name.find("://") != std::string::npos) {
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       "OPC server \"" + name + "\": an endpoint begins with " + std::string(kScheme));
  }
  const std::string node(Trim(nodeName));
  return {.endpoint = std::string(kScheme) + (node.empty() ? "localhost" : node) + ":4840"};
}
