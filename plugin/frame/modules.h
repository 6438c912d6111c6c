/// Members as modules: hosts from 2013.0 to below 3000.0 take methods of other classes and global methods this way.
///
/// Records and texts made here are never freed: the host keeps them. When anything needed cannot be allocated, the
/// module is abandoned silently, and nothing is leaked.
#pragma once

#include <memory>
#include <span>

#include "frame/host_records.h"

namespace pxk {

/// Whether the running host takes modules.
bool hostTakesModules();

/// The declaration with a parameter "extends ref as `className`" in front of its own, at most 999 characters.
/// Nil for an empty declaration or when there is no memory.
std::unique_ptr<char[]> AddClassParameter(const char* declaration, const char* className);

/// The declaration of the setter that belongs to it: as `AddClassParameter`, with ", assigns value" and the result
/// type in the parameter list. Nil as there.
std::unique_ptr<char[]> setterDeclaration(const char* declaration, const char* className);

/// The methods of a class extension as functions of one module, setters in front of their getters; or nil.
REALmoduleDefinition* buildExtensionModule(const REALclassDefinition& extension, const char* partName);

/// The global methods as one module; or nil.
REALmoduleDefinition* buildGlobalsModule(std::span<const REALmethodDefinition> methods, const char* partName);

}  // namespace pxk
