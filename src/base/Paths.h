// Parts of a Windows path. Pure text: nothing is looked up on disk.
#pragma once

#include "base/Text.h"

namespace melvorin {

// Everything before the last "\"; empty without one.
TextView folderPart(TextView path);
// Everything after the last "\".
TextView fileNamePart(TextView path);
// The text after the last "." of the file name; empty without one.
TextView extensionPart(TextView path);
// The path without its extension and the ".".
TextView withoutExtension(TextView path);
// The same for the name of a song: what only looks like an ending belongs to it, as in "St. Anne
// No. 1".
Text songName(TextView path);
// `folder` + "\" + `name`, with one separator where the folder is a root.
Text joinPath(TextView folder, TextView name);

// Why a path cannot be that of a song, as a sentence, where Windows would take it for something
// else without a word: a device (CON, "NUL.txt", "\\.\COM1"), a second stream of a file
// ("song.txt:x"), a name whose last blanks and dots are left out. Empty if none of these.
TextView whyNotAFile(TextView path);
// A full path in the form that has no limit of 260 characters ("\\?\C:\Songs"); any other is
// given back as it is.
Text withoutLengthLimit(TextView fullPath);

// A name in quotation marks, for messages.
Text quoted(TextView name);

// The document named by the rest of a command line: blanks and one pair of double quotes around
// it are taken away. Empty when none is named.
Text pathFromCommandLine(TextView commandLine);

}  // namespace melvorin
