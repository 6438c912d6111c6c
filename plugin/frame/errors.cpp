#include "frame/errors.h"

#include <cstring>
#include <new>
#include <stdexcept>
#include <typeinfo>

#include "frame/host_services.h"
#include "frame/text.h"

namespace pxk {

namespace {

// An exception thrown while the message of another one is built is raised first. What is thrown while that one's own
// message is built is dropped, which ends the recursion.
enum class Nesting : unsigned char { none, whileRaising };

void raiseCurrentException(Nesting nesting);

HostString messageString(const char* message, Nesting nesting) {
    if (message == nullptr) return nullptr;
    try {
        return buildUnicodeString(message, static_cast<long long>(std::strlen(message)), encodingUTF8);
    } catch (...) {
        if (nesting == Nesting::none) raiseCurrentException(Nesting::whileRaising);
        return nullptr;
    }
}

void raise(const char* className, const char* message, Nesting nesting) {
    const HostString text = messageString(message, nesting);
    HostReference<REALobjectStruct> exception(REALnewInstance(className));
    if (exception == nullptr) exception.reset(REALnewInstance("RuntimeException"));
    if (exception == nullptr) return;
    REALSetPropValueString(exception.get(), "Message", text.get());
    REALSetPropValueInteger(exception.get(), "ErrorNumber", 0);
    REALRaiseException(exception.get());
}

void raiseCurrentException(Nesting nesting) {
    const auto raiseAs = [&](const char* className, const char* message) { raise(className, message, nesting); };
    try {
        throw;
    } catch (const std::bad_alloc&) {
        raiseAs("OutOfMemoryException", "Failed to allocate memory.");
    } catch (const std::range_error& error) {
        raiseAs("OutOfBoundsException", error.what());
    } catch (const std::out_of_range& error) {
        raiseAs("OutOfBoundsException", error.what());
    } catch (const std::overflow_error& error) {
        raiseAs("OutOfBoundsException", error.what());
    } catch (const std::underflow_error& error) {
        raiseAs("OutOfBoundsException", error.what());
    } catch (const std::bad_cast& error) {
        raiseAs("IllegalCastException", error.what());
    } catch (const std::exception& error) {
        raiseAs("RuntimeException", error.what());
    } catch (...) {
        raiseAs("RuntimeException", "Sorry, but there was an unnamed C++ Exception.");
    }
}

}  // namespace

void RaiseException(const char* className, const char* message, unsigned long /*errorNumber*/, int) {
    raise(className, message, Nesting::none);
}

void raiseCurrentException() { raiseCurrentException(Nesting::none); }

}  // namespace pxk
