#pragma once

struct Engine;
struct SetupCalls;

/// What a program that changes settings files may ask of `engine`, which must outlive the calls.
SetupCalls SetupCallsOf(Engine& engine);
