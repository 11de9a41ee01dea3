// What the benchmark programs share: one xpsim world with the plugin's modules in a running
// interpreter, the bench script's objects, and the harness that times calls made in a loop.
#pragma once

#include <benchmark/benchmark.h>

#include <Python.h>

#include <string>

// Prepares a simulator folder, starts the interpreter with the plugin's modules and runs the bench
// script (BenchWorld.cpp). Once, before any benchmark.
void SetUpBenchWorld();
// Removes the simulator folder the world was made in; at the end of the run.
void RemoveBenchFolder();

// An object of the bench script's main module (a new reference); aborts when it is missing.
PyObject* BenchObject(const char* name);
// Runs Python source in the bench script's main module; aborts on an error.
void RunPython(const std::string& source);

// Calls made per timed round by the two loops below.
constexpr int kCallsPerRound = 1000;
// Times the bench script's loop `loop(n)`, which makes n calls. `everyRound`, when given, runs before
// each round (the same for a row and its baselines).
void TimePythonLoop(benchmark::State& state, PyObject* loop, void (*everyRound)() = nullptr);
// The same for a C++ loop of n calls, so that a row's SDK time can be taken off.
void TimeNativeLoop(benchmark::State& state, void (*loop)(int n), void (*everyRound)() = nullptr);
