#include "rtf/MappedDocument.h"

#include "base/DiagramFont.h"

namespace melvorin {

const std::string& MappedDocument::rtf() {
    if (!rtf_) {
        rtf_ = editor_.rtf();
        map_ = RtfMap::matching(*rtf_, text_);
    }
    return *rtf_;
}

const RtfMap* MappedDocument::map() {
    rtf();
    return map_ ? &*map_ : nullptr;
}

bool MappedDocument::mayHaveDiagrams() {
    return rtf().find(toUtf8(kDiagramFaceStart)) != std::string::npos;
}

bool MappedDocument::isDiagramAt(std::size_t position) {
    if (!mayHaveDiagrams())
        return false;
    if (map_)
        return isDiagramFace(map_->fontNameAt(position));
    return isDiagramFace(editor_.faceAt(static_cast<std::int32_t>(position)));
}

}  // namespace melvorin
