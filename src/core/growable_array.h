// A growable array of plain values that never throws.
#ifndef QBSUPPORT_CORE_GROWABLE_ARRAY_H
#define QBSUPPORT_CORE_GROWABLE_ARRAY_H

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>

namespace qb_support {

// The first InlineCapacity values live in the object itself, more in a block from malloc. A zero
// value always stands after the last one, so that an array of characters is terminated. When
// memory runs out the array remembers it: it keeps what it has, takes nothing more, and Failed()
// stays true, so that its owner appends freely and asks once at the end. What is appended must not
// lie in the array itself.
template <typename Value, std::size_t InlineCapacity>
class CGrowableArray {
    static_assert(std::is_trivially_copyable_v<Value> && InlineCapacity > 0);

public:
    CGrowableArray() { m_inline[0] = Value{}; }
    CGrowableArray(CGrowableArray&& other) noexcept { Take(other); }
    CGrowableArray(const CGrowableArray&) = delete;
    CGrowableArray& operator=(const CGrowableArray&) = delete;
    CGrowableArray& operator=(CGrowableArray&& other) noexcept {
        if (this != &other) {
            Release();
            Take(other);
        }
        return *this;
    }
    ~CGrowableArray() { Release(); }

    [[nodiscard]] bool Failed() const { return m_failed; }
    void Fail() { m_failed = true; }

    [[nodiscard]] std::size_t Size() const { return m_size; }
    [[nodiscard]] const Value* Data() const { return m_block != nullptr ? m_block : m_inline; }
    [[nodiscard]] const Value* begin() const { return Data(); }
    [[nodiscard]] const Value* end() const { return Data() + m_size; }

    // Forgets the values and keeps the memory and a remembered failure.
    void Clear() {
        m_size = 0;
        *MutableData() = Value{};
    }

    void Append(const Value& value) {
        if (Value* const room = Extend(1)) {
            *room = value;
        }
    }

    // Adds `count` values for the caller to fill in. Null when there is no memory for them.
    [[nodiscard]] Value* Extend(std::size_t count) {
        if (m_failed || (count > m_capacity - m_size && !Grow(count))) {
            return nullptr;
        }
        Value* const room = MutableData() + m_size;
        m_size += count;
        room[count] = Value{};
        return room;
    }

private:
    [[nodiscard]] Value* MutableData() { return m_block != nullptr ? m_block : m_inline; }

    // Moves to a block that holds `count` values more: at least 1 KB, in which nearly every section
    // fits, and half as large again, so that appending stays linear and old and new block together
    // stay below three times the values.
    bool Grow(std::size_t count) {
        constexpr std::size_t kSmallestBlock = 1024 / sizeof(Value);
        // A size that no block can have; the sums below cannot overflow under it.
        constexpr std::size_t kTooMany =
            std::numeric_limits<std::size_t>::max() / sizeof(Value) / 4;
        Value* block = nullptr;
        std::size_t capacity = 0;
        if (count < kTooMany) {
            capacity = std::max({m_size + count, m_capacity + m_capacity / 2, kSmallestBlock});
            block = static_cast<Value*>(std::malloc((capacity + 1) * sizeof(Value)));
        }
        if (block == nullptr) {
            m_failed = true;
            return false;
        }
        std::memcpy(block, Data(), m_size * sizeof(Value));
        Release();
        m_block = block;
        m_capacity = capacity;
        return true;
    }

    void Release() {
        if (m_block != nullptr) {  // most arrays have none: the call is spared
            std::free(m_block);
        }
    }

    void Take(CGrowableArray& other) {
        m_block = other.m_block;
        m_size = other.m_size;
        m_capacity = other.m_capacity;
        m_failed = other.m_failed;
        if (m_block == nullptr) {
            std::memcpy(m_inline, other.m_inline, (m_size + 1) * sizeof(Value));
        }
        other.m_block = nullptr;
        other.m_capacity = InlineCapacity;
        other.Clear();
    }

    Value* m_block = nullptr;
    std::size_t m_size = 0;
    std::size_t m_capacity = InlineCapacity;
    bool m_failed = false;
    Value m_inline[InlineCapacity + 1];
};

}  // namespace qb_support

#endif
