// Numbers of the program's resources, shared with the resource script.
#pragma once

#define MELVORIN_ID_ICON 1

namespace melvorin {
inline constexpr int kProgramIcon = MELVORIN_ID_ICON;
}
