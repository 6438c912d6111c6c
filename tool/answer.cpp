#include "answer.h"

#include <new>

#include "error.h"
#include "report.h"

namespace pxk::tool {

int answered(const std::function<bool()>& ask) {
    try {
        return ask() ? answerYes : answerNo;
    } catch (const WorkError& error) {
        report(error.what());
    } catch (const std::bad_alloc&) {
        report("not enough memory");
    }
    return answerTrouble;
}

}  // namespace pxk::tool
