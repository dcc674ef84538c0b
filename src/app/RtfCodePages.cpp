#include "app/RtfCodePages.h"

#include <algorithm>
#include <array>

namespace melvorin {
namespace {

struct CharsetPage {
    std::int32_t charset;
    unsigned codePage;
};
constexpr auto kPages = std::to_array<CharsetPage>(
    {{0, 1252},   {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002}, {83, 10005},
     {84, 10004}, {85, 10006}, {86, 10081}, {87, 10021}, {88, 10029}, {89, 10007}, {128, 932},
     {129, 949},  {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254}, {163, 1258},
     {177, 1255}, {178, 1256}, {179, 1256}, {180, 1256}, {181, 1255}, {186, 1257}, {204, 1251},
     {222, 874},  {238, 1250}, {254, 437},  {255, 850}});

}  // namespace

std::optional<unsigned> codePageOfCharset(std::int32_t charset) {
    const auto* const found =
        std::find_if(kPages.begin(), kPages.end(),
                     [&](const CharsetPage& page) { return page.charset == charset; });
    return found == kPages.end() ? std::nullopt : std::optional(found->codePage);
}

}  // namespace melvorin
