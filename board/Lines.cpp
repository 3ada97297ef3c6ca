#include "board/Lines.h"

namespace Board {
namespace {

constexpr struct {
    char plain;
    char written;  // behind a backslash
} kEscapes[] = {{'\\', '\\'}, {'\n', 'n'}, {'\t', 't'}, {'\r', 'r'}, {'\0', '0'}};

}  // namespace

std::string Escape(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        std::string written(1, c);
        for (const auto& escape : kEscapes) {
            if (c == escape.plain) {
                written = {'\\', escape.written};
            }
        }
        escaped += written;
    }
    return escaped;
}

std::string Unescape(const std::string& text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '\\' && i + 1 < text.size()) {
            c = text[++i];
            for (const auto& escape : kEscapes) {
                if (text[i] == escape.written) {
                    c = escape.plain;
                }
            }
        }
        plain += c;
    }
    return plain;
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += c;
        }
    }
    return pieces;
}

bool TakeLine(std::string* text, std::string* line) {
    const size_t end = text->find('\n');
    if (end == std::string::npos) {
        return false;
    }
    *line = text->substr(0, end);
    text->erase(0, end + 1);
    return true;
}

}  // namespace Board
