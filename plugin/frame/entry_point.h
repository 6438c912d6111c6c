/// One function of the outside world, found by name when it is first needed.
#pragma once

#include <atomic>
#include <type_traits>

namespace pxk {

/// What a name that was answered with nil means for later uses.
enum class WhenMissing {
    rememberNil,  ///< nil is an answer: the name is asked for once per process
    askAgain      ///< the name is asked for at every use until it is found
};

template <class Signature>
class EntryPoint;

/// A function found by name through `finder`, and the rule that every one of them follows: ask when first needed, keep
/// the answer, and let a call to a missing function do nothing and yield 0, nil or false.
/// Objects are function-local statics, initialised without running code. Threads that ask at the same time may each ask
/// the finder, and all get an answer that is complete.
template <class Result, class... Arguments>
class EntryPoint<Result(Arguments...)> {
  public:
    using Function = Result (*)(Arguments...);
    using Finder = void* (*)(const char* name);

    /// `shortName`, when given, is what older hosts call the same function.
    constexpr EntryPoint(Finder finder, const char* name, WhenMissing whenMissing = WhenMissing::rememberNil,
                         const char* shortName = nullptr)
        : finder_(finder), name_(name), shortName_(shortName), whenMissing_(whenMissing) {}

    /// The function's address, or nil when there is none of that name.
    Function find() {
        const Function function = answer();
        return function != missing ? function : nullptr;
    }

    Result operator()(Arguments... arguments) { return answer()(arguments...); }

  private:
    // Stands in for a function that is not there.
    static Result missing(Arguments...) {
        if constexpr (!std::is_void_v<Result>) return Result{};
    }

    // What was found, or `missing`.
    Function answer() {
        const Function known = function_.load(std::memory_order_acquire);
        if (known != nullptr) return known;
        void* found = finder_(name_);
        if (found == nullptr && shortName_ != nullptr) found = finder_(shortName_);
        const Function function = found != nullptr ? reinterpret_cast<Function>(found) : missing;
        if (found != nullptr || whenMissing_ == WhenMissing::rememberNil) {
            function_.store(function, std::memory_order_release);
        }
        return function;
    }

    Finder finder_;
    const char* name_;
    const char* shortName_;
    WhenMissing whenMissing_;
    // One word for both what was found and whether it was asked for, so that no thread sees the one without the other.
    std::atomic<Function> function_ = nullptr;
};

}  // namespace pxk
