#include "monitor/EnumText.h"

namespace Monitor {

const char* FindEnumText(const EnumText* table, int32_t value) {
    for (; table->value != kEnumTextEnd; ++table) {
        if (table->value == value) {
            return table->text;
        }
    }
    return "";
}

}  // namespace Monitor
