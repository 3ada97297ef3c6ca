#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace OptionsModel {

// Makes values from bytes, which come from the fuzzer or from a test's random numbers. After the
// last byte, zeros follow.
class RandomInput {
public:
    // Keeps a pointer to the bytes.
    RandomInput(const uint8_t* data, size_t size) : data_(data), left_(size) {}

    bool IsEmpty() const { return left_ == 0; }
    // From min to max, both included.
    unsigned Number(unsigned min, unsigned max) { return min + Bits<uint16_t>() % (max - min + 1); }
    bool Flip() { return (Byte() & 1U) != 0; }
    // False after the last byte.
    bool OneIn(unsigned chances) { return Byte() % chances == 1; }

    // Any bits: a double may be infinite or not a number.
    template <typename T>
    T Bits() {
        unsigned char bytes[sizeof(T)];
        for (unsigned char& byte : bytes) {
            byte = Byte();
        }
        T value;
        std::memcpy(&value, bytes, sizeof(value));
        return value;
    }
    std::string Text(unsigned maxLength) {
        std::string text(Number(0, maxLength), '\0');
        for (char& c : text) {
            c = static_cast<char>(Byte());
        }
        return text;
    }
    template <typename T, size_t size>
    T Pick(const T (&values)[size]) {
        return values[Number(0, size - 1)];
    }

private:
    uint8_t Byte() {
        if (left_ == 0) {
            return 0;
        }
        --left_;
        return *data_++;
    }

    const uint8_t* data_;
    size_t left_;
};

}  // namespace OptionsModel
