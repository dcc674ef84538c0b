// The labels of a song's sections, by the lines that they stand in.
#pragma once

#include <map>

#include "base/Text.h"
#include "present/StageRun.h"

namespace melvorin {

// Lines count from 1; "[Chorus]" and "Chorus:" are "Chorus".
using SectionLabels = std::map<int, Text>;
SectionLabels sectionLabels(TextView song);

// "line 35, Chorus": the label is that of the section that the line lies in.
Text lineInWords(int line, const SectionLabels& labels);
// All of them, one below the other, as a tip has room for: "35 Chorus". Empty without any.
Text labelsInWords(const SectionLabels& labels);

// "Count-in 3", "then line 35, Chorus"; empty where there is nothing to say.
Text noteInWords(const RunNote& note, const SectionLabels& labels);

}  // namespace melvorin
