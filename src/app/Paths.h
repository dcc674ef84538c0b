// Parts of a Windows path. Pure text: nothing is looked up on disk.
#pragma once

#include "app/Text.h"

namespace melvorin {

// Everything before the last "\"; empty without one.
TextView folderPart(TextView path);
// Everything after the last "\".
TextView fileNamePart(TextView path);
// The text after the last "." of the file name; empty without one.
TextView extensionPart(TextView path);
// The path without its extension and the ".".
TextView withoutExtension(TextView path);
// ASCII letters in lower case; extensions are compared so.
Text lowerCase(TextView text);
// `folder` + "\" + `name`, with one separator where the folder is a root.
Text joinPath(TextView folder, TextView name);

// The document named by the rest of a command line: blanks and one pair of double quotes around
// it are taken away. Empty when none is named.
Text pathFromCommandLine(TextView commandLine);

}  // namespace melvorin
