#include "host/objects/accounting.h"

#include <utility>

namespace pxkhost {

void ObjectList::add(Object& object) {
    object.list_ = this;
    object.previous_ = last_;
    object.next_ = nullptr;
    (last_ != nullptr ? last_->next_ : first_) = &object;
    last_ = &object;
    ++size_;
}

void ObjectList::remove(Object& object) {
    (object.previous_ != nullptr ? object.previous_->next_ : first_) = object.next_;
    (object.next_ != nullptr ? object.next_->previous_ : last_) = object.previous_;
    object.list_ = nullptr;
    --size_;
}

Accounting& Accounting::instance() {
    // Never destroyed, for objects may outlive every static variable.
    static Accounting& accounting = *new Accounting;
    return accounting;
}

void Accounting::add(Object& object) {
    object.number_ = ++lastNumber_;
    living_.add(object);
}

void Accounting::retire(Object& object) {
    object.alive_ = false;
    object.list_->remove(object);
    object.dispose();
    dead_.push_back(&object);
    if (dead_.size() > deadObjectsKept) {
        delete dead_.front();
        dead_.pop_front();
    }
}

void Accounting::deleteDead() {
    for (const Object* object : std::exchange(dead_, {})) delete object;
}

void Accounting::startAfresh() {
    deleteDead();
    while (Object* const object = living_.first()) {
        living_.remove(*object);
        unwatched_.add(*object);
    }
    problems_.clear();
    lastNumber_ = 0;
}

std::vector<std::string> Accounting::living() const {
    std::vector<std::string> lines;
    for (const Object* object = living_.first(); object != nullptr; object = ObjectList::next(*object)) {
        const auto count = object->references();
        lines.push_back(object->describe() + ": " + std::to_string(count) +
                        (count == 1 ? " reference" : " references"));
    }
    return lines;
}

std::vector<std::string> Accounting::openLocks() const {
    std::vector<std::string> lines;
    for (const Object* object = living_.first(); object != nullptr; object = ObjectList::next(*object))
        for (std::string& line : object->openLocks()) lines.push_back(std::move(line));
    return lines;
}

void Accounting::addProblem(std::string problem) { problems_.push_back(std::move(problem)); }

std::vector<std::string> Accounting::takeProblems() { return std::exchange(problems_, {}); }

}  // namespace pxkhost
