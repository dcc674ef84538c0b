#include "platform/SystemError.h"

namespace melvorin {

Text systemErrorSentence(DWORD error) {
    Text buffer(512, u'\0');
    const DWORD length =
        ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error,
                         0, wideBuffer(buffer), static_cast<DWORD>(buffer.size()), nullptr);
    buffer.resize(length);
    while (!buffer.empty() && (buffer.back() == u'\r' || buffer.back() == u'\n'))
        buffer.pop_back();
    return buffer.empty() ? u"Error " + decimal(static_cast<std::int64_t>(error)) + u"." : buffer;
}

}  // namespace melvorin
