#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zav {

/// A smooth function of positive single-precision values, as polynomials of degree 6: each binade from
/// 2^`FIRST` on, `BINADES` of them, is cut in 2^`CUTS` even pieces. Made from the function itself; its user chooses the
/// pieces so that the relative error stays below FLOAT_TABLE_ERROR.
template <int FIRST, int BINADES, int CUTS>
class Float_table {
  public:
    template <class Function>
    explicit Float_table(const Function& function) : pieces_(PIECES) {
        for (std::size_t i = 0; i < PIECES; i++) {
            const auto from = std::bit_cast<float>(static_cast<std::uint32_t>((START + i) << SHIFT));
            const double width = std::ldexp(1.0, FIRST + static_cast<int>(i >> CUTS) - CUTS);
            pieces_[i] = fit([&](double x) { return function(from + width * (x + 1.0) / 2.0); });
        }
    }

    bool covers(float value) const { return piece_of(value) < PIECES; }

    /// The function's value, at a place that the table covers.
    double operator()(float value) const {
        const std::uint32_t rest = std::bit_cast<std::uint32_t>(value) & ((1U << SHIFT) - 1U);
        const double x = rest * STEP - 1.0;
        const Piece& piece = pieces_[piece_of(value)];
        const double square = x * x;
        const double low = piece[0] + piece[1] * x;
        const double middle = piece[2] + piece[3] * x;
        const double high = piece[4] + piece[5] * x + piece[6] * square;
        return low + (middle + high * square) * square;
    }

  private:
    static constexpr std::size_t DEGREE = 6;
    using Piece = std::array<double, DEGREE + 1>;  ///< coefficients of the powers of x, which goes from -1 to 1
    static constexpr std::size_t PIECES = static_cast<std::size_t>(BINADES) << CUTS;
    static constexpr int SHIFT = 23 - CUTS;
    static constexpr std::size_t START = static_cast<std::size_t>(FIRST + 127) << CUTS;
    static constexpr double STEP = 2.0 / (1U << SHIFT);

    /// The first bits of a value tell its piece; what lies outside, a negative value too, comes out beyond the last.
    static std::size_t piece_of(float value) { return (std::bit_cast<std::uint32_t>(value) >> SHIFT) - START; }

    /// The polynomial through Chebyshev's points, by Newton's divided differences.
    template <class Function>
    static Piece fit(const Function& function) {
        constexpr std::size_t COUNT = DEGREE + 1;
        constexpr double PI = 3.14159265358979323846;
        Piece x{};
        Piece y{};
        for (std::size_t i = 0; i < COUNT; i++) {
            x[i] = std::cos(PI * (static_cast<double>(i) + 0.5) / COUNT);
            y[i] = function(x[i]);
        }
        for (std::size_t order = 1; order < COUNT; order++)
            for (std::size_t i = COUNT - 1; i >= order; i--) y[i] = (y[i] - y[i - 1]) / (x[i] - x[i - order]);
        Piece piece{};
        for (std::size_t i = COUNT; i-- > 0;) {  // piece = piece * (x - x[i]) + y[i]
            for (std::size_t k = COUNT - 1; k > 0; k--) piece[k] = piece[k - 1] - x[i] * piece[k];
            piece[0] = y[i] - x[i] * piece[0];
        }
        return piece;
    }

    std::vector<Piece> pieces_;
};

/// Relative error that a value out of a Float_table may have.
constexpr double FLOAT_TABLE_ERROR = 1e-12;

/// `value`, which a table helped to work out, as a float. Where its error could change the last digit `exact` is asked,
/// so the result is always that of the function itself.
template <class Exact>
float rounded(double value, const Exact& exact) {
    const auto low = static_cast<float>(value * (1.0 - FLOAT_TABLE_ERROR));
    const auto high = static_cast<float>(value * (1.0 + FLOAT_TABLE_ERROR));
    return low == high ? low : static_cast<float>(exact());
}

}  // namespace zav
