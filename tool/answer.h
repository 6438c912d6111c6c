/// Commands that answer yes or no.
#pragma once

#include <functional>

namespace pxk::tool {

/// What such a command ends with: trouble is told apart from both answers, as grep and cmp do.
enum AnswerCode { answerYes = 0, answerNo = 1, answerTrouble = 2 };

/// Runs `ask` and gives its answer as an exit code; work that could not be done is reported.
int answered(const std::function<bool()>& ask);

}  // namespace pxk::tool
