#pragma once

#include <string>

/// What the main functions of the programs have in common.

/// The words of the command line as one line.
std::string CommandLine(int argc, char** argv);

/// Answers `--help` and `--version`, or does `run`. Returns the exit status; a fault that ends the program is told on
/// standard error and gives 1.
int RunProgram(const char* name, const char* help, int argc, char** argv, int (*run)(int argc, char** argv));

/// Makes the program's folder if there is none yet, with the shipped formats; returns its path. Raises what
/// `PrepareProgramFolder` does.
std::string ReadyProgramFolder();

/// Whether a variable of the environment is 1.
bool IsSet(const char* name);
