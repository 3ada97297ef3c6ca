#pragma once

#include <cstdint>

namespace Monitor {

// One row of an enumeration's texts; a row with the value -1 ends the table.
struct EnumText {
    int32_t value;
    const char* text;
};
constexpr int32_t kEnumTextEnd = -1;

// The text of the first row with this value; "" when there is none.
const char* FindEnumText(const EnumText* table, int32_t value);

}  // namespace Monitor
