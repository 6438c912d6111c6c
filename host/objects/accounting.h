/// Reference and lock accounting: every living object, and everything that was done wrong with one.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "host/objects/object.h"

namespace pxkhost {

/// Objects in order of creation, linked through themselves so that adding and removing allocate nothing.
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

/// One for the process, since objects may outlive the host that they were made in. Opening a host starts it afresh.
class Accounting {
  public:
    static Accounting& instance();

    /// Forgets all problems and numbers objects from 1 again. Objects that are still alive are no longer tracked.
    void startAfresh();

    /// The objects alive, one line each, in order of creation: "picture 3 (10 x 8): 1 reference".
    std::vector<std::string> living() const;
    std::size_t livingCount() const { return living_.size(); }

    /// The descriptions locked at this moment, one line per picture.
    std::vector<std::string> openLocks() const;

    /// What was done wrong so far: releases without a reference, unlocks without a lock, objects freed while locked.
    const std::vector<std::string>& problems() const { return problems_; }
    void addProblem(std::string problem);

    /// Returns the problems and forgets them, for tests that provoke one on purpose.
    std::vector<std::string> takeProblems();

  private:
    friend class Object;

    Accounting() = default;
    void add(Object& object);
    void retire(Object& object);
    void deleteDead();

    // Dead objects are kept for a while, so that an extra release is recognised instead of touching freed memory.
    static constexpr std::size_t deadObjectsKept = 256;

    ObjectList living_;
    ObjectList unwatched_;
    std::deque<Object*> dead_;
    std::vector<std::string> problems_;
    std::uint32_t lastNumber_ = 0;
};

}  // namespace pxkhost
