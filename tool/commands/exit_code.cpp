#include "tool/commands/exit_code.h"

#include <new>

#include "chain/error.h"
#include "tool/terminal/report.h"

namespace pxk::tool {

int answered(const std::function<bool()>& ask) {
    try {
        return ask() ? answerYes : answerNo;
    } catch (const chain::WorkError& error) {
        report(error.what());
    } catch (const std::bad_alloc&) {
        report("not enough memory");
    }
    return answerError;
}

}  // namespace pxk::tool
