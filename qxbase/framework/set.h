#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace qx {

// A Pascal-style set over the ordinals of an enumeration: bit n stands for ordinal n.
// Storage fixes the width (TQXMSChannelFlags, for instance, is stored in 16 bits).
template <typename E, typename Storage = std::uint32_t>
class Set {
    static_assert(std::is_enum_v<E>, "Set needs an enumeration");
    static_assert(std::is_unsigned_v<Storage>, "Set storage must be unsigned");

public:
    constexpr Set() noexcept = default;
    constexpr Set(std::initializer_list<E> members) noexcept {
        for (E m : members) FBits |= Bit(m);
    }

    static constexpr Set FromBits(Storage bits) noexcept {
        Set s;
        s.FBits = bits;
        return s;
    }
    constexpr Storage Bits() const noexcept { return FBits; }

    constexpr bool Contains(E m) const noexcept { return (FBits & Bit(m)) != 0; }
    constexpr bool Empty() const noexcept { return FBits == 0; }
    constexpr Set& Include(E m) noexcept {
        FBits |= Bit(m);
        return *this;
    }
    constexpr Set& Exclude(E m) noexcept {
        FBits &= static_cast<Storage>(~Bit(m));
        return *this;
    }

    friend constexpr Set operator+(Set a, Set b) noexcept { return FromBits(a.FBits | b.FBits); }
    friend constexpr Set operator*(Set a, Set b) noexcept { return FromBits(a.FBits & b.FBits); }
    friend constexpr Set operator-(Set a, Set b) noexcept {
        return FromBits(static_cast<Storage>(a.FBits & ~b.FBits));
    }
    friend constexpr bool operator==(Set a, Set b) noexcept { return a.FBits == b.FBits; }
    // Subset test, as Pascal's "<=" on sets.
    friend constexpr bool operator<=(Set a, Set b) noexcept { return (a.FBits & ~b.FBits) == 0; }

private:
    static constexpr Storage Bit(E m) noexcept {
        return static_cast<Storage>(Storage{1} << static_cast<unsigned>(m));
    }
    Storage FBits = 0;
};

}  // namespace qx
