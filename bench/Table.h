#pragma once

#include <string>

namespace Bench {

// One line of the results, as Markdown.
struct Row {
    std::string figure;
    std::string measured;
    std::string floor;  // the least that is possible, from the same run
    std::string bar;
    bool met = false;
};

void Print(const Row& row);

// "123.4" and the like.
std::string Fixed(double number, int decimals);

}  // namespace Bench
