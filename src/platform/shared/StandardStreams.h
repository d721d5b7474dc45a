#pragma once

#include <cstdio>

/// For programs of the command line, before anything else: a file that took the number of a closed
/// standard stream would get what is printed; afterwards printing there fails, as it should. What
/// is printed goes out byte for byte, and a terminal reads it as UTF-8; it may come only when the
/// stream is flushed.
void prepareStandardStreams();

/// Whether what is written to `stream` appears in a terminal rather than in a file or a pipe.
bool isTerminal(std::FILE *stream);

/// Whether that terminal can be had to obey escape sequences; old ones print them.
bool takesEscapes(std::FILE *stream);
