#pragma once

#include <cstdio>

/// For programs of the command line, before anything else: a file that took the number of a closed
/// standard stream would get what is printed; afterwards printing there fails, as it should. What
/// is printed goes out byte for byte.
void prepareStandardStreams();

/// Whether what is written to `stream` appears in a terminal rather than in a file or a pipe.
bool isTerminal(std::FILE *stream);
