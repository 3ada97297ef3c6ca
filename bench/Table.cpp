#include "bench/Table.h"

#include <cstdio>

namespace Bench {

void Print(const Row& row) {
    (void)printf("| %s | %s | %s | %s | %s |\n", row.figure.c_str(), row.measured.c_str(),
                 row.floor.c_str(), row.bar.c_str(), row.met ? "yes" : "**no**");
}

std::string Fixed(double number, int decimals) {
    char text[64];
    (void)snprintf(text, sizeof(text), "%.*f", decimals, number);
    return text;
}

}  // namespace Bench
