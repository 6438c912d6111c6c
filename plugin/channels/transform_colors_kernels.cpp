#include "channels/transform_colors_kernels.h"

#ifdef __AVX512VBMI__
#include <immintrin.h>
#endif

namespace pxk {

namespace {

#ifdef __AVX512VBMI__

// A table of 256 bytes fits four registers, and one instruction looks 64 bytes up in two of them.
struct TableRegisters {
    explicit TableRegisters(const unsigned char* table)
        : quarters{_mm512_loadu_si512(table), _mm512_loadu_si512(table + 64), _mm512_loadu_si512(table + 128),
                   _mm512_loadu_si512(table + 192)} {}

    __m512i quarters[4];
};

// The results of the bytes of `indices` that are in `where`, and 0 elsewhere. The look-up takes the low seven bits of
// an index; `upper` tells which indices have the eighth.
__m512i lookUp(const TableRegisters& table, __m512i indices, __mmask64 where, __mmask64 upper) {
    const auto& quarters = table.quarters;
    return _mm512_or_si512(
        _mm512_maskz_permutex2var_epi8(_kandn_mask64(upper, where), quarters[0], indices, quarters[1]),
        _mm512_maskz_permutex2var_epi8(_kand_mask64(upper, where), quarters[2], indices, quarters[3]));
}

// Where each byte of sixteen result words comes from, counted within the four words that a shuffle sees. What lands in
// the alpha bytes is looked up in no table.
__m512i sourceBytes(const ColorTables& tables, std::uint32_t firstByte) {
    static constexpr std::uint32_t bytesBefore[16] = {
        0x00000000, 0x04040404, 0x08080808, 0x0C0C0C0C, 0x00000000, 0x04040404, 0x08080808, 0x0C0C0C0C,
        0x00000000, 0x04040404, 0x08080808, 0x0C0C0C0C, 0x00000000, 0x04040404, 0x08080808, 0x0C0C0C0C};
    const auto& shift = tables.resultShift;
    const std::uint32_t withinWord = firstByte << shift[0] | (firstByte + 1) << shift[1] | (firstByte + 2) << shift[2];
    return _mm512_set1_epi32(static_cast<int>(withinWord)) + _mm512_loadu_si512(bytesBefore);  // no byte overflows
}

__mmask64 bytesAt(std::int32_t shift) { return std::uint64_t{0x1111111111111111} << (shift / 8); }

template <int firstShift>
void transform(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count, const ColorTables& tables) {
    constexpr std::ptrdiff_t step = 16;
    const TableRegisters low(tables.bytes[0]);
    const TableRegisters middle(tables.bytes[1]);
    const TableRegisters high(tables.bytes[2]);
    const __mmask64 lowBytes = bytesAt(tables.resultShift[0]);
    const __mmask64 middleBytes = bytesAt(tables.resultShift[1]);
    const __mmask64 highBytes = bytesAt(tables.resultShift[2]);
    const __m512i from = sourceBytes(tables, firstShift / 8);
    const __m512i opaque = _mm512_set1_epi32(static_cast<int>(tables.opaque));
    for (std::ptrdiff_t x = 0; x < count; x += step) {
        const std::ptrdiff_t left = count - x;
        const auto lanes = static_cast<__mmask16>(left < step ? (1U << left) - 1U : 0xFFFFU);
        const __m512i indices = _mm512_shuffle_epi8(_mm512_maskz_loadu_epi32(lanes, source + x), from);
        const __mmask64 upper = _mm512_movepi8_mask(indices);
        const __m512i mapped = _mm512_or_si512(
            _mm512_or_si512(lookUp(low, indices, lowBytes, upper), lookUp(middle, indices, middleBytes, upper)),
            _mm512_or_si512(lookUp(high, indices, highBytes, upper), opaque));
        _mm512_mask_storeu_epi32(result + x, lanes, mapped);
    }
}

#else

template <int firstShift>
void transform(const std::uint32_t* source, std::uint32_t* result, std::ptrdiff_t count, const ColorTables& tables) {
    const auto& placed = tables.placed;
    for (std::ptrdiff_t x = 0; x < count; ++x) {
        const std::uint32_t word = source[x];
        result[x] = placed[0][(word >> firstShift) & 0xFF] | placed[1][(word >> (firstShift + 8)) & 0xFF] |
                    placed[2][(word >> (firstShift + 16)) & 0xFF];
    }
}

#endif

// The colour bytes are the low three, except behind a leading alpha byte.
constexpr TransformColorsKernels table = {.transform = {transform<0>, transform<8>, transform<0>}};

}  // namespace

constinit const TransformColorsKernels TransformColorsKernels::PXK_ISA = table;

}  // namespace pxk
