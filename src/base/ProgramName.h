#pragma once

/// What users know the program by.
inline constexpr const char* programName = "Pithwise";
