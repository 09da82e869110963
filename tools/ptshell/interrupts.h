#pragma once

// Ctrl-C in the shell. It sets a flag that the evaluator reads at every step of a statement,
// and wakes the prompt, which reads typed characters itself so that it can stop waiting.

#include <atomic>
#include <cstdio>

namespace ptshell {

/// Set by Ctrl-C; whoever acts on it clears it.
std::atomic<bool>& interruptFlag();

/// Takes over Ctrl-C (SIGINT), unless the shell was started with it ignored, as a background
/// job is. With endOnSecond (a script or -e run), a second Ctrl-C before the first has taken
/// effect ends the process at once, as a statement may be inside a long call of the tracer.
void catchInterrupts(bool endOnSecond);

/// The prompt's source of typed characters, for the line editor: the next code point read from
/// UTF-8 (a byte that starts no valid sequence stands for itself), or EOF at the end of input
/// and on Ctrl-C, which the flag tells apart.
int readTypedCharacter(FILE*);

}  // namespace ptshell
