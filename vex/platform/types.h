// Basic types shared by every layer: the UTF-16 string, the dynamic array aliases and a small
// bit-set over an enumeration. Everything else in the library is written in these terms.
//
//   Set<TReplaceFlag> flags{rfReplaceAll};
//   if (flags.Contains(rfReplaceAll)) ...
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

namespace vex {

/// The library's text: UTF-16 code units, positions 1-based in the API.
using String = std::u16string;
using Char = char16_t;

using TBytes = std::vector<uint8_t>;
using TStringDynArray = std::vector<String>;
using TIntegerDynArray = std::vector<int32_t>;
using TInt64DynArray = std::vector<int64_t>;
using TDoubleDynArray = std::vector<double>;

/// A set of up to 64 members of an enumeration whose members have the values 0, 1, 2, ...
template <class E>
class Set {
 public:
  constexpr Set() = default;
  constexpr Set(std::initializer_list<E> members) {
    for (E e : members) bits_ |= Bit(e);
  }

  constexpr bool Contains(E e) const { return (bits_ & Bit(e)) != 0; }
  constexpr bool Empty() const { return bits_ == 0; }
  constexpr Set& Include(E e) {
    bits_ |= Bit(e);
    return *this;
  }
  constexpr Set& Exclude(E e) {
    bits_ &= ~Bit(e);
    return *this;
  }
  constexpr uint64_t Bits() const { return bits_; }
  static constexpr Set FromBits(uint64_t bits) {
    Set s;
    s.bits_ = bits;
    return s;
  }

  friend constexpr Set operator+(Set a, Set b) { return FromBits(a.bits_ | b.bits_); }
  friend constexpr Set operator-(Set a, Set b) { return FromBits(a.bits_ & ~b.bits_); }
  friend constexpr Set operator*(Set a, Set b) { return FromBits(a.bits_ & b.bits_); }
  friend constexpr bool operator==(Set a, Set b) { return a.bits_ == b.bits_; }

 private:
  static constexpr uint64_t Bit(E e) { return uint64_t{1} << static_cast<unsigned>(e); }
  uint64_t bits_ = 0;
};

}  // namespace vex
