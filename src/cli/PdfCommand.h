// `melvorin-cli pdf`: songs as a PDF.
#pragma once

#include <vector>

#include "cli/Cli.h"

namespace melvorin {

// Runs the command with the arguments behind its name and returns the exit code: 0, 1 when a file
// could not be read, understood or written (the other songs are still done), 2 when the arguments
// make no sense.
int runPdf(const std::vector<Text>& arguments, Files& files, CliPorts& ports,
           const AnsiCodec& ansi);

}  // namespace melvorin
