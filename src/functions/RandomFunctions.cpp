// Functions whose answers cannot be repeated.
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <random>

#include "functions/Bodies.h"

namespace kpTables::functions {

namespace {

constexpr std::uint32_t kMask = 0xFFFFFF;
constexpr double kRange = 0x1000000;

/// Visual Basic's generator, which begins at a place of its own in every thread.
class Generator {
public:
    double Last() const noexcept { return seed_ / kRange; }
    double Next() noexcept {
        seed_ = (seed_ * 0x43FD43FDU + 0xC39EC3U) & kMask;
        return Last();
    }
    /// Answers the same for the same number.
    double Restart(float number) noexcept {
        const auto bits = std::bit_cast<std::uint32_t>(number);
        constexpr int kHighByte = 24;
        seed_ = (bits + (bits >> kHighByte)) & kMask;
        return Next();
    }

private:
    std::uint32_t seed_ = std::random_device()() & kMask;
};

thread_local Generator generator;

}  // namespace

void Rnd(const Arguments& a, Answer& answer) {
    const double number = a.Count() > 0 ? a.Number(0) : 1;
    answer.Number(number < 0    ? generator.Restart(static_cast<float>(number))
                  : number == 0 ? generator.Last()
                                : generator.Next());
}

void NewId(const Arguments&, Answer& answer) {
    std::random_device source;
    std::array<std::uint32_t, 4> bits{};
    for (std::uint32_t& part : bits) part = source();
    // Version 4, variant 1.
    bits[1] = (bits[1] & 0xFFFF0FFFU) | 0x4000U;
    bits[2] = (bits[2] & 0x3FFFFFFFU) | 0x80000000U;
    constexpr int kHalf = 16;
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%08X-%04X-%04X-%04X-%04X%08X", static_cast<unsigned>(bits[0]),
                  static_cast<unsigned>(bits[1] >> kHalf), static_cast<unsigned>(bits[1] & 0xFFFFU),
                  static_cast<unsigned>(bits[2] >> kHalf), static_cast<unsigned>(bits[2] & 0xFFFFU),
                  static_cast<unsigned>(bits[3]));
    answer.Text(text.data());
}

}  // namespace kpTables::functions
