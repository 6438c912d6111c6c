/// One function of the outside world, found by name when it is first needed.
#pragma once

#include <type_traits>

namespace pxk {

/// How long a name that was answered with nil stays unanswered.
enum class WhenMissing {
    rememberNil,  ///< nil is an answer: the name is asked for once per process
    askAgain      ///< the name is asked for at every use until it is found
};

template <class Signature>
class EntryPoint;

/// A function found by name through `finder`, and the rule that every one of them follows: ask when first needed, keep
/// the answer, and let a call to a missing function do nothing and yield 0, nil or false.
/// Objects are function-local statics, initialised without running code.
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
        if (!asked_ || (whenMissing_ == WhenMissing::askAgain && function_ == nullptr)) {
            void* found = finder_(name_);
            if (found == nullptr && shortName_ != nullptr) found = finder_(shortName_);
            function_ = reinterpret_cast<Function>(found);
            asked_ = true;
        }
        return function_;
    }

    Result operator()(Arguments... arguments) {
        if (const Function function = find()) return function(arguments...);
        if constexpr (!std::is_void_v<Result>) return Result{};
    }

  private:
    Finder finder_;
    const char* name_;
    const char* shortName_;
    Function function_ = nullptr;
    WhenMissing whenMissing_;
    bool asked_ = false;
};

}  // namespace pxk
