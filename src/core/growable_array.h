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

// Up to InlineCapacity values are stored in the object itself, more of them in a block from malloc.
// A zero value always follows the last one, so that an array of characters is terminated. If memory
// runs out, the array keeps its values and ignores further ones, and Failed() stays true. The owner
// can therefore append without checks and ask once at the end. A value to append must not be part
// of the array itself.
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

    // Removes the values. Keeps the memory, and a failure.
    void Clear() {
        m_size = 0;
        *MutableData() = Value{};
    }

    void Append(const Value& value) {
        if (Value* const room = Extend(1)) {
            *room = value;
        }
    }

    // Adds `count` values, which the caller fills in. Returns null if memory runs out.
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

    // Moves the values to a block with room for `count` more. The block has at least 1 KB, which is
    // enough for nearly every section, and at least one and a half times the old capacity, so that
    // the time of many appends stays linear.
    bool Grow(std::size_t count) {
        constexpr std::size_t kSmallestBlock = 1024 / sizeof(Value);
        // No block can have so many values. With fewer, the sums below do not overflow.
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
        if (m_block != nullptr) {  // most arrays have no block, and then the call would waste time
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
