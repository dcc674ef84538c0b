#include "rtf/MappedDocument.h"

#include "base/DiagramFont.h"

namespace melvorin {

const std::string& MappedDocument::rtf() {
    if (!rtf_) {
        rtf_ = editor_.rtf();
        map_ = RtfMap::matching(*rtf_, text_);
        mayHaveDiagrams_ = rtf_->find(toUtf8(kDiagramFaceStart)) != std::string::npos;
    }
    return *rtf_;
}

const RtfMap* MappedDocument::map() {
    rtf();
    return map_ ? &*map_ : nullptr;
}

bool MappedDocument::mayHaveDiagrams() {
    rtf();
    return mayHaveDiagrams_;
}

bool MappedDocument::isDiagramAt(std::size_t position) {
    return mayHaveDiagrams() && isDiagramFace(faceAt(position));
}

Text MappedDocument::faceAt(std::size_t position) {
    if (map() != nullptr)
        return Text(map_->fontNameAt(position));
    return editor_.faceAt(static_cast<std::int32_t>(position));
}

}  // namespace melvorin
