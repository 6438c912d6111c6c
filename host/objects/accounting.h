/// The host's books: every living object, and everything that was done wrong with one.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "host/objects/object.h"

namespace pxkhost {

/// Objects in order of making, linked through themselves so that entering and leaving cost nothing.
class ObjectList {
  public:
    void add(Object& object);
    void remove(Object& object);
    Object* first() const { return first_; }
    static Object* next(const Object& object) { return object.next_; }
    std::size_t size() const { return size_; }

  private:
    Object* first_ = nullptr;
    Object* last_ = nullptr;
    std::size_t size_ = 0;
};

/// One for the process. Opening a host starts it afresh.
class Accounting {
  public:
    static Accounting& instance();

    /// Forgets all problems and starts the numbers at 1. Objects that still live are no longer watched.
    void startAfresh();

    /// The objects alive, one line each, in order of making: "picture 3 (10 x 8): 1 reference".
    std::vector<std::string> living() const;
    std::size_t livingCount() const { return living_.size(); }

    /// The descriptions locked at this moment, one line each picture.
    std::vector<std::string> openLocks() const;

    /// What was done wrong so far: releases without a reference, unlocks without a lock, objects freed while locked.
    const std::vector<std::string>& problems() const { return problems_; }
    void addProblem(std::string problem);

    /// For a test that provoked a problem on purpose: hands it over and forgets it.
    std::vector<std::string> takeProblems();

  private:
    friend class Object;

    Accounting() = default;
    void enter(Object& object);
    void bury(Object& object);
    void clearGraves();

    // Dead objects are kept for a while, so that a release too many is recognised instead of touching free memory.
    static constexpr std::size_t graves = 256;

    ObjectList living_;
    ObjectList unwatched_;
    std::deque<Object*> dead_;
    std::vector<std::string> problems_;
    std::uint32_t lastNumber_ = 0;
};

}  // namespace pxkhost
