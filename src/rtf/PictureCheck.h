// Whether the pictures of a document are what they say, from their bytes. The system's functions
// that draw them trust the sizes inside, and read behind the end of a damaged one.
#pragma once

#include <string_view>

namespace melvorin {

enum class PictureKind {
    Other,             // drawn by no function that trusts it
    Metafile,          // \wmetafile, without the header of a file
    EnhancedMetafile,  // \emfblip
    Bitmap,            // \dibitmap
};

// The kind that a word of a picture's group stands for.
PictureKind pictureKind(std::string_view word);

// Every record lies within the bytes, the last one is the end, objects are numbered as announced;
// a bitmap has all its rows.
bool isSoundPicture(PictureKind kind, std::string_view bytes);

}  // namespace melvorin
