// The program's version, as the banner and the report show it.
#pragma once

inline constexpr const char* kVersion = "6.0";
