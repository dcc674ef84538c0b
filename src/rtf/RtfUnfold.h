// Parts of Rich Text that controls leave out, misread or crash at, written as what they show.
#pragma once

#include <string>
#include <string_view>

namespace melvorin {

// A word that means nothing to any control. It takes the place of a word that must go, so that what
// stands before it and behind it is read as before.
inline constexpr std::string_view kNoWord = "\\nop ";

// The document with the same words and formatting, but
// - fields are their results, and objects of other programs too, where they have one;
// - what is there twice, with and without Unicode, is there once;
// - bullets and numbers of list tables are text, in its font (older ones, \pntext, every control
// makes itself);
// - what a writer hid, or deleted with the deletion on record, is gone;
// - a line break ends the paragraph, for a chord line is a line; so does a column break,
//   and the characters that Unicode has for both;
// - a paragraph behind a table is outside of it, and a row whose paragraphs do not say that they
//   are in a table does.
// `rtf` begins at the document's first brace; what is behind its last one stays. A document that
// has no last brace stays as it is. Linear in its size.
std::string unfoldRtf(std::string_view rtf);

// What a control wrote, with the word in every row of a table that makes it one: some controls
// leave it out, and the table would come apart where it is read.
std::string withTableRows(const std::string& rtf);

}  // namespace melvorin
