#pragma once

namespace brindle::utility {

template <typename T>
struct ListLinks {
    T* next;
    T* previous;
};

/// An intrusive doubly linked list through the member `kLinks`. It does not own its elements.
template <typename T, ListLinks<T> T::*kLinks>
class LinkedList {
public:
    T* Front() const noexcept { return mFront; }

    void PushFront(T& ioElement) noexcept {
        ioElement.*kLinks = {mFront, nullptr};
        (mFront != nullptr ? (mFront->*kLinks).previous : mBack) = &ioElement;
        mFront = &ioElement;
    }
    void PushBack(T& ioElement) noexcept {
        ioElement.*kLinks = {nullptr, mBack};
        (mBack != nullptr ? (mBack->*kLinks).next : mFront) = &ioElement;
        mBack = &ioElement;
    }
    void Remove(T& ioElement) noexcept {
        ListLinks<T> const links = ioElement.*kLinks;
        (links.next != nullptr ? (links.next->*kLinks).previous : mBack) = links.previous;
        (links.previous != nullptr ? (links.previous->*kLinks).next : mFront) = links.next;
    }

private:
    T* mFront = nullptr;
    T* mBack = nullptr;
};

} // namespace brindle::utility
