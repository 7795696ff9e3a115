#pragma once

namespace LocaleTesting {
// Switches the whole process to a locale whose decimal point is a comma;
// false when the system has none.
bool UseDecimalCommaLocale();
}  // namespace LocaleTesting
