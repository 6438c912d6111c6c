/// How a command ends.
#pragma once

#include <functional>
#include <stdexcept>

namespace pxk::tool {

/// The exit codes of most commands.
enum ExitCode { exitDone = 0, exitFailed = 1, exitUsage = 2 };

/// Those of commands that answer yes or no. As with grep and cmp, an error is neither answer.
enum AnswerCode { answerYes = 0, answerNo = 1, answerError = 2 };

/// A command line with a mistake in it. The message is one line and says what would be right.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Calls `ask` and returns its answer as an exit code; what it throws is reported.
int answered(const std::function<bool()>& ask);

}  // namespace pxk::tool
