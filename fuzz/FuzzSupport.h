#pragma once

// What every fuzz target needs before its first input: the offscreen platform, the profile and
// data folders in a temporary place (an input must never change the user's settings), and
// questions answered without a word on standard error, which would flood the fuzzer's output.
// `yes` is the answer to Yes/No questions. Unless the target made its own application object
// (after FuzzEnvironment), a QGuiApplication is created on the first call.
void FuzzSetUp(int argc, char** argv, bool yes);

// The environment part alone, for a target that needs another kind of application object: it
// must be in place before that object is made.
void FuzzEnvironment();
