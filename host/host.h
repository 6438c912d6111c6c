/// The reference host: opens a plugin as its real host would and calls its members.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/calls/properties.h"
#include "host/calls/typed_member.h"
#include "host/objects/accounting.h"
#include "host/objects/errors.h"
#include "host/objects/exceptions.h"
#include "host/objects/instances.h"
#include "host/objects/memory_blocks.h"
#include "host/objects/strings.h"
#include "host/objects/values.h"
#include "host/pictures/bitmap_context.h"
#include "host/pictures/graphics.h"
#include "host/pictures/picture.h"
#include "host/registration/members.h"
#include "host/registration/registry.h"

namespace pxkhost {

/// The kind of application the host pretends to be: which application class it has, and what new pictures are.
/// A web application differs from a console application in the name of its class alone.
enum class ApplicationKind { console, desktop, web };

using PluginMain = void (*)(pxk::HostResolver);

inline constexpr double newestVersion = 2019.03;

struct Options {
    /// The shared library; empty: PicturePXK.so (.dylib, .dll) beside the library of this host. Ignored when `entry` is
    /// set.
    std::filesystem::path plugin{};
    /// A plugin linked into the program.
    PluginMain entry = nullptr;
    double version = newestVersion;
    ApplicationKind application = ApplicationKind::console;
    /// What this host lacks, in any combination: services by name ("newPicture"), methods and properties of the
    /// host's objects ("Picture.Constructor", "Picture.Mask", "Graphics.DrawPicture", "Picture.Width", ...), and
    /// classes ("NilObjectException", "Application").
    std::vector<std::string> missing{};
    /// False: pictures have no graphics object.
    bool graphics = true;
    /// The format of new desktop pictures.
    BitmapFormat newPictures{};
};

/// One open host. A process has at most one at a time, since a plugin keeps process-wide state; opening another after
/// closing loads the plugin afresh.
class Host {
  public:
    /// Loads the plugin and calls its entry point. Throws HostError when a host is open already, or when the library
    /// cannot be loaded or has no entry point.
    explicit Host(Options options);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The open host; there must be one.
    static Host& current() { return *current_; }
    static bool isOpen() { return current_ != nullptr; }

    /// Unloads the plugin. The result has every problem that the accounting found, and one line for every object that
    /// still lives. Does nothing the second time.
    std::vector<std::string> close();

    double version() const { return options_.version; }
    ApplicationKind application() const { return options_.application; }
    const Options& options() const { return options_; }
    static Accounting& accounting() { return Accounting::instance(); }

    // ---- services ----

    /// Withdraws and restores something, by the names of Options::missing. A plugin that has already asked for a
    /// service keeps it.
    void deny(const std::string& name) { missing_.insert(name); }
    void allow(const std::string& name) { missing_.erase(name); }
    bool offers(const char* name) const { return missing_.empty() || !missing_.contains(name); }

    /// Provides another function for a service from now on.
    void replaceService(const std::string& name, void* function) { replaced_[name] = function; }

    /// The names that the plugin asked for, in order, repetitions included.
    const std::vector<std::string>& asked() const { return asked_; }
    std::size_t timesAsked(std::string_view name) const;

    /// Makes one creation fail: the next (0), the one after it (1), and so on. A creation is a call by the plugin that
    /// would make a picture, string, memory block or instance; it answers nil then. Counted from this call.
    void failCreation(std::size_t which);
    /// Creations asked for since the host opened, or since the last failCreation.
    std::size_t creations() const { return creations_; }
    /// For services that create: true when this one has to fail.
    bool creationFails();

    /// The format of new desktop pictures from now on.
    void setNewPictures(const BitmapFormat& format) { options_.newPictures = format; }

    // ---- what the plugin registered ----

    Registry& registry() { return registry_; }
    const Registry& registry() const { return registry_; }
    const Members& members() const { return members_; }
    std::string inspect() const;

    // ---- objects ----

    /// What the service newPicture makes here: opaque black on consoles, opaque white on desktops. Empty when a size
    /// is below 1 or there is no memory.
    Ref<Picture> newPicture(int width, int height) const;

