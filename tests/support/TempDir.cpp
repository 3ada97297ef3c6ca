#include "tests/support/TempDir.h"

#include <filesystem>
#include <fstream>
#include <iterator>

TempDir::TempDir() {
    std::string pattern = std::filesystem::temp_directory_path() / "keldra_test.XXXXXX";
    path_ = mkdtemp(&pattern[0]);
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::Write(const std::string& name, const std::string& content) const {
    std::ofstream(File(name), std::ios::binary) << content;
    return File(name);
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}
