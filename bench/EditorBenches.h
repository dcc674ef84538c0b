// The parts of the editor's bench. Each prints "name value unit", one per line.
#pragma once

namespace melvorin::bench {

void stageBench();
void dictionaryBench();
void keyBench();
void editBench();
void scaleBench();
void previewBench();

}  // namespace melvorin::bench
