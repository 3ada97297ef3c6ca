// A C++ program with little memory, for comparison: it uses the library's streams, maps and strings
// once, then it waits for ever.
#include <unistd.h>

#include <iostream>
#include <map>
#include <string>

int main() {
    std::map<std::string, int> names;
    names["idle"] = static_cast<int>(getpid());
    for (const auto& [name, number] : names) {
        std::cout << name << " " << number << std::endl;
    }
    for (;;) {
        pause();
    }
}
