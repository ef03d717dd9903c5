#pragma once

/** The version of this program, as it shows it. */
constexpr const char* hubVersion = "13.0.0";
