#pragma once
// A free list of equal blocks for objects made and dropped by the thousand, as
// appointments are when columns reload: a dropped block goes onto a list of the
// thread that drops it and the next one made takes it from there, warm, instead
// of a trip through the general allocator each way.
//
// Under AddressSanitizer every block goes back to the general allocator, so a
// use after free still shows.

#include <cstddef>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define QUORVANE_POOL_BLOCKS 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUORVANE_POOL_BLOCKS 0
#endif
#endif
#ifndef QUORVANE_POOL_BLOCKS
#define QUORVANE_POOL_BLOCKS 1
#endif

namespace quorvane {

template <std::size_t Size> class FreeBlocks {
public:
    static void* take() {
#if QUORVANE_POOL_BLOCKS
        List& list = local();
        if (list.head) {
            Node* node = list.head;
            list.head = node->next;
            --list.count;
            return node;
        }
#endif
        return ::operator new(kBlock);
    }
    static void give(void* block) noexcept {
#if QUORVANE_POOL_BLOCKS
        List& list = local();
        if (list.count < kKept) {
            list.head = new (block) Node{list.head};
            ++list.count;
            return;
        }
#endif
        ::operator delete(block);
    }

private:
    struct Node {
        Node* next;
    };
    static constexpr std::size_t kBlock = Size < sizeof(Node) ? sizeof(Node) : Size;
    // Enough for a full schedule of ten large days; past it blocks go back.
    static constexpr std::size_t kKept = 1 << 16;
    struct List {
        Node* head = nullptr;
        std::size_t count = 0;
        ~List() {
            while (head) {
                Node* next = head->next;
                ::operator delete(head);
                head = next;
            }
        }
    };
    static List& local() {
        thread_local List list;
        return list;
    }
};

// An allocator for std::allocate_shared that takes single objects from FreeBlocks.
template <class T> struct PoolAllocator {
    using value_type = T;
    PoolAllocator() = default;
    template <class U> PoolAllocator(const PoolAllocator<U>&) noexcept {}
    T* allocate(std::size_t n) {
        if (n != 1) return static_cast<T*>(::operator new(n * sizeof(T)));
        return static_cast<T*>(FreeBlocks<sizeof(T)>::take());
    }
    void deallocate(T* p, std::size_t n) noexcept {
        if (n != 1) return ::operator delete(p);
        FreeBlocks<sizeof(T)>::give(p);
    }
    template <class U> bool operator==(const PoolAllocator<U>&) const noexcept { return true; }
};

} // namespace quorvane
