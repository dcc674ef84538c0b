// The command line of the batch tool.
#pragma once

#include <optional>
#include <vector>

#include "base/Editor.h"
#include "base/Files.h"
#include "base/Text.h"
#include "chords/ChordNames.h"
#include "chords/SongExport.h"
#include "chords/SongImport.h"
#include "chords/Transpose.h"
#include "cli/NamedEncoding.h"

namespace melvorin {

// A command line that makes sense.
struct CliRequest {
    enum class Command {
        Help,
        Version,
        Transpose,
        Lines,
        ExpandTabs,
        Replace,
        Normalize,
        Import,
        Export,
        Key,
        Respell,
        Capo,
        Chord
    };

    Command command = Command::Help;
    // Set for `transpose`.
    std::optional<Direction> direction;
    // Without a spelling the accidentals follow the key of each song.
    std::optional<Spelling> spelling;
    unsigned steps = 1;
    // Whether lines of chords that a key change leaves over are moved too, and whether such a line
    // that was not is a failure.
    bool moveOthers = false;
    bool strict = false;
    // Set for `replace`.
    std::optional<Text> find;
    std::optional<Text> with;
    FindOptions findOptions;
    // `import`.
    bool verdicts = false;
    // `export`, and its short form for ChordPro.
    SongFormat format = SongFormat::ChordPro;
    ChordNames names = ChordNames::House;
    ImportOptions importOptions;
    // What texts are in, where the user says so.
    std::optional<NamedEncoding> encoding;
    // At most one of the two. With more than one file it is `outputFolder`.
    std::optional<Text> output;
    std::optional<Text> outputFolder;
    // For `chord`: all of them.
    bool list = false;
    // For `chord` and `capo`: where the chords are; without a value beside the tool.
    std::optional<Text> database;
    // Empty for the standard input. The chords of `chord`.
    std::vector<Text> files;
};

// `arguments` are those behind the program's name. The cause of a failure names the argument at
// fault; it is a phrase without a full stop.
Result<CliRequest> parseCliArguments(const std::vector<Text>& arguments);

// Where a file goes that is written to `folder` under its own name.
Text pathInFolder(TextView folder, TextView file);

}  // namespace melvorin
