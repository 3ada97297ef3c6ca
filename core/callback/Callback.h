// Callback objects: small reference-counted objects that know how to call one target with a
// fixed list of arguments. Timers, the event loop and other notifiers keep them alive through
// a counted handle and call `Invoke`.
//
// Counts are plain integers: make, copy and invoke callbacks on the event loop's thread only.
#pragma once

#include <cstdint>
#include <utility>

namespace Quenda {

template <typename Signature>
class CallbackRef;

// The base of all callbacks with a given signature. The count is 0 at first; the first handle makes
// it 1, and the last handle deletes the object.
template <typename Signature>
class CallbackBuffer;

template <typename Result, typename... Arguments>
class CallbackBuffer<Result(Arguments...)> {
public:
    CallbackBuffer() = default;
    CallbackBuffer(const CallbackBuffer&) = delete;
    CallbackBuffer& operator=(const CallbackBuffer&) = delete;
    virtual ~CallbackBuffer() = default;

    // Calls the target once. An exception of the target passes through.
    virtual Result Invoke(Arguments... arguments) = 0;

private:
    friend class CallbackRef<Result(Arguments...)>;
    int32_t references_ = 0;
};

// Calls a free function.
template <typename Signature>
class GlobalCallback;

template <typename Result, typename... Arguments>
class GlobalCallback<Result(Arguments...)> : public CallbackBuffer<Result(Arguments...)> {
public:
    using Function = Result (*)(Arguments...);

    explicit GlobalCallback(Function function) : function_(function) {}
    Result Invoke(Arguments... arguments) override {
        return function_(std::forward<Arguments>(arguments)...);
    }

private:
    Function function_;
};

// Calls a member function of an object, which must outlive the callback. A virtual member
// function dispatches to the most derived override.
template <typename T, typename Signature>
class MemberCallback;

template <typename T, typename Result, typename... Arguments>
class MemberCallback<T, Result(Arguments...)> : public CallbackBuffer<Result(Arguments...)> {
public:
    using Function = Result (T::*)(Arguments...);

    MemberCallback(T* object, Function function) : object_(object), function_(function) {}
    Result Invoke(Arguments... arguments) override {
        return (object_->*function_)(std::forward<Arguments>(arguments)...);
    }

private:
    T* object_;
    Function function_;
};

// A counted handle; may be empty. Copying takes another reference, destroying releases it.
template <typename Signature>
class CallbackRef {
public:
    using Buffer = CallbackBuffer<Signature>;

    CallbackRef() = default;
    // Takes a reference, which makes the handle an owner; null makes an empty handle.
    explicit CallbackRef(Buffer* buffer) : buffer_(buffer) {
        if (buffer_ != nullptr) {
            ++buffer_->references_;
        }
    }
    CallbackRef(const CallbackRef& other) : CallbackRef(other.buffer_) {}
    CallbackRef(CallbackRef&& other) noexcept : buffer_(std::exchange(other.buffer_, nullptr)) {}
    // By value: assigning a handle to itself, or one that the old target owns, is safe.
    CallbackRef& operator=(CallbackRef other) noexcept {
        std::swap(buffer_, other.buffer_);
        return *this;
    }
    ~CallbackRef() { Release(); }

    // Releases the reference and leaves the handle empty.
    void Release() {
        Buffer* buffer = std::exchange(buffer_, nullptr);
        if (buffer != nullptr && --buffer->references_ <= 0) {
            delete buffer;
        }
    }

    explicit operator bool() const { return buffer_ != nullptr; }
    Buffer* operator->() const { return buffer_; }
    Buffer* Get() const { return buffer_; }

private:
    Buffer* buffer_ = nullptr;
};

// Makes a callback and returns the first handle to it. It calls a function, or a member function of
// an object, which must outlive it.
template <typename Result, typename... Arguments>
CallbackRef<Result(Arguments...)> MakeCallback(Result (*function)(Arguments...)) {
    using Signature = Result(Arguments...);
    return CallbackRef<Signature>(new GlobalCallback<Signature>(function));
}
template <typename Object, typename T, typename Result, typename... Arguments>
CallbackRef<Result(Arguments...)> MakeCallback(Object* object,
                                               Result (T::*function)(Arguments...)) {
    using Signature = Result(Arguments...);
    return CallbackRef<Signature>(new MemberCallback<T, Signature>(object, function));
}

// The shapes in use, by their number of arguments.
template <typename A>
using CallbackBuffer1 = CallbackBuffer<void(A)>;
template <typename A>
using GlobalCallback1 = GlobalCallback<void(A)>;
template <typename A>
using CallbackRef1 = CallbackRef<void(A)>;
template <typename A, typename B>
using CallbackBuffer2 = CallbackBuffer<void(A, B)>;
template <typename T, typename A, typename B>
using MemberCallback2 = MemberCallback<T, void(A, B)>;
template <typename A, typename B>
using CallbackRef2 = CallbackRef<void(A, B)>;

}  // namespace Quenda
