#include "host/objects/object.h"

#include "host/objects/accounting.h"

namespace pxkhost {

namespace {

// The second header word marks what is an object of this host; the first leads to it.
constexpr pxk::HostWord objectMark = 0x5A11C0DE;

}  // namespace

Object::Object(Kind kind) : kind_(kind) { Accounting::instance().add(*this); }

Object::~Object() {
    if (list_ != nullptr) list_->remove(*this);
}

void Object::publish(pxk::REALobjectHeader& header) {
    header.words[0] = reinterpret_cast<pxk::HostWord>(this);
    header.words[1] = objectMark;
    header_ = &header;
}

void Object::retain() noexcept {
    if (!alive_) {
        Accounting::instance().addProblem(describe() + " was used after its last reference was released");
        return;
    }
    ++references_;
    ++timesTaken_;
}

void Object::release() noexcept {
    if (!alive_) {
        Accounting::instance().addProblem(describe() + " was released more often than taken");
        return;
    }
    ++timesGivenBack_;
    if (--references_ == 0) Accounting::instance().retire(*this);
}

std::string Object::describe() const {
    const std::string name = std::string(kindName(kind_)) + ' ' + std::to_string(number_);
    const std::string inBrackets = details();
    return inBrackets.empty() ? name : name + " (" + inBrackets + ')';
}

Object* Object::anyFromHandle(const void* handle, const char* user) {
    if (handle == nullptr) return nullptr;
    const auto& header = *static_cast<const pxk::REALobjectHeader*>(handle);
    if (header.words[1] != objectMark) {
        Accounting::instance().addProblem(std::string(user) +
                                          " was given something that is not an object of this host");
        return nullptr;
    }
    return reinterpret_cast<Object*>(header.words[0]);
}

Object* Object::fromHandle(const void* handle, const char* user) {
    Object* const object = anyFromHandle(handle, user);
    if (object == nullptr || object->alive_) return object;
    Accounting::instance().addProblem(std::string(user) + " was given " + object->describe() +
                                      ", whose last reference had been released");
    return nullptr;
}

Object* Object::fromHandle(const void* handle, Kind kind, const char* user) {
    Object* const object = fromHandle(handle, user);
    if (object == nullptr || object->kind_ == kind) return object;
    Accounting::instance().addProblem(std::string(user) + " was given " + object->describe() + " where a " +
                                      kindName(kind) + " belongs");
    return nullptr;
}

const char* kindName(Object::Kind kind) {
    switch (kind) {
        case Object::Kind::string:
            return "string";
        case Object::Kind::memoryBlock:
            return "memory block";
        case Object::Kind::picture:
            return "picture";
        case Object::Kind::graphics:
            return "graphics";
        case Object::Kind::exception:
            return "exception";
        case Object::Kind::instance:
            return "instance";
    }
    return "object";
}

}  // namespace pxkhost