    /// What the constructor of the class Picture does here; see Picture::constructConsole.
    bool construct(Picture& picture, int width, int height) const;

    /// Which unlocks a host of this version, with the services that it offers, expects.
    LockRules lockRules() const;

    /// An instance of one of the plugin's classes. Throws HostError for an unknown name.
    Ref<Instance> newInstance(std::string_view className) const;

    /// The same for a class that the plugin registered.
    Ref<Instance> newInstance(const ClassRecord& record) const;

    /// A property by name; see getProperty(). Throws HostError for an unknown name, HostException when an accessor
    /// raised an exception.
    Value property(Instance& instance, std::string_view name);
    void setProperty(Instance& instance, std::string_view name, const Value& value);

    // ---- typed calls, which need no libffi ----

    /// The function registered for a declaration as it stands in the plugin's tables; see Members::byDeclaration.
    void* function(std::string_view declaration) const { return members_.byDeclaration(declaration).function; }
    void* setter(std::string_view declaration) const { return members_.byDeclaration(declaration).setter; }

    /// A member bound to C++ types, for calls at full speed:
    ///     auto invert = host.member<Ref<Picture>(Picture*)>("InvertPXK as picture");
    ///     Ref<Picture> result = invert(picture.get());
    /// The first type of a method is its object. Throws HostError when the types are not those of the declaration.
    template <class Signature>
    TypedMember<Signature> member(std::string_view declaration) const {
        return TypedMember<Signature>(members_.byDeclaration(declaration), false, pending_);
    }

    /// The setter of a parameterised property; the last type is the value assigned.
    template <class Signature>
    TypedMember<Signature> memberSetter(std::string_view declaration) const {
        return TypedMember<Signature>(members_.byDeclaration(declaration), true, pending_);
    }

    /// Finds and calls in one step: invoke<Ref<Picture>>("InvertPXK as picture", picture). Arguments are int, uint32_t,
    /// double, bool, objects or references to them, nullptr, and byRef(variable). Throws HostException when the member
    /// raised one.
    template <class Result, class... Arguments>
    Result invoke(std::string_view declaration, const Arguments&... arguments) const {
        return member<Result(Arguments...)>(declaration)(arguments...);
    }

    /// Assigns to a parameterised property; the last argument is the value.
    template <class... Arguments>
    void assign(std::string_view declaration, const Arguments&... arguments) const {
        memberSetter<void(Arguments...)>(declaration)(arguments...);
    }

    // ---- calls by name, through libffi ----

    /// The member that a call by name means; see Members::byCall. `self` is nil for global methods.
    const Member& find(const Object* self, std::string_view name, std::span<const Value> arguments) const;

    /// Calls a member; see pxk_call in pxkhost.h for the rules. Afterwards `arguments` has one value for every
    /// parameter, of the declared kind, and what the member wrote to byref parameters.
    Value call(const Member& member, Object* self, std::vector<Value>& arguments);

    /// Finds and calls in one step, as a program does.
    Value call(Object* self, std::string_view name, std::vector<Value> arguments = {});

    /// Assigns to a parameterised property as a program does.
    void assignByName(Object* self, std::string_view name, std::vector<Value> arguments, const Value& value);

    // ---- exceptions ----

    /// See PendingException.
    void raise(Ref<Exception> exception) { pending_.raise(std::move(exception)); }
    int exceptionsRaised() const { return pending_.timesRaised(); }
    Ref<Exception> takeException() { return pending_.take(); }
    void throwPending() { pending_.throwIfAny(); }

    /// What the plugin gets when it asks for a service by name.
    void* resolve(const char* name);

  private:
    void load();

    static Host* current_;

    Options options_;
    std::set<std::string, std::less<>> missing_;
    std::unordered_map<std::string, void*> replaced_;
    std::vector<std::string> asked_;
    void* library_ = nullptr;
    std::shared_ptr<const void> loaded_;  ///< lives as long as the plugin's code may be called
    Registry registry_;
    Members members_;
    // Mutable, since a call is const: it changes nothing else of the host.
    mutable PendingException pending_;
    std::size_t creations_ = 0;
    std::optional<std::size_t> creationToFail_;
};

}  // namespace pxkhost
