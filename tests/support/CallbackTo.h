#pragma once

#include <functional>
#include <utility>

#include "core/callback/Callback.h"

// A callback object that calls any function object.
template <typename Signature>
struct CallbackTo;

template <typename Result, typename... Arguments>
struct CallbackTo<Result(Arguments...)> : Quenda::CallbackBuffer<Result(Arguments...)> {
    explicit CallbackTo(std::function<Result(Arguments...)> target) : function(std::move(target)) {}
    Result Invoke(Arguments... arguments) override { return function(arguments...); }
    std::function<Result(Arguments...)> function;
};
