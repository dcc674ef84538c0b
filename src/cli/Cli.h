// The batch tool: moves plain-text charts to another key from the command line, and tells which of
// their lines hold chords; lists fingerings of chords. This is all of it but the operating system.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Files.h"
#include "base/Text.h"
#include "base/TextCodec.h"
#include "chords/Transpose.h"
#include "cli/NamedEncoding.h"

namespace melvorin {

// The standard streams. All three carry bytes as they are, without translated line ends.
class CliPorts {
  public:
    virtual ~CliPorts() = default;

    // Everything up to the end of the standard input.
    virtual Result<std::string> readInput() = 0;
    // Fails also where bytes were taken but could not be passed on.
    virtual Result<Done> writeOutput(std::string_view bytes) = 0;
    // A message for the user, with its line ends. There is nobody to tell that it was lost.
    virtual void writeError(TextView message) = 0;
    // The folder that the tool itself lies in, where its chord database is too.
    virtual Text programFolder() = 0;
    // Where this machine has its fonts, each without a separator at its end.
    virtual std::vector<Text> fontFolders() { return {}; }
};

// Runs the tool with the arguments behind the program's name and returns its exit code: 0 when all
// went well, 1 when a file could not be read, understood or written (the others are still done),
// 2 when the arguments make no sense (nothing has been read or written then), 3 when all went well
// but lines of chords are still in their old key and the arguments are strict about that.
int runCli(const std::vector<Text>& arguments, Files& files, CliPorts& ports,
           const AnsiCodec& ansi);

// Both work in `named` where it is given, else in the encoding that the bytes seem to have.

// The text of a plain-text file, without its byte-order mark. Fails as rewriteBytes does.
Result<Text> textOfBytes(std::string_view bytes, const AnsiCodec& ansi,
                         const NamedEncoding* named = nullptr);

// The bytes of a plain-text file after `edit` has been at its text, in the same encoding and with
// the same byte-order mark. `edit` gets the text in parts of whole lines, so that what is worked on
// stays small however large the file is. Fails for bytes that are not text, or that are not
// well-formed in the encoding they claim, since they could not be written back as they were.
Result<std::string> rewriteBytes(std::string_view bytes, const AnsiCodec& ansi,
                                 const std::function<Text(Text)>& edit,
                                 const NamedEncoding* named = nullptr);

// The same with the chords moved to another key as the edit.
Result<std::string> transposeBytes(std::string_view bytes, const KeyChange& change,
                                   const AnsiCodec& ansi, const NamedEncoding* named = nullptr);

// A song in another key, and the lines of chords that are still in the old one, from 0.
struct TransposedSong {
    std::string bytes;
    std::vector<std::size_t> left;
};

// The same, as the tool does it. With `moveOthers` lines of chords that are not made of chord
// characters alone move too, unless some chord of the song is an H. Songs without such lines cost
// hardly more than with transposeBytes.
Result<TransposedSong> transposeSong(std::string_view bytes, const KeyChange& change,
                                     bool moveOthers, const AnsiCodec& ansi,
                                     const NamedEncoding* named = nullptr);

}  // namespace melvorin
