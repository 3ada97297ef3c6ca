#pragma once

#include <cstddef>

namespace Quenda {

template <typename T>
class Dlist;

// An element of a Dlist holds its links and the list that it is in.
template <typename T>
struct DlistLinks {
    T next = nullptr;
    T prev = nullptr;
    Dlist<T>* list = nullptr;
};

// A circular doubly-linked list whose elements hold the links: T is a pointer to an object with a
// member `links`. It allocates nothing and owns nothing. An element is in one list at most.
template <typename T>
class Dlist {
public:
    Dlist() = default;
    Dlist(const Dlist&) = delete;
    Dlist& operator=(const Dlist&) = delete;

    size_t Count() const { return count_; }
    bool IsEmpty() const { return count_ == 0; }
    // Null when the list is empty.
    T Head() const { return tail_ == nullptr ? nullptr : tail_->links.next; }
    // The element after this one; null after the last.
    T After(T element) const { return element == tail_ ? nullptr : element->links.next; }

    // The element must be in no list.
    void Append(T element) {
        element->links = {element, element, this};
        if (tail_ != nullptr) {
            element->links.next = tail_->links.next;
            element->links.prev = tail_;
            tail_->links.next->links.prev = element;
            tail_->links.next = element;
        }
        tail_ = element;
        ++count_;
    }

    // The element must be in this list.
    void Remove(T element) {
        element->links.prev->links.next = element->links.next;
        element->links.next->links.prev = element->links.prev;
        if (tail_ == element) {
            tail_ = count_ == 1 ? nullptr : element->links.prev;
        }
        element->links = {};
        --count_;
    }

private:
    T tail_ = nullptr;
    size_t count_ = 0;
};

}  // namespace Quenda
