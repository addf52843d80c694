#pragma once

#include <string>

#include "platform/opc_server.h"

class Files;
struct Tables;

/// The server that `serverName` stands for. A line of `Tarvex-OPC.Cfg` that begins with the name tells all of it: name,
/// endpoint, security mode, policy, and for a server that asks who it is, user and password file (looked for in the
/// program's folder; its first line is the password). Without a line a name that holds "://" is the endpoint itself,
/// and any other one means port 4840 of `nodeName`, or of this machine. Raises as `CfgReader` does for a damaged line,
/// since nobody knows what it was to say, and what reading raises; 53 for a password file that is missing or empty, 13
/// for an endpoint of another kind.
OpcServer ReadOpcServer(const Tables& tables, Files& files, const std::string& serverName, const std::string& nodeName);
