#pragma once

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <string>

// Draws values from bytes, which come from the fuzzer or from a test's random numbers. After the
// last byte come zeros. The calls are those of the fuzzer's own provider, which only clang has.
class FuzzInput {
public:
    // The bytes are not owned.
    FuzzInput(const uint8_t* data, size_t size) : data_(data), left_(size) {}

    size_t remaining_bytes() const { return left_; }
    bool ConsumeBool() { return (Byte() & 1U) != 0; }

    // Both limits included.
    template <typename T>
    T ConsumeIntegralInRange(T min, T max) {
        const uint64_t range = static_cast<uint64_t>(max) - static_cast<uint64_t>(min);
        uint64_t drawn = 0;
        for (uint64_t left = range; left > 0; left >>= 8U) {
            drawn = drawn << 8U | Byte();
        }
        drawn = range == std::numeric_limits<uint64_t>::max() ? drawn : drawn % (range + 1);
        return static_cast<T>(static_cast<uint64_t>(min) + drawn);
    }
    template <typename T>
    T ConsumeIntegral() {
        return ConsumeIntegralInRange(std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
    }
    // Of any bits, so that it may also be infinite or not a number.
    template <typename T>
    T ConsumeFloatingPoint() {
        static_assert(sizeof(T) == sizeof(uint64_t));
        const auto bits = ConsumeIntegral<uint64_t>();
        T value;
        std::memcpy(&value, &bits, sizeof(value));
        return value;
    }
    std::string ConsumeRandomLengthString(size_t maxLength) {
        std::string text(ConsumeIntegralInRange<size_t>(0, maxLength), '\0');
        for (char& c : text) {
            c = static_cast<char>(Byte());
        }
        return text;
    }

    template <typename T, size_t size>
    T PickValueInArray(const T (&values)[size]) {
        return values[ConsumeIntegralInRange<size_t>(0, size - 1)];
    }
    template <typename T>
    T PickValueInArray(std::initializer_list<T> values) {
        return *std::next(values.begin(), ConsumeIntegralInRange<std::ptrdiff_t>(
                                              0, std::ptrdiff_t(values.size()) - 1));
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
