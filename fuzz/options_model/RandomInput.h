#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace OptionsModel {

// Draws values from bytes, which come from the fuzzer or from a test's random numbers. After the
// last byte come zeros.
class RandomInput {
public:
    // The bytes are not owned.
    RandomInput(const uint8_t* data, size_t size) : data_(data), left_(size) {}

    bool IsEmpty() const { return left_ == 0; }
    // Both limits included.
    unsigned Number(unsigned min, unsigned max) { return min + Bits<uint16_t>() % (max - min + 1); }
    bool Flip() { return (Byte() & 1U) != 0; }
    // False when the bytes have come to their end.
    bool OneIn(unsigned chances) { return Byte() % chances == 1; }

    // Of any bits: a double may be infinite or not a number.
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
