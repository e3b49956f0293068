// SPDX-License-Identifier: MIT
#pragma once

/// The program's terminal. This interface has one implementation per system.

/// Returns whether standard input and output are a terminal, so that the host can ask the user.
bool isInteractive();

/// Returns whether standard output is a terminal.
bool isOutputTerminal();

/// Installs a signal handler, so that Ctrl-C ends a blocked read of standard input and not the
/// program.
void catchInterrupts();

/// Makes standard input readable again after its end (Ctrl-D) or an interrupt.
void resetInput();
