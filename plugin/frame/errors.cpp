#include "frame/errors.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <typeinfo>

#include "frame/host_services.h"
#include "frame/text.h"

namespace pxk {

namespace {

// Without the guard, which would raise an exception about the failure to raise an exception, without end.
HostString messageString(const char* message) {
    if (message == nullptr) return nullptr;
    try {
        return buildUnicodeString(message, static_cast<long long>(std::strlen(message)), encodingUTF8);
    } catch (...) {
        return nullptr;
    }
}

}  // namespace

void RaiseException(const char* className, const char* message, unsigned long /*errorNumber*/, int) {
    const HostString text = messageString(message);
    HostReference<REALobjectStruct> exception(REALnewInstance(className));
    if (exception == nullptr) exception.reset(REALnewInstance("RuntimeException"));
    if (exception == nullptr) return;
    REALSetPropValueString(exception.get(), "Message", text.get());
    REALSetPropValueInteger(exception.get(), "ErrorNumber", 0);
    REALRaiseException(exception.get());
}

void raiseCurrentException() {
    try {
        throw;
    } catch (const std::bad_alloc&) {
        RaiseException("OutOfMemoryException", "Failed to allocate memory.");
    } catch (const std::range_error& error) {
        RaiseException("OutOfBoundsException", error.what());
    } catch (const std::out_of_range& error) {
        RaiseException("OutOfBoundsException", error.what());
    } catch (const std::overflow_error& error) {
        RaiseException("OutOfBoundsException", error.what());
    } catch (const std::underflow_error& error) {
        RaiseException("OutOfBoundsException", error.what());
    } catch (const std::bad_cast& error) {
        RaiseException("IllegalCastException", error.what());
    } catch (const std::exception& error) {
        RaiseException("RuntimeException", error.what());
    } catch (...) {
        RaiseException("RuntimeException", "Sorry, but there was an unnamed C++ Exception.");
    }
}

}  // namespace pxk
